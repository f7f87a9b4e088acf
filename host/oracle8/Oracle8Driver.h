// SPDX-License-Identifier: Apache-2.0
// COracle8Driver is a session over the Oracle Call Interface. It owns its environment, error, server, service
// context and session handles from Connect to Disconnect; transactions use them through the accessors (null
// when not connected) and never free them. Threads: as CDriverBase.
#pragma once

#include <oci.h>

#include <memory>
#include <mutex>

#include "db/DriverBase.h"

namespace oracle8 {
class OciFailure;
class OciSession;
class OciStatement;
}  // namespace oracle8

class COracle8Driver : public CDriverBase {
  wxDECLARE_DYNAMIC_CLASS(COracle8Driver);

 public:
  COracle8Driver();
  ~COracle8Driver() override;

  OCIEnv* GetOCIEnvironment();
  OCISvcCtx* GetOCIServerContext();
  OCIError* GetOCIError();

  // Reports a failed OCI call. The error's number and text are read from the error handle; a number on the
  // ignore list is not reported. With a message of the caller's own the report is that message, a line end,
  // the text. A status whose low 16 bits are 0 is no failure and not reported. The trailing ints are reserved
  // (0). Both return 0.
  using CDriverBase::HandleError;
  int HandleError(int nStatus, OCIError* pError, LKString szMessage, int nReserved1, int nReserved2);
  int HandleError(int nStatus, OCIError* pError, int nReserved1, int nReserved2);

  int Connect(LKString szServer, LKString szUser, LKString szPassword) override;
  int Disconnect() override;  // 1 also when there is no session
  int IsConnected() const override { return m_pSession != nullptr; }
  int Commit() override;
  int Rollback() override;
  int Cancel() override;  // 1 also when there is no session

  // For statements other than queries.
  int PrepareStatement(const wchar_t* szSQL, int nFlag) override;
  int ExecuteStatement(int nFlag) override;
  int CloseStatement() override;  // 1 also when no statement is prepared
  int Query(LKString szSQL, std::vector<std::vector<LKString>>& rows) override;  // a failure adds no row
  LKString GetServerVersion() override;

  // Backups: the backup of a table is the table of the same name followed by "_BAK". Slot order is part of
  // the contract. Each takes the plain table name and returns non-zero on success; a failure has been
  // reported.
  virtual int PrepareRenameFromBackup(LKString szTable);  // drops the table; a missing one is no failure
  virtual int RenameToBackup(LKString szTable);           // drops the backup, then renames the table to it
  // Empty, with the columns and the primary key of the table. The options (none: empty) are those that may
  // follow the table name in a CREATE TABLE.
  virtual int CreateBackupTable(LKString szTable, LKString szOptions);
  // Makes the table anew from its backup: rows, NOT NULL and primary key. Without a backup the table stays.
  virtual int RestoreFromBackup(LKString szTable);
  virtual int BackupExists(LKString szTable);     // 0 for a missing one, which is not reported
  virtual int DropBackupTable(LKString szTable);  // a missing backup is no failure and not reported

  // Renames between a table and its backup: 0 makes the backup the table, anything else the table the backup.
  int ChangeTableName(LKString szTable, int nDirection);

 private:
  // Runs the work on the session; a failure is reported behind szWhat and makes the result 0.
  template <class Work>
  int InSession(const LKString& szWhat, Work work);
  void Report(const oracle8::OciFailure& failure, const LKString& szWhat, OCIError* pError);

  int RunSQL(const LKString& szSQL);  // commits on success
  int CanBackUp(const LKString& szTable);
  int LookUpTable(const LKString& szTable, int& bExists);
  int DropTable(const LKString& szTable);
  int RenameTable(const LKString& szFrom, const LKString& szTo);
  int ReadPrimaryKey(const LKString& szTable, LKString& szColumns);
  int CopyTable(const LKString& szFrom, const LKString& szTo, const LKString& szOptions,
                const wchar_t* szWhere);

  std::unique_ptr<oracle8::OciSession> m_pSession;
  std::unique_ptr<oracle8::OciStatement> m_pStatement;  // the generic one; ends before the session
  std::mutex m_SessionMutex;  // guards m_pSession against Cancel: it is set and taken away under it
};

// SPDX-License-Identifier: Apache-2.0
// COracle8Driver is a session over the Oracle Call Interface. It owns its environment, error, server, service
// context and session handles from Connect to Disconnect; transactions use them through the accessors and
// never free them. Threads: as CDriverBase.
#pragma once

#include <oci.h>

#include "db/DriverBase.h"

class COracle8Driver : public CDriverBase {
  wxDECLARE_DYNAMIC_CLASS(COracle8Driver);

 public:
  COracle8Driver();
  ~COracle8Driver() override;

  OCIEnv* GetOCIEnvironment() { return m_pEnv; }
  OCISvcCtx* GetOCIServerContext() { return m_pSvcCtx; }
  OCIError* GetOCIError() { return m_pError; }

  // Reports a failed OCI call. The error's number and text are read from the error handle; a number on the
  // ignore list is not reported. With a message of the caller's own the report is that message, a line end,
  // the text. The trailing ints are reserved (0). Both return 0.
  using CDriverBase::HandleError;
  int HandleError(int nStatus, OCIError* pError, LKString szMessage, int nReserved1, int nReserved2);
  int HandleError(int nStatus, OCIError* pError, int nReserved1, int nReserved2);

  int Connect(LKString szServer, LKString szUser, LKString szPassword) override;
  int Disconnect() override;
  int IsConnected() const override { return m_bConnected; }
  int Commit() override;
  int Rollback() override;
  int Cancel() override;

  int PrepareStatement(const wchar_t* szSQL, int nFlag) override;
  int ExecuteStatement(int nFlag) override;
  int CloseStatement() override;
  int Query(LKString szSQL, std::vector<std::vector<LKString>>& rows) override;
  LKString GetServerVersion() override;

  // Backups: the backup of a table is the table of the same name followed by "_BAK". Slot order is part of
  // the contract. Each takes the plain table name and returns non-zero on success.
  virtual int PrepareRenameFromBackup(
      LKString szTable);                         // drops the plain table; a missing one is no failure
  virtual int RenameToBackup(LKString szTable);  // drops the backup, then renames the table to it
  virtual int CreateBackupTable(LKString szTable, LKString szOptions);  // empty, columns and key of the table
  virtual int RestoreFromBackup(
      LKString szTable);  // makes the table anew from its backup, primary key included
  virtual int BackupExists(LKString szTable);
  virtual int DropBackupTable(LKString szTable);  // a missing backup is no failure and not reported

  // Renames between a table and its backup: 0 makes the backup the table, anything else the table the backup.
  int ChangeTableName(LKString szTable, int nDirection);

 private:
  OCIEnv* m_pEnv = nullptr;
  OCIError* m_pError = nullptr;
  OCIServer* m_pServer = nullptr;
  OCISvcCtx* m_pSvcCtx = nullptr;
  OCISession* m_pSession = nullptr;
  OCIStmt* m_pStmt = nullptr;  // the generic statement
  int m_bConnected = 0;
};

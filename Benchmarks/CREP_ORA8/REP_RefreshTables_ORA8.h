// SPDX-License-Identifier: Apache-2.0
// The refresh transactions bring tables, properties and sequence back to their first state between runs.
// Every user runs its own copies on its own driver and thread; the tables are dealt out so that no two users
// share one.
#pragma once

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/TRKArray.h"
#include "db/Xact.h"

class COracle8Driver;
struct OCIStmt;

// Runs statements on a handle of its own, allocated by the first one and kept until PostBenchmark, and cuts
// one table back to a number of rows. kept: can be created by its name and run, though it is not registered;
// and none of the family uses the timer.
class CREP_Refresh_Base : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CREP_Refresh_Base);

 public:
  CREP_Refresh_Base() = default;
  ~CREP_Refresh_Base() override;

  // Deletes the rows of m_strTableName above the number to keep, in committed batches, and reports progress;
  // a table that keeps nothing is truncated. 1 also when cancelled, 0 after a reported failure.
  int Execute() override;
  int PostBenchmark() override;  // frees the handle

  // The rows that the table keeps, and those it is expected to hold before. The base leaves both as they are.
  virtual int GetRowInfo(__int64& iStartRows, __int64& iTotalRows);

  int Execute(char const* lpSQL);  // runs and commits; the rows affected, or -1 after a reported failure

  LKString m_strSQL;
  LKString m_strTableName;
  OCIStmt* m_pstmt = nullptr;
  int m_iRowsPerBatch = 5000;

 private:
  int DeleteInBatches(COracle8Driver* pDriver, __int64 iRows2Del);
  int ReadRowCount(COracle8Driver* pDriver);
};

// Refreshes this user's share of the tables: user u of U takes u, u + U, u + 2U and so on.
class CREP_RefreshTable_ORA8 : public CREP_Refresh_Base {
  wxDECLARE_DYNAMIC_CLASS(CREP_RefreshTable_ORA8);

 public:
  CREP_RefreshTable_ORA8();
  ~CREP_RefreshTable_ORA8() override;  // the statement handle is not freed here

  int Execute() override;
  int PreBenchmark() override;  // lists the tables
  int GetRowInfo(__int64& iStartRows, __int64& iTotalRows) override;

  CTRKStringArray m_TableArray;  // in refresh order

 private:
  void AddTable(COracle8Driver* pDriver, const LKString& strTableName);
};

// Writes the number of tables and the scale of this run into the properties table.
class CREP_Refresh_Properties_Table : public CREP_Refresh_Base {
  wxDECLARE_DYNAMIC_CLASS(CREP_Refresh_Properties_Table);

 public:
  CREP_Refresh_Properties_Table();
  ~CREP_Refresh_Properties_Table() override;

  int Execute() override;
};

// Makes the ID sequence anew, so that it starts just above the rows of the current scale.
class CREP_Refresh_Sequence : public CREP_Refresh_Base {
  wxDECLARE_DYNAMIC_CLASS(CREP_Refresh_Sequence);

 public:
  CREP_Refresh_Sequence();
  ~CREP_Refresh_Sequence() override;

  int Execute() override;
};

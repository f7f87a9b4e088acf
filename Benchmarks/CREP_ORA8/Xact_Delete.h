// SPDX-License-Identifier: Apache-2.0
// The workload's delete: one row by a literal DELETE, the first recorded one, which is then forgotten, or,
// when none is recorded, a random one, which may not exist. Used by one virtual user's thread; it owns its
// statement handle from PreBenchmark to PostBenchmark. The commit is the host's.
#pragma once

#include <oci.h>

#include "core/LKTypes.h"
#include "db/Xact.h"

class COracle8Driver;

class CXact_Delete : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Delete);

 public:
  CXact_Delete();
  ~CXact_Delete() override;

  int PreBenchmark() override;  // 1 or 0
  int PreIteration() override;
  int Execute() override;  // 0 after a failure, else 1, whether or not a row was there
  int PostBenchmark() override;

  void BuildSQL();  // fills m_szSQL
  void Cleanup();   // frees the statement handle

  OCIStmt* m_pDeleteStmt = nullptr;
  LKString m_szSQL;  // of the current iteration
  int m_nNumberOfTables = 0;
  BOOL m_bInsertedRow = FALSE;  // the current row was a recorded one
  __int64 m_nTableID = 0;
  __int64 m_nRowID = 0;

 private:
  void ChooseRow();
  int RunDelete(COracle8Driver* pDriver, ub4& nRows);
};

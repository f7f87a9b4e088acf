// SPDX-License-Identifier: Apache-2.0
// The workload's update: every column of one row gets a new generated value through a literal UPDATE. Half of
// the time the row is the first one that an insert recorded, else a random one, which may not exist. Used by
// one virtual user's thread; it owns its statement handle from PreBenchmark to PostBenchmark. The commit is
// the host's.
#pragma once

#include <oci.h>

#include "core/LKTypes.h"
#include "db/Xact.h"

class CColumn;
class COracle8Driver;
class CRepTable;
class CTableLoader;
class IBind;
class IDataGenerator;

class CXact_Update : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Update);

 public:
  CXact_Update();
  ~CXact_Update() override;

  int PreBenchmark() override;  // 1 or 0
  int PreIteration() override;
  int Execute() override;  // 0 after a failure, else 1, whether or not a row was there
  int PostBenchmark() override;

  void BuildSQL();  // fills m_szSQL, or leaves it empty after a failure
  void Cleanup();   // frees the statement handle
  // "ID=42,COLUMN1=12.500000,…": a column without a bind, a generator or a known type is left out.
  LKString BuildSetList(CRepTable& table, CTableLoader& loader);

  OCIStmt* m_pUpdateStmt = nullptr;
  LKString m_szSQL;  // of the current iteration; empty: nothing to run
  int m_nNumberOfTables = 0;
  __int64 m_nTableID = 0;
  __int64 m_nRowID = 0;

 private:
  void ChooseRow();
  LKString BuildFragment(CColumn& column, IBind& bind, int nColumnIndex);
  LKString BuildAssignment(const CColumn& column, IDataGenerator* pGenerator, int nColumnIndex);
  int RunUpdate(COracle8Driver* pDriver, ub4& nEffectRows);
};

// SPDX-License-Identifier: Apache-2.0
// The workload's insert: one generated row into a random replication table, its ID from the sequence. Used by
// one virtual user's thread; it owns its statement handle from PreBenchmark to PostBenchmark. A row that was
// inserted is recorded with the benchmark, where the updates and deletes of all users find it. The commit is
// the host's.
#pragma once

#include <oci.h>

#include "core/LKTypes.h"
#include "db/Xact.h"

class COracle8Driver;

class CXact_Insert : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Insert);

 public:
  CXact_Insert();
  ~CXact_Insert() override;

  int PreBenchmark() override;  // 1; 0, or -1 when the sequence query cannot be prepared
  int PreIteration() override;
  int Execute() override;  // 1 when a row was inserted, else 0
  int PostBenchmark() override;

  __int64 GenerateNextID();  // the next ID of the sequence, or -1 after a report
  void Cleanup();            // frees the statement handle

  int m_nNumberOfTables = 0;
  double m_fNextID = 0.0;  // receives NEXTVAL
  sb2 m_nIndicator = 0;
  OCIStmt* m_pStmt = nullptr;  // the sequence query, prepared and defined once

 private:
  int PrepareSequenceQuery(COracle8Driver* pDriver);
  int InsertRow(COracle8Driver* pDriver, int nTableID, const LKString& strTableName);
  void RecordRow(int nTableID, __int64 nRowID);
};

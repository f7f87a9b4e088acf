// SPDX-License-Identifier: Apache-2.0
// How the draws of the workload spread: tables and rows, the half of the updates that take a recorded row,
// and the first draws of many users.
#include <string>
#include <vector>

#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "Statistics.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using statistics::HasShares;
using statistics::IsUniform;
using statistics::Tally;

constexpr int kTables = 9;
constexpr int kRows = 2000;  // of scale 2.7: its fraction counts for nothing
constexpr int kExecutions = 1200;

// The tables and the rows (in groups of 100) that a transaction chooses, one of them after the other.
template <class Transaction>
class ChoiceTest : public WorkloadTest<Transaction> {
 protected:
  ChoiceTest() { this->SetSettings(kTables, kRows / 1000.0 + 0.7); }

  void Choose() {
    Oci().ClearCalls();
    this->m_xact.BuildSQL();
    m_tables.Add(this->m_xact.m_nTableID);
    m_rows.Add((this->m_xact.m_nRowID + 99) / 100);
    m_both.Add((this->m_xact.m_nTableID - 1) * 2 + (this->m_xact.m_nRowID > kRows / 2 ? 1 : 0));
  }
  void ExpectUniform() {
    EXPECT_TRUE(IsUniform(m_tables));
    EXPECT_TRUE(IsUniform(m_rows));
    EXPECT_TRUE(IsUniform(m_both));
  }
  void StartAs(int nUser) {
    this->m_xact.SetUserID(nUser);
    ASSERT_EQ(this->m_xact.PreBenchmark(), 1);
  }

  Tally m_tables{1, kTables};
  Tally m_rows{1, kRows / 100};
  Tally m_both{0, 2 * kTables - 1};
};

using UpdateSpread = ChoiceTest<CXact_Update>;
using DeleteSpread = ChoiceTest<CXact_Delete>;

TEST_F(UpdateSpread, RandomTablesAndRowsAreUniform) {
  Start();
  for (int i = 0; i < kExecutions; ++i) Choose();
  ExpectUniform();
}

TEST_F(UpdateSpread, HalfOfTheUpdatesTakeTheRecordedRow) {
  m_benchmark.RecordRow(3, 1000000);
  Start();
  std::vector<long> counts(2);
  for (int i = 0; i < kExecutions; ++i) {
    Oci().ClearCalls();
    m_xact.BuildSQL();
    ++counts[m_xact.m_nRowID == 1000000 ? 1 : 0];
  }
  EXPECT_TRUE(HasShares(counts, {50, 50}));
}

TEST_F(UpdateSpread, TheFirstChoicesOfManyUsersAreUniform) {
  for (int nUser = 1; nUser <= kExecutions; ++nUser) {
    StartAs(nUser);
    Choose();
  }
  ExpectUniform();
}

TEST_F(DeleteSpread, RandomTablesAndRowsAreUniform) {
  Start();
  for (int i = 0; i < kExecutions; ++i) Choose();
  ExpectUniform();
}

TEST_F(DeleteSpread, TheFirstChoicesOfManyUsersAreUniform) {
  for (int nUser = 1; nUser <= kExecutions; ++nUser) {
    StartAs(nUser);
    Choose();
  }
  ExpectUniform();
}

class InsertSpread : public WorkloadTest<CXact_Insert> {
 protected:
  InsertSpread() : WorkloadTest(kTables) {}
  // The number behind "INSERT INTO LK_REP_TABLE".
  static long Table() { return std::stol(Oci().ExecutedSql().back().substr(24)); }
};

TEST_F(InsertSpread, TablesAreUniform) {
  Start();
  Tally tables(1, kTables);
  for (int i = 0; i < kExecutions; ++i) {
    Oci().ClearCalls();
    ASSERT_EQ(m_xact.Execute(), 1);
    tables.Add(Table());
  }
  EXPECT_TRUE(IsUniform(tables));
}

}  // namespace
}  // namespace scripted

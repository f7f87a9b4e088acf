// SPDX-License-Identifier: Apache-2.0
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"

#include <gmock/gmock.h>

#include "Recorders.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class XactInsert : public WorkloadTest<CXact_Insert> {
 protected:
  // Seed and skip: the table number that the k-th Execute (from 1) draws.
  static int DrawnTable(int nTables, int k) {
    CRandom random;
    random.Seed(kUser + 1);
    int nTable = 0;
    for (int i = 0; i < k; ++i) nTable = random.GetRandomInt(1, nTables);
    return nTable;
  }
};

TEST_F(XactInsert, WithoutAnOracleDriverThereIsNoNextId) {
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.SetDriver(pDriver);
    EXPECT_EQ(m_xact.GenerateNextID(), -1);
  }
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(XactInsert, APreBenchmarkThatFailsDoesNotSeed) {
  CRandom random;
  random.Seed(99);
  m_xact.GetRandomGenerator().Seed(99);
  for (const char* szCall : {"OCIHandleAlloc", "OCIStmtPrepare"}) {
    Oci().FailCall(szCall, 1, OraFault(1));
    EXPECT_LE(m_xact.PreBenchmark(), 0);
    EXPECT_EQ(m_xact.GetRandomGenerator().GetRandomInt(1, 1000000), random.GetRandomInt(1, 1000000))
        << szCall;
  }
}

TEST_F(XactInsert, OneInsertIsADescribeASequenceFetchAndAnUncommittedInsert) {
  Start();
  EXPECT_EQ(m_xact.Execute(), 1);
  const auto& runs = Oci().Executions();
  ASSERT_THAT(runs, SizeIs(3));
  EXPECT_EQ(runs[0].sql, "SELECT * FROM LK_REP_TABLE1");
  EXPECT_EQ(runs[0].mode, static_cast<ub4>(OCI_DESCRIBE_ONLY));
  EXPECT_EQ(runs[1].sql, kSequenceQuery);
  EXPECT_EQ(runs[1].mode, static_cast<ub4>(OCI_DEFAULT));
  EXPECT_EQ(runs[2].sql,
            "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2, COLUMN3) VALUES (:ID, :COLUMN1, :COLUMN2, "
            "TO_DATE(:COLUMN3, 'YYYY/MM/DD HH24:MI:SS'))");
  EXPECT_EQ(runs[2].mode, static_cast<ub4>(OCI_DEFAULT));
  EXPECT_EQ(runs[2].rows[0][0], "1001");
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 1);
  EXPECT_EQ(m_xact.GetTimer().GetBytes(), 0);
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
  EXPECT_EQ(ExtraHandles(), 1);  // its own statement: loader and table are freed
}

TEST_F(XactInsert, OfAColumnWithoutABindIsSentAndTheRefusalReported) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_BLOB, 4000, 0, 0, 0}});
  Start();
  Oci().FailSql("INSERT", 1, OraFault(1008, "not all variables bound"));
  EXPECT_EQ(m_xact.Execute(), 0);
  EXPECT_EQ(Oci().ExecutedSql().back(), "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1) VALUES (:ID, :COLUMN1)");
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 1008: ORA-01008: not all variables bound"));
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(XactInsert, WithOneTableEveryInsertGoesToTable1) {
  Start();
  for (int i = 0; i < 20; ++i) ASSERT_EQ(m_xact.Execute(), 1);
  for (const std::string& sql : Oci().ExecutedSql())
    EXPECT_TRUE(sql == kSequenceQuery || sql.find("LK_REP_TABLE1") != std::string::npos) << sql;
}

TEST_F(XactInsert, DrawsItsTablesFromAStreamSeededWithUserPlus1) {
  SetSettings(9, 1.0);
  Start();
  for (int k = 1; k <= 10; ++k) {
    Oci().ClearCalls();
    ASSERT_EQ(m_xact.Execute(), 1);
    EXPECT_EQ(Oci().ExecutedSql()[0], "SELECT * FROM LK_REP_TABLE" + std::to_string(DrawnTable(9, k)));
  }
}

TEST_F(XactInsert, ASequenceValueBelowMinus1IsAnOrdinaryId) {
  Start();
  Oci().AnswerCounting(kSequenceQuery, -2);
  EXPECT_EQ(m_xact.Execute(), 1);
}

TEST_F(XactInsert, ASequenceMayStartAt1) {
  Start();
  Oci().AnswerCounting(kSequenceQuery, 1);
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(2, 1)));
}

TEST_F(XactInsert, AFractionalNextvalIsTruncatedTowardZero) {
  Start();
  Oci().Answer(kSequenceQuery, {{{"1001.9"}}});
  EXPECT_EQ(m_xact.GenerateNextID(), 1001);
  Oci().Answer(kSequenceQuery, {{{"-7.9"}}});
  EXPECT_EQ(m_xact.GenerateNextID(), -7);
}

// kept: the indicator is not examined.
TEST_F(XactInsert, ANullNextvalLeavesTheIdOfTheExecutionBefore) {
  Start();
  Oci().Answer(kSequenceQuery, {{{"1001"}}, {{std::nullopt}}});
  EXPECT_EQ(m_xact.GenerateNextID(), 1001);
  EXPECT_EQ(m_xact.GenerateNextID(), 1001);
  EXPECT_EQ(m_xact.m_nIndicator, -1);
}

TEST_F(XactInsert, RecordsTheRowUnderTheSumOfTableAndId) {
  Start();
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(1002, 1001)));
}

TEST_F(XactInsert, ABenchmarkOfAnotherKindRecordsNothing) {
  CSSBenchmark other;
  m_xact.SetBenchmark(&other);
  Start();
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(XactInsert, RecordsNothingWhile100RowsAreRecordedAndAgainAfterADelete) {
  for (long id = 1; id <= 99; ++id) m_benchmark.RecordRow(1, id);
  Start();
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), SizeIs(100));  // 99 before: recorded
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), SizeIs(100));
  EXPECT_EQ(MapEntries().back(), std::make_pair(1002L, 1001L));
  DeleteOneRow();
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_EQ(MapEntries().back(), std::make_pair(1004L, 1003L));
}

TEST_F(XactInsert, RowsOfTwoTablesWithOneSumShareAnEntryAndTheLaterStays) {
  SetSettings(4, 1.0);
  Start();
  std::map<int, long> inserted;  // the ID that makes every table's sum 1010
  for (int k = 1; k <= 12; ++k) {
    const long id = 1010 - DrawnTable(4, k);
    Oci().Answer(kSequenceQuery, {{{std::to_string(id)}}});
    ASSERT_EQ(m_xact.Execute(), 1);
    EXPECT_THAT(MapEntries(), ElementsAre(Pair(1010, id)));
    inserted[DrawnTable(4, k)] = id;
  }
  EXPECT_GE(inserted.size(), 2U) << "the draws never left one table";
}

}  // namespace
}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"

#include <gmock/gmock.h>

#include "Recorders.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class XactDelete : public WorkloadTest<CXact_Delete> {
 protected:
  std::string Sql() const { return m_xact.m_szSQL.ToChar(); }
};

TEST_F(XactDelete, WithAnEmptyMapARandomRowOfTheTruncatedScaleIsDeleted) {
  SetSettings(5, 2.7);
  Start();
  CRandom random;
  random.Seed(kUser + 3);
  for (int i = 0; i < 200; ++i) {
    const int nTable = random.GetRandomInt(1, 5);
    const int nRow = random.GetRandomInt(1, 2000);
    m_xact.BuildSQL();
    ASSERT_EQ(Sql(),
              "delete from LK_REP_TABLE" + std::to_string(nTable) + " where id = " + std::to_string(nRow));
    ASSERT_EQ(m_xact.m_bInsertedRow, FALSE);
  }
}

TEST_F(XactDelete, WithoutABenchmarkOfItsKindTheTextIsThatOfARandomRow) {
  m_benchmark.RecordRow(3, 7);
  CSSBenchmark other;
  for (CSSBenchmark* pBenchmark : {static_cast<CSSBenchmark*>(nullptr), &other}) {
    m_xact.SetBenchmark(pBenchmark);
    Start();
    CRandom random;
    random.Seed(kUser + 3);
    const int nTable = random.GetRandomInt(1, 1);
    const int nRow = random.GetRandomInt(1, 1000);
    m_xact.BuildSQL();
    EXPECT_EQ(Sql(),
              "delete from LK_REP_TABLE" + std::to_string(nTable) + " where id = " + std::to_string(nRow));
    EXPECT_EQ(m_xact.m_bInsertedRow, FALSE);
  }
}

TEST_F(XactDelete, WithoutAnOracleDriverTheTextIsBuiltAllTheSame) {
  m_benchmark.RecordRow(3, 7);
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.m_szSQL = L"of the iteration before";
    m_xact.SetDriver(pDriver);
    m_xact.BuildSQL();
    EXPECT_EQ(Sql(), "delete from LK_REP_TABLE3 where id = 7");
  }
}

// The last row is row 0 then, and exchanged bounds are no error.
TEST_F(XactDelete, OfAScaleBelowOneDrawsTheRows0And1) {
  SetSettings(1, 0.9);
  Start();
  EXPECT_THAT(RowsOfExecutions(50), ElementsAre(0, 1));
}

TEST_F(XactDelete, ARecordedRowIsDeletedAndItsEntryErased) {
  m_benchmark.RecordRow(3, 7);
  Start();
  ASSERT_THAT(MapEntries(), ElementsAre(Pair(10, 7)));
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("delete from LK_REP_TABLE3 where id = 7"));
  EXPECT_EQ(m_xact.m_bInsertedRow, TRUE);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(XactDelete, RecordedRowsGoInKeyOrderWithoutARandomDraw) {
  m_benchmark.RecordRow(1, 30);
  m_benchmark.RecordRow(2, 10);
  m_benchmark.RecordRow(3, 20);
  SetSettings(5, 1.0);
  Start();
  for (int i = 0; i < 4; ++i) m_xact.Execute();
  CRandom random;  // only the fourth draws
  random.Seed(kUser + 3);
  const int nTable = random.GetRandomInt(1, 5);
  const int nRow = random.GetRandomInt(1, 1000);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("delete from LK_REP_TABLE2 where id = 10",
                                               "delete from LK_REP_TABLE3 where id = 20",
                                               "delete from LK_REP_TABLE1 where id = 30",
                                               "delete from LK_REP_TABLE" + std::to_string(nTable) +
                                                   " where id = " + std::to_string(nRow)));
}

TEST_F(XactDelete, TheEntryIsErasedAlsoWhenNoRowWasThere) {
  m_benchmark.RecordRow(3, 7);
  Oci().RowCounts("delete", {0});
  Start();
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 0);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(XactDelete, AFailingExecuteKeepsTheEntryAndTheNextDeleteRetriesTheRow) {
  m_benchmark.RecordRow(3, 7);
  Start();
  Oci().FailSql("delete", 1, OraFault(60, "deadlock detected"));
  EXPECT_EQ(m_xact.Execute(), 0);
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(10, 7)));
  EXPECT_FALSE(m_xact.GetTimer().IsEnded());
  ASSERT_THAT(m_reports.Errors(), SizeIs(1));
  EXPECT_EQ(m_reports.Errors()[0].m_szErrorNumber.ToChar(), "60");
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), "delete from LK_REP_TABLE3 where id = 7");
}

TEST_F(XactDelete, AnEntryThatAnotherUserErasedMeanwhileIsNoError) {
  m_benchmark.RecordRow(3, 7);
  Start();
  Oci().After("OCIStmtExecute", 1, [this] { m_benchmark.ForgetRow(3, 7); });
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

}  // namespace
}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
// The ID sequence: create and drop.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string CreateSql(const std::string& start) {
  return "CREATE SEQUENCE LK_REP_ID_SEQ START WITH " + start + " CACHE 100";
}

class CreateSequence : public plugin_test::SchemaTest {
 protected:
  int Run(double fScale) {
    m_benchmark.SetBenchmarkScale(fScale);
    Bind(m_xact);
    return m_xact.Execute();
  }

  plugin_test::Counting<CXact_Create_Sequence> m_xact;
};

TEST_F(CreateSequence, StartsJustAboveTheRowsOfTheBenchmarksScale) {
  m_properties.SetScale(7);  // of the settings: not asked
  EXPECT_EQ(Run(2.5), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("2501")));
}

TEST_F(CreateSequence, AScaleBelowOneIsReportedAndCreatesItAllTheSame) {
  EXPECT_EQ(Run(0.5), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("501")));
  EXPECT_THAT(
      m_asserts.Texts(),
      ElementsAre("Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:214 Execute: iStartRows >= 1000"));
}

TEST_F(CreateSequence, TheRowsAreTruncatedBeforeOneIsAdded) {
  EXPECT_EQ(Run(1.9999), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("2000")));
}

TEST_F(CreateSequence, AStartAboveThirtyTwoBitsIsWrittenWhole) {
  EXPECT_EQ(Run(5e6), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("5000000001")));
}

TEST_F(CreateSequence, WithoutABenchmarkItReturnsZeroWithoutACall) {
  Bind(m_xact);
  m_xact.SetBenchmark(nullptr);
  EXPECT_EQ(m_xact.Execute(), 0);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_FALSE(m_xact.GetTimer().IsStarted());
}

TEST_F(CreateSequence, CountersStartAtZeroInEveryRun) {
  m_xact.m_nRows = 7;
  m_xact.m_nXactBytes = 8;
  EXPECT_EQ(Run(1.0), 1);
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 0);
  EXPECT_EQ(m_xact.GetTimer().GetBytes(), 0);
}

// Answers the generic statement operations and writes them down, with the state of the ignore list.
class GenericDriver : public COracle8Driver {
 public:
  int PrepareStatement(const wchar_t* szSQL, int nFlag) override {
    return Note("prepare " + LKString(szSQL).ToChar(), nFlag);
  }
  int ExecuteStatement(int nFlag) override {
    Note("execute", nFlag);
    return m_nExecuteResult;
  }
  int CloseStatement() override { return Note("close", 0); }

  std::vector<std::string> m_calls;
  int m_nExecuteResult = 1;

 private:
  int Note(const std::string& call, int nFlag) {
    std::string ignored;
    for (const int nCode : {942, 4043, 2289})
      if (IsIgnoredError(nCode)) ignored += " " + std::to_string(nCode);
    m_calls.push_back(call + " " + std::to_string(nFlag) + " ignoring" + ignored);
    return 1;
  }
};

class DropSequenceByDriver : public scripted::ConnectedDriver<GenericDriver> {};

TEST_F(DropSequenceByDriver, GoesThroughTheDriversStatementAndReturnsItsResult) {
  CXact_Drop_Sequence xact;
  xact.SetDriver(&m_driver);
  m_driver.m_nExecuteResult = 42;
  EXPECT_EQ(xact.Execute(), 42);
  EXPECT_THAT(m_driver.m_calls,
              ElementsAre("prepare DROP SEQUENCE LK_REP_ID_SEQ 0 ignoring 942 4043 2289",
                          "execute 0 ignoring 942 4043 2289", "close 0 ignoring 942 4043 2289"));
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_FALSE(xact.GetTimer().IsStarted());
}

class DropSequence : public plugin_test::SchemaTest {};

TEST_F(DropSequence, DroppingItTwiceIsSilentAndFailsTheSecondTime) {
  CXact_Drop_Sequence xact;
  Bind(xact);
  EXPECT_NE(xact.Execute(), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP SEQUENCE LK_REP_ID_SEQ"));
  Oci().FailSql("DROP SEQUENCE", 1, OraFault(2289, "sequence does not exist"));
  EXPECT_EQ(xact.Execute(), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  for (const int nCode : {942, 4043, 2289}) EXPECT_FALSE(m_driver.IsIgnoredError(nCode)) << nCode;
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DropSequence, AnotherErrorIsReported) {
  CXact_Drop_Sequence xact;
  Bind(xact);
  Oci().FailSql("DROP SEQUENCE", 1, OraFault(1031));
  EXPECT_EQ(xact.Execute(), 0);
  EXPECT_THAT(OneReport(), HasSubstr("ORA-01031"));
  EXPECT_FALSE(m_driver.IsIgnoredError(2289));
}

}  // namespace

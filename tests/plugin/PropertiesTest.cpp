// SPDX-License-Identifier: Apache-2.0
// The properties table: create and drop.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::kHighStatus;
using scripted::kLowBitsZero;
using scripted::Oci;
using scripted::OraFault;
using scripted::StatusFault;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string kCreateTable =
    "CREATE TABLE LK_REP_PROPERTIES ( PROP_NAME VARCHAR2(50) NOT NULL, PROP_VALUE VARCHAR2(255) NOT NULL)";
const std::string kDropTable = "DROP TABLE LK_REP_PROPERTIES";

std::string Row(const std::string& name, const std::string& value) {
  return "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('" + name + "', '" + value + "'); ";
}

class CreateProperties : public plugin_test::SchemaTest {
 protected:
  CreateProperties() {
    SetTables(4);
    SetColumnNumbers(5, 12);
    m_properties.GetRepBenchmarkProperties().SetColumnDistribution(
        CRepBenchmarkProperties::NORMAL_DISTRIBUTION);
    m_properties.SetScale(3);
    SetColumns({});
  }

  int Run() {
    Bind(m_xact);
    return m_xact.Execute();
  }
  // The value rows of the settings above, with this scale.
  static std::string ValueRows(const std::string& scale) {
    return Row("Number Of Tables", "4") + Row("Minimum Column", "5") + Row("Maximum Column", "12") +
           Row("Distribution Mode", "4") + Row("Scale", scale);
  }
  static std::string Block(const std::string& rows) { return "BEGIN " + rows + " END;"; }

  plugin_test::Counting<CXact_Create_Replication_Properties_Table> m_xact;
};

TEST_F(CreateProperties, CreatesTheTableAndWritesAllRowsInOneBlockWithoutACommit) {
  SetColumns({Column(L"NUMBER", 3, false), Column(L"VARCHAR2(20)", 1, true)});
  const std::string block = Block(ValueRows("3") + Row("Column Structure", "NUMBER@3@0") +
                                  Row("Column Structure", "VARCHAR2(20)@1@1"));

  EXPECT_EQ(Run(), 1);

  EXPECT_THAT(Oci().Calls(), ElementsAre(Alloc(), Prepare(kCreateTable), Execute(OCI_DEFAULT), Prepare(block),
                                         Execute(OCI_DEFAULT)));
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(CreateProperties, KeepsTheHandleAndTheRunningTimerOnSuccess) {
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(ExtraHandles(), 1);
  EXPECT_TRUE(m_xact.GetTimer().IsStarted());
  EXPECT_FALSE(m_xact.GetTimer().IsEnded());
}

TEST_F(CreateProperties, AStartTableBelowOneCreatesTheTable) {
  for (const int nStart : {0, -1}) {
    m_properties.SetIntAttribute1(nStart);
    Oci().ClearCalls();
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(Oci().ExecutedSql().front(), kCreateTable);
  }
}

TEST_F(CreateProperties, ALaterStartTableDoesNothingAndSucceedsEvenWithoutADriver) {
  m_properties.SetIntAttribute1(1);
  Bind(m_xact);
  m_xact.SetDriver(nullptr);
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_FALSE(m_xact.GetTimer().IsStarted());
}

TEST_F(CreateProperties, NoColumnTypesGiveExactlyTheFiveValueRows) {
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
  m_properties.GetRepBenchmarkProperties().ClearColumnInfo();
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
}

TEST_F(CreateProperties, TheScaleIsRecordedTruncated) {
  m_properties.SetScale(2.9);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("2")));
}

TEST_F(CreateProperties, AMissingColumnTypeEndsTheStructureRowsAndTheRestIsWritten) {
  SetColumns({Column(L"DATE", 2, true), nullptr, Column(L"NUMBER", 3, false)});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3") + Row("Column Structure", "DATE@2@1")));
  EXPECT_THAT(m_asserts.Texts(),
              ElementsAre("Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:345 Execute: pColumn != __null"));
}

TEST_F(CreateProperties, AnEntryThatIsNoColumnTypeCountsAsMissing) {
  SetColumns({std::make_shared<CSSBenchmark>(), Column(L"NUMBER", 3, false)});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("pColumn != __null"));
}

TEST_F(CreateProperties, ATableThatIsThereFailsTheCreateBeforeAnyRowIsWritten) {
  Oci().FailSql("CREATE TABLE", 1, OraFault(955, "name is already used by an existing object"));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kCreateTable), Execute(OCI_DEFAULT), Free()));
  EXPECT_THAT(OneReport(), HasSubstr("ORA-00955"));
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(CreateProperties, AFailedAllocationEndsATimerThatWasNotStarted) {
  Oci().FailCall("OCIHandleAlloc", 1, StatusFault(kHighStatus));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc()));
  EXPECT_FALSE(m_xact.GetTimer().IsStarted());
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
  EXPECT_THAT(OneReport(), HasSubstr("status 65541 "));
}

TEST_F(CreateProperties, AFailedPrepareOfTheTableIsReportedWithItsWholeStatus) {
  Oci().FailCall("OCIStmtPrepare", 1, StatusFault(kHighStatus));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kCreateTable), Free()));
  EXPECT_THAT(OneReport(), HasSubstr("status 65541 "));
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
}

TEST_F(CreateProperties, AFailedPrepareOfTheBlockFreesTheHandle) {
  Oci().FailCall("OCIStmtPrepare", 2, OraFault(1013));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kCreateTable), Execute(OCI_DEFAULT),
                                       Prepare(Block(ValueRows("3"))), Free()));
  EXPECT_THAT(OneReport(), HasSubstr("ORA-01013"));
}

TEST_F(CreateProperties, AFailedBlockIsReportedAndFreesTheHandle) {
  Oci().FailSql("BEGIN", 1, OraFault(12899));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kCreateTable), Execute(OCI_DEFAULT),
                                       Prepare(Block(ValueRows("3"))), Execute(OCI_DEFAULT), Free()));
  EXPECT_THAT(OneReport(), HasSubstr("ORA-12899"));
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
}

TEST_F(CreateProperties, AStatusWhoseLowBitsAreZeroIsNoFailure) {
  Oci().FailSql("CREATE TABLE", 1, StatusFault(kLowBitsZero));
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(CreateProperties, TheTimerIsEndedBeforeTheReportIsMade) {
  bool bEnded = false;
  Oci().FailSql("BEGIN", 1, OraFault(12899));
  Oci().After("OCIErrorGet", 1, [&] { bEnded = m_xact.GetTimer().IsEnded(); });
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(bEnded);
}

TEST_F(CreateProperties, CountersStartAtZeroInEveryRunThatGetsAHandle) {
  m_xact.m_nRows = 7;
  m_xact.m_nXactBytes = 8;
  Oci().FailCall("OCIHandleAlloc", 1, OraFault(4031));
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 7);  // not yet set back
  EXPECT_EQ(m_xact.GetTimer().GetBytes(), 8);
  Oci().FailSql("CREATE TABLE", 1, OraFault(955));
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 0);
  EXPECT_EQ(m_xact.GetTimer().GetBytes(), 0);
}

class DropProperties : public plugin_test::SchemaTest {
 protected:
  int Run() {
    Bind(m_xact);
    return m_xact.Execute();
  }
  void ExpectNothingIgnored() {
    EXPECT_FALSE(m_driver.IsIgnoredError(942));
    EXPECT_FALSE(m_driver.IsIgnoredError(4043));
  }

  plugin_test::Counting<CXact_Drop_Replication_Properties_Table> m_xact;
};

TEST_F(DropProperties, DropsTheTableWithACommit) {
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Oci().Calls(),
              ElementsAre(Alloc(), Prepare(kDropTable), Execute(OCI_COMMIT_ON_SUCCESS), Free()));
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
  ExpectNothingIgnored();
}

TEST_F(DropProperties, CountersStartAtZeroInEveryRun) {
  m_xact.m_nRows = 7;
  m_xact.m_nXactBytes = 8;
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 0);
  EXPECT_EQ(m_xact.GetTimer().GetBytes(), 0);
}

TEST_F(DropProperties, AMissingTableIsAFailureThatIsNotReported) {
  for (const int nCode : {942, 4043}) {
    Oci().FailSql(kDropTable, 1, OraFault(nCode));
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(m_reports.Reports(), IsEmpty());
    EXPECT_TRUE(m_xact.GetTimer().IsEnded());
    ExpectNothingIgnored();
  }
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DropProperties, BothNumbersAreIgnoredWhileTheStatementRuns) {
  bool bTable = false;
  bool bObject = false;
  Oci().After("OCIStmtExecute", 1, [&] {
    bTable = m_driver.IsIgnoredError(942);
    bObject = m_driver.IsIgnoredError(4043);
  });
  EXPECT_EQ(Run(), 1);
  EXPECT_TRUE(bTable);
  EXPECT_TRUE(bObject);
}

TEST_F(DropProperties, TheTimerIsEndedBeforeTheReportAndTheNumbersAreIgnoredUntilTheHandleIsFreed) {
  for (const bool bFails : {true, false}) {
    bool bEnded = false;
    bool bIgnored = false;
    if (bFails) Oci().FailSql(kDropTable, 1, OraFault(54));
    Oci().After(bFails ? "OCIErrorGet" : "OCIHandleFree", 1, [&] { bEnded = m_xact.GetTimer().IsEnded(); });
    Oci().After("OCIHandleFree", 1,
                [&] { bIgnored = m_driver.IsIgnoredError(942) && m_driver.IsIgnoredError(4043); });
    EXPECT_EQ(Run(), bFails ? 0 : 1);
    EXPECT_TRUE(bEnded) << bFails;
    EXPECT_TRUE(bIgnored) << bFails;
  }
}

TEST_F(DropProperties, AnotherErrorIsReported) {
  Oci().FailSql(kDropTable, 1, OraFault(54));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kDropTable), Execute(OCI_COMMIT_ON_SUCCESS), Free()));
  EXPECT_THAT(OneReport(), HasSubstr("ORA-00054"));
  ExpectNothingIgnored();
}

TEST_F(DropProperties, EveryFailureIsReportedByItsLowBits) {
  for (const char* szCall : {"OCIHandleAlloc", "OCIStmtPrepare", "OCIStmtExecute"}) {
    m_reports.Clear();
    Oci().FailCall(szCall, 1, StatusFault(kHighStatus));
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(OneReport(), HasSubstr("status 5 ")) << szCall;
    EXPECT_EQ(ExtraHandles(), 0) << szCall;
    EXPECT_TRUE(m_xact.GetTimer().IsEnded()) << szCall;
    ExpectNothingIgnored();
  }
}

TEST_F(DropProperties, AFailedAllocationMakesNoOtherCall) {
  Oci().FailCall("OCIHandleAlloc", 1, OraFault(4031));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc()));
  EXPECT_TRUE(m_xact.GetTimer().IsStarted());
}

TEST_F(DropProperties, AFailedPrepareIgnoresNothingAndFreesTheHandle) {
  bool bIgnored = true;
  Oci().FailCall("OCIStmtPrepare", 1, OraFault(942));
  Oci().After("OCIErrorGet", 1, [&] { bIgnored = m_driver.IsIgnoredError(942); });
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(XactCalls(), ElementsAre(Alloc(), Prepare(kDropTable), Free()));
  EXPECT_FALSE(bIgnored);
  EXPECT_THAT(OneReport(), HasSubstr("ORA-00942"));
}

}  // namespace

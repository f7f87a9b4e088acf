// SPDX-License-Identifier: Apache-2.0
// Describing a table by name.
#include "Benchmarks/CREP_ORA8/RepTable.h"

#include <gmock/gmock.h>

#include <memory>

#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace {

using scripted::DescribeTable;
using scripted::IdColumn;
using scripted::kHighStatus;
using scripted::Oci;
using scripted::OraFault;
using scripted::StatusFault;
using scripted::TextColumn;
using testing::ElementsAre;
using testing::IsEmpty;

class RepTable : public scripted::ConnectedDriver<> {
 protected:
  RepTable() { DescribeTable("LK_REP_TABLE1", {IdColumn(), TextColumn("COLUMN1", 20)}); }
};

TEST_F(RepTable, IsDescribedByASelectThatIsNotRun) {
  {
    CRepTable table(&m_driver, L"LK_REP_TABLE1");
    EXPECT_EQ(table.Initialize(), 1);
    EXPECT_EQ(table.GetColumnCount(), 2U);
    EXPECT_EQ(table.GetColumns().GetAt(1)->GetName(), LKString(L"COLUMN1"));
    EXPECT_EQ(ExtraHandles(), 1);  // the describe statement lives as long as the table
  }
  const std::vector<std::string> calls = Oci().Calls();
  EXPECT_EQ(calls[0], "OCIHandleAlloc(env#1, 4, 0, null)");
  EXPECT_EQ(calls[1], "OCIStmtPrepare(stmt#1, err#1, \"SELECT * FROM LK_REP_TABLE1\", 27, 1, 0)");
  EXPECT_EQ(calls[2], "OCIStmtExecute(svc#1, stmt#1, err#1, 0, 0, null, null, 16)");
  EXPECT_EQ(calls[3], "OCIAttrGet(stmt#1, 4, null, 18, err#1)");
  EXPECT_EQ(calls.back(), "OCIHandleFree(stmt#1, 4)");
  EXPECT_EQ(Oci().CountCalls("OCIStmtExecute"), 1);
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_THAT(Oci().Violations(), IsEmpty());
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RepTable, WithoutADriverIsReportedAndFails) {
  CRepTable table(nullptr, L"LK_REP_TABLE1");
  EXPECT_EQ(table.Initialize(), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("m_pDriver != __null"));
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(RepTable, TakesADriverLater) {
  CRepTable table(nullptr, L"LK_REP_TABLE1");
  table.SetDriver(&m_driver);
  EXPECT_EQ(table.Initialize(), 1);
}

TEST_F(RepTable, AMissingHandleIsAnErrorMessage) {
  Oci().FailCall("OCIHandleAlloc", 1, {OCI_ERROR, 0, ""});
  CRepTable table(&m_driver, L"LK_REP_TABLE1");
  EXPECT_EQ(table.Initialize(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR -1: Unable allocate statement handle!"));
  EXPECT_EQ(m_reports.Errors()[0].m_bAlwaysDisplay, 0);
  EXPECT_THAT(Oci().CallNames(), ElementsAre("OCIHandleAlloc"));
}

TEST_F(RepTable, AFailedPrepareIsReportedAndFreesTheHandle) {
  Oci().FailCall("OCIStmtPrepare", 1, OraFault(1756, "no closing quote"));
  CRepTable table(&m_driver, L"LK_REP_TABLE1");
  EXPECT_EQ(table.Initialize(), 0);
  EXPECT_EQ(table.m_pStmt, nullptr);
  ASSERT_EQ(m_reports.Reports().size(), 1U);
  EXPECT_THAT(m_reports.Reports()[0],
              testing::AllOf(testing::HasSubstr("Unable Prepare statement while Initialize."),
                             testing::HasSubstr("ORA-01756: no closing quote")));
  EXPECT_THAT(Oci().CallNames(),
              ElementsAre("OCIHandleAlloc", "OCIStmtPrepare", "OCIErrorGet", "OCIErrorGet", "OCIHandleFree"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(RepTable, AFailedDescribeIsReportedAndFreesTheHandle) {
  CRepTable table(&m_driver, L"LK_REP_TABLE9");
  EXPECT_EQ(table.Initialize(), 0);
  EXPECT_EQ(table.m_pStmt, nullptr);
  ASSERT_EQ(m_reports.Reports().size(), 1U);
  EXPECT_THAT(m_reports.Reports()[0],
              testing::AllOf(testing::HasSubstr("Unable Describe table while Initialize!"),
                             testing::HasSubstr("ORA-00942")));
  EXPECT_THAT(Oci().CallNames(), ElementsAre("OCIHandleAlloc", "OCIStmtPrepare", "OCIStmtExecute",
                                             "OCIErrorGet", "OCIErrorGet", "OCIHandleFree"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(RepTable, AFailedPrepareOrDescribeIsReportedWithItsWholeStatus) {
  for (const char* szCall : {"OCIStmtPrepare", "OCIStmtExecute"}) {
    m_reports.Clear();
    Oci().FailCall(szCall, 1, StatusFault(kHighStatus));
    EXPECT_EQ(CRepTable(&m_driver, L"LK_REP_TABLE1").Initialize(), 0) << szCall;
    ASSERT_EQ(m_reports.Reports().size(), 1U);
    EXPECT_THAT(m_reports.Reports()[0], testing::HasSubstr("status 65541 ")) << szCall;
  }
}

TEST_F(RepTable, ColumnsThatCannotBeReadAreReportedAndTheHandleIsKept) {
  Oci().FailCall("OCIParamGet", 1, StatusFault(kHighStatus));
  {
    CRepTable table(&m_driver, L"LK_REP_TABLE1");
    EXPECT_EQ(table.Initialize(), 0);
    EXPECT_NE(table.m_pStmt, nullptr);
    EXPECT_EQ(ExtraHandles(), 1);
    ASSERT_EQ(m_reports.Reports().size(), 1U);
    EXPECT_THAT(m_reports.Reports()[0], testing::AllOf(testing::HasSubstr("Unable to initialize columns"),
                                                       testing::HasSubstr("status -1 ")));
  }
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(RepTable, CreatesAnInitialisedLoaderOfItsColumns) {
  CRepTable table(&m_driver, L"LK_REP_TABLE1");
  ASSERT_EQ(table.Initialize(), 1);
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(7));
  EXPECT_EQ(pLoader->m_strName, LKString(L"LK_REP_TABLE1"));
  EXPECT_EQ(pLoader->m_pColumns, &table.GetColumns());
  EXPECT_EQ(pLoader->m_nRowsPerCommit, 7);
  EXPECT_EQ(pLoader->GetBindArray().GetCount(), 2);
  EXPECT_EQ(pLoader->m_pDriver, &m_driver);
}

TEST_F(RepTable, CreatesALoaderAlsoWhenAColumnCannotBeBound) {
  DescribeTable("LK_REP_TABLE2", {IdColumn(), {"DOC", SQLT_CLOB, 4000, 0, 0, 1}});
  CRepTable table(&m_driver, L"LK_REP_TABLE2");
  ASSERT_EQ(table.Initialize(), 1);
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(7));
  ASSERT_NE(pLoader, nullptr);
  EXPECT_EQ(pLoader->GetBindArray().GetCount(), 1);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("0"));
}

}  // namespace

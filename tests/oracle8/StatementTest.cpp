// SPDX-License-Identifier: Apache-2.0
// The generic statement: prepare, execute, close.
#include <gmock/gmock.h>

#include "ConnectedDriver.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::IsEmpty;

using GenericStatement = scripted::ConnectedDriver<>;

TEST_F(GenericStatement, IsPreparedExecutedWithACommitAndClosed) {
  EXPECT_EQ(m_driver.PrepareStatement(L"DROP SEQUENCE S", 0), 1);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 1);
  EXPECT_EQ(m_driver.CloseStatement(), 1);
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIHandleAlloc(env#1, 4, 0, null)",
                                         "OCIStmtPrepare(stmt#1, err#1, \"DROP SEQUENCE S\", 15, 1, 0)",
                                         "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 32)",
                                         "OCIHandleFree(stmt#1, 4)"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(GenericStatement, MayBeExecutedSeveralTimes) {
  m_driver.PrepareStatement(L"DELETE FROM T", 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 1);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DELETE FROM T", "DELETE FROM T"));
}

TEST_F(GenericStatement, GivesWayToTheNextOne) {
  m_driver.PrepareStatement(L"DELETE FROM A", 0);
  m_driver.PrepareStatement(L"DELETE FROM B", 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DELETE FROM B"));
  EXPECT_EQ(ExtraHandles(), 1);
  m_driver.CloseStatement();
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(GenericStatement, ReportsAFailedExecuteAndMayStillBeClosed) {
  Oci().FailSql("DROP", 1, OraFault(2289, "sequence does not exist"));
  m_driver.PrepareStatement(L"DROP SEQUENCE S", 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 2289: Cannot execute the statement (execute failed)\n"
                                               "ORA-02289: sequence does not exist"));
  EXPECT_EQ(m_driver.CloseStatement(), 1);
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(GenericStatement, FailsInSilenceOnAnIgnoredNumber) {
  Oci().FailSql("DROP", 1, OraFault(2289));
  m_driver.AddIgnoreError(2289);
  m_driver.PrepareStatement(L"DROP SEQUENCE S", 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 2289);
}

TEST_F(GenericStatement, ThatCannotBePreparedLeavesNoHandle) {
  Oci().FailCall("OCIStmtPrepare", 1, OraFault(1756, "quoted string not properly terminated"));
  EXPECT_EQ(m_driver.PrepareStatement(L"DROP 'X", 0), 0);
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 1756: Cannot prepare: DROP 'X (prepare failed)\n"
                                               "ORA-01756: quoted string not properly terminated"));
}

TEST_F(GenericStatement, IsGoneWhenTheNextOneCannotBePrepared) {
  m_driver.PrepareStatement(L"DELETE FROM A", 0);
  Oci().FailCall("OCIHandleAlloc", 1, scripted::Fault{OCI_INVALID_HANDLE, 0, ""});
  EXPECT_EQ(m_driver.PrepareStatement(L"DELETE FROM B", 0), 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
  EXPECT_THAT(Oci().ExecutedSql(), IsEmpty());
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(GenericStatement, ThatIsNotPreparedIsNotExecuted) {
  EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR -1: Cannot execute the statement (no statement is prepared)"));
  EXPECT_EQ(m_driver.CloseStatement(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(GenericStatement, HandsItsTextOverInUtf8) {
  m_driver.PrepareStatement(L"DROP TABLE \u00c4", 0);
  EXPECT_THAT(Oci().Calls()[1], "OCIStmtPrepare(stmt#1, err#1, \"DROP TABLE \xc3\x84\", 13, 1, 0)");
}

}  // namespace

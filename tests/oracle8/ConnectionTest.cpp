// SPDX-License-Identifier: Apache-2.0
// Opening and closing a session: the calls in their order, and no handle left whatever fails.
#include <gmock/gmock.h>

#include <algorithm>

#include "ConnectedDriver.h"

namespace {

using scripted::Fault;
using scripted::Oci;
using scripted::OraFault;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class NewDriver : public testing::Test {
 protected:
  NewDriver() {
    Oci().Reset();
    m_driver.AddHandler(&m_reports);
  }
  int Connect() { return m_driver.Connect(L"db:1521/lk", L"scott", L"tiger"); }

  scripted::RecordingHandler m_reports;
  COracle8Driver m_driver;
};

using Session = scripted::ConnectedDriver<>;

std::vector<std::string> WithoutErrorGet(std::vector<std::string> names) {
  std::erase(names, "OCIErrorGet");
  return names;
}

TEST_F(NewDriver, ConnectsInTheClassicOrder) {
  EXPECT_EQ(Connect(), 1);
  EXPECT_THAT(
      Oci().Calls(),
      ElementsAre("OCIEnvNlsCreate(1, 873, 873)", "OCIHandleAlloc(env#1, 2, 0, null)",
                  "OCIHandleAlloc(env#1, 2, 0, null)", "OCIHandleAlloc(env#1, 8, 0, null)",
                  "OCIServerAttach(srv#1, err#1, \"db:1521/lk\", 0)", "OCIHandleAlloc(env#1, 3, 0, null)",
                  "OCIAttrSet(svc#1, 3, srv#1, 6, err#1)", "OCIHandleAlloc(env#1, 9, 0, null)",
                  "OCIAttrSet(ses#1, 9, \"scott\", 22, err#1)", "OCIAttrSet(ses#1, 9, ***, 23, err#1)",
                  "OCISessionBegin(svc#1, err#1, ses#1, 1, 0)", "OCIAttrSet(svc#1, 3, ses#1, 7, err#1)"));
  EXPECT_TRUE(m_driver.IsConnected());
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Session, ShowsItsHandles) {
  EXPECT_EQ(Oci().NameOf(m_driver.GetOCIEnvironment()), "env#1");
  EXPECT_EQ(Oci().NameOf(m_driver.GetOCIServerContext()), "svc#1");
  EXPECT_EQ(Oci().NameOf(m_driver.GetOCIError()), "err#1");
}

TEST_F(Session, RollsBackBeforeItEndsAndFreesChildrenBeforeParents) {
  EXPECT_EQ(m_driver.Disconnect(), 1);
  EXPECT_THAT(Oci().Calls(),
              ElementsAre("OCITransRollback(svc#1, err#1, 0)", "OCISessionEnd(svc#1, err#1, ses#1, 0)",
                          "OCIServerDetach(srv#1, err#1, 0)", "OCIHandleFree(ses#1, 9)",
                          "OCIHandleFree(svc#1, 3)", "OCIHandleFree(srv#1, 8)", "OCIHandleFree(err#2, 2)",
                          "OCIHandleFree(err#1, 2)", "OCIHandleFree(env#1, 1)"));
  EXPECT_FALSE(m_driver.IsConnected());
  EXPECT_EQ(m_driver.GetOCIError(), nullptr);
  EXPECT_EQ(Oci().Live(), 0);
}

TEST_F(Session, IsDisconnectedOnlyOnce) {
  m_driver.Disconnect();
  Oci().ClearCalls();
  EXPECT_EQ(m_driver.Disconnect(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(Session, RefusesASecondConnectAndStaysAsItWas) {
  EXPECT_EQ(m_driver.Connect(L"other", L"u", L"p"), 0);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_THAT(
      m_reports.Reports(),
      ElementsAre("ERROR -1: Cannot connect to \"other\" as \"u\": already connected, disconnect first."));
  EXPECT_TRUE(m_driver.IsConnected());
}

TEST_F(Session, FreesTheGenericStatementWithIt) {
  ASSERT_EQ(m_driver.PrepareStatement(L"DROP SEQUENCE S", 0), 1);
  Oci().ClearCalls();
  m_driver.Disconnect();
  EXPECT_EQ(Oci().Calls().at(0), "OCIHandleFree(stmt#1, 4)");
  EXPECT_EQ(Oci().Live(), 0);
  m_driver.CloseStatement();
  EXPECT_THAT(Oci().Violations(), IsEmpty());
}

TEST_F(NewDriver, ConnectsAgainAfterADisconnect) {
  ASSERT_EQ(Connect(), 1);
  ASSERT_EQ(m_driver.Disconnect(), 1);
  EXPECT_EQ(Connect(), 1);
  EXPECT_TRUE(m_driver.IsConnected());
}

TEST_F(NewDriver, ThatIsDestroyedConnectedRollsBackAndLeavesNothing) {
  {
    COracle8Driver driver;
    ASSERT_EQ(driver.Connect(L"db", L"u", L"p"), 1);
    ASSERT_EQ(driver.PrepareStatement(L"DROP TABLE T", 0), 1);
  }
  EXPECT_EQ(Oci().CountCalls("OCITransRollback"), 1);
  EXPECT_EQ(Oci().CountCalls("OCISessionEnd"), 1);
  EXPECT_EQ(Oci().Live(), 0);
}

TEST_F(NewDriver, ReportsWhichStepFailedWithServerAndUserAndNeverThePassword) {
  Oci().FailCall("OCIServerAttach", 1, OraFault(12541, "TNS:no listener"));
  EXPECT_EQ(Connect(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 12541: Cannot connect to \"db:1521/lk\" as \"scott\" "
                                               "(attach to the server failed)\nORA-12541: TNS:no listener"));
  EXPECT_EQ(m_driver.GetLastErrorCode(), 12541);
}

TEST_F(NewDriver, WithAWrongPasswordDetachesWithoutEndingASession) {
  Oci().FailCall("OCISessionBegin", 1, OraFault(1017, "invalid username/password; logon denied"));
  EXPECT_EQ(Connect(), 0);
  EXPECT_EQ(Oci().CountCalls("OCIServerDetach"), 1);
  EXPECT_EQ(Oci().CountCalls("OCISessionEnd"), 0);
  EXPECT_EQ(Oci().CountCalls("OCITransRollback"), 0);
  EXPECT_EQ(Oci().Live(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(AllOf(StartsWith("ERROR 1017: "), Not(HasSubstr("tiger")))));
}

TEST_F(NewDriver, TakesAWarningOfTheServerForAConnectionAndPassesItOn) {
  Oci().FailCall("OCISessionBegin", 1,
                 Fault{OCI_SUCCESS_WITH_INFO, 28002, "the password will expire within 7 days"});
  EXPECT_EQ(Connect(), 1);
  EXPECT_TRUE(m_driver.IsConnected());
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("WARNING 0: ORA-28002: the password will expire within 7 days"));
  EXPECT_THAT(Oci().Calls(), Contains("OCIAttrSet(svc#1, 3, ses#1, 7, err#1)"));
}

TEST_F(NewDriver, LeavesNoHandleWhicheverCallOfTheConnectFails) {
  Connect();
  const int calls = static_cast<int>(Oci().Calls().size());
  m_driver.Disconnect();
  for (int nth = 1; nth <= calls; ++nth) {
    Oci().Reset();
    m_reports.Clear();
    Oci().FailAnyCall(nth, OraFault(600));
    EXPECT_EQ(Connect(), 0) << "call " << nth;
    EXPECT_FALSE(m_driver.IsConnected()) << "call " << nth;
    EXPECT_EQ(Oci().Live(), 0) << "call " << nth;
    EXPECT_EQ(m_reports.Reports().size(), 1u) << "call " << nth;
    EXPECT_THAT(Oci().Violations(), IsEmpty()) << "call " << nth;
  }
}

class FailedDisconnect : public Session, public testing::WithParamInterface<const char*> {};

TEST_P(FailedDisconnect, IsReportedOnceAndStillFreesEveryHandle) {
  Oci().FailCall(GetParam(), 1, OraFault(3113, "end-of-file on communication channel"));
  EXPECT_EQ(m_driver.Disconnect(), 0);
  EXPECT_FALSE(m_driver.IsConnected());
  EXPECT_EQ(Oci().Live(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(AllOf(StartsWith("ERROR 3113: Cannot disconnect in order"),
                                                     HasSubstr("ORA-03113"))));
}

INSTANTIATE_TEST_SUITE_P(Calls, FailedDisconnect,
                         testing::Values("OCITransRollback", "OCISessionEnd", "OCIServerDetach"));

TEST_F(Session, IsNotEndedInOrderAfterAFailedRollbackBecauseThatWouldCommit) {
  Oci().FailCall("OCITransRollback", 1, OraFault(3113));
  m_driver.Disconnect();
  EXPECT_THAT(WithoutErrorGet(Oci().CallNames()),
              ElementsAre("OCITransRollback", "OCIServerDetach", "OCIHandleFree", "OCIHandleFree",
                          "OCIHandleFree", "OCIHandleFree", "OCIHandleFree", "OCIHandleFree"));
}

TEST_F(Session, CommitsAndRollsBack) {
  EXPECT_EQ(m_driver.Commit(), 1);
  EXPECT_EQ(m_driver.Rollback(), 1);
  EXPECT_THAT(Oci().Calls(),
              ElementsAre("OCITransCommit(svc#1, err#1, 0)", "OCITransRollback(svc#1, err#1, 0)"));
}

TEST_F(Session, ReportsAFailedCommitAndAFailedRollback) {
  Oci().FailCall("OCITransCommit", 1, OraFault(60, "deadlock detected"));
  Oci().FailCall("OCITransRollback", 1, OraFault(3114, "not connected"));
  EXPECT_EQ(m_driver.Commit(), 0);
  EXPECT_EQ(m_driver.Rollback(), 0);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR 60: Cannot commit (commit failed)\nORA-00060: deadlock detected",
                          "ERROR 3114: Cannot roll back (roll back failed)\n"
                          "ORA-03114: not connected"));
}

TEST_F(NewDriver, SaysThatItIsNotConnectedAndCallsNothing) {
  std::vector<std::vector<LKString>> rows;
  EXPECT_EQ(m_driver.Commit(), 0);
  EXPECT_EQ(m_driver.Rollback(), 0);
  EXPECT_EQ(m_driver.PrepareStatement(L"DROP TABLE T", 0), 0);
  EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
  EXPECT_EQ(m_driver.Query(L"SELECT 1 FROM DUAL", rows), 0);
  EXPECT_EQ(m_driver.BackupExists(L"T"), 0);
  EXPECT_TRUE(m_driver.GetServerVersion().IsEmpty());
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_THAT(
      m_reports.Reports(),
      ElementsAre("ERROR -1: Cannot commit: not connected.", "ERROR -1: Cannot roll back: not connected.",
                  "ERROR -1: Cannot prepare: DROP TABLE T: not connected.",
                  "ERROR -1: Cannot execute the statement: not connected.", HasSubstr("not connected."),
                  HasSubstr("not connected."), "ERROR -1: Cannot read the server version: not connected."));
}

TEST_F(Session, ReadsTheVersionOfTheServer) {
  EXPECT_EQ(m_driver.GetServerVersion().ToChar(), "Scripted Database Release 1.0");
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIServerVersion(svc#1, err#1, 512, 3)"));
  Oci().FailCall("OCIServerVersion", 1, OraFault(3114));
  EXPECT_TRUE(m_driver.GetServerVersion().IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 3114);
}

}  // namespace

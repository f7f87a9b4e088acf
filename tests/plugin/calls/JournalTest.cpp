// SPDX-License-Identifier: Apache-2.0
// The journal itself, where the transactions' own do not show it.
#include <gmock/gmock.h>
#include <wx/log.h>

#include "JournalDriver.h"
#include "core/Timer.h"

namespace scripted {
namespace {

using testing::ElementsAre;

class AJournal : public JournalTest {};

TEST_F(AJournal, HearsEveryCallToATimer) {
  CTimer timer;
  m_journal.Clear();
  timer.SetStartTime();
  timer.SetResponseTime();
  (void)timer.Read();
  timer.SetEndTime(3, 4);
  EXPECT_EQ(timer.GetRows(), 3);
  EXPECT_EQ(timer.GetBytes(), 4);
  timer.Reset();
  EXPECT_FALSE(timer.IsStarted());
  EXPECT_THAT(m_journal.All(),
              ElementsAre("SetStartTime()", "SetResponseTime()", "Read()", "SetEndTime(3, 4)", "Reset()"));
}

TEST_F(AJournal, TellsMessagesByLevelAndWhetherTheyAreAlwaysDisplayed) {
  m_driver.HandleWarningMsg(L"a");
  m_driver.CErrorHandler::HandleErrorMsg(L"b", 1);
  m_driver.CErrorHandler::HandleCriticalMsg(L"c", 0);
  EXPECT_THAT(m_journal.All(),
              ElementsAre("HandleWarningMsg(\"a\")", "HandleErrorMsg(\"b\", 1)", "HandleCriticalMsg(\"c\")"));
}

TEST_F(AJournal, LeavesOutWhatTheDriverDoesInItsOperationsButNotItsReports) {
  Oci().FailCall("OCITransCommit", 1, OraFault(2091));
  EXPECT_EQ(m_driver.Commit(), 0);
  m_driver.HandleError(OCI_SUCCESS, m_driver.GetOCIError(), L"text", 0, 0);
  EXPECT_THAT(m_journal.All(),
              ElementsAre("Commit()", "reported ERROR 2091", "HandleError(0, err#1, \"text\", 0, 0)"));
}

TEST_F(AJournal, HoldsEachChangeOfTheListOfIgnoredErrorsBeforeTheNextEvent) {
  m_driver.AddIgnoreError(1);
  m_driver.AddIgnoreError(1);
  m_driver.HandleInfoMsg(L"a");
  m_driver.RemoveIgnoreError(1);
  EXPECT_THAT(m_journal.All(), ElementsAre("AddIgnoreError(1)", "AddIgnoreError(1)", "HandleInfoMsg(\"a\")",
                                           "RemoveIgnoreError(1)"));
}

TEST_F(AJournal, HoldsRemovalsFromTheListOfIgnoredErrorsInTheirOrder) {
  for (const int nCode : {1, 2, 3}) m_driver.AddIgnoreError(nCode);
  m_journal.Clear();
  for (const int nCode : {2, 3, 1}) m_driver.RemoveIgnoreError(nCode);
  EXPECT_THAT(m_journal.All(),
              ElementsAre("RemoveIgnoreError(2)", "RemoveIgnoreError(3)", "RemoveIgnoreError(1)"));
}

TEST_F(AJournal, HoldsDebugLinesOfALogRecorder) {
  LogRecorder log;
  wxLogger(wxLOG_Debug, "File.cpp", 12, "Execute", wxLOG_COMPONENT).Log("line");
  EXPECT_THAT(m_journal.All(), ElementsAre("debug File.cpp:12 Execute: line"));
}

TEST_F(AJournal, StartsItsRunsEmptyAndEndsThemWithTheResult) {
  m_driver.HandleInfoMsg(L"before");
  EXPECT_THAT(m_journal.Run([] { return -1; }), ElementsAre("returned -1"));
}

}  // namespace
}  // namespace scripted

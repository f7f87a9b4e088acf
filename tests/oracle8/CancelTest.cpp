// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "ConnectedDriver.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::IsEmpty;

using Cancel = scripted::ConnectedDriver<>;

TEST_F(Cancel, BreaksTheRunningCallWithAnErrorHandleOfItsOwn) {
  EXPECT_EQ(m_driver.Cancel(), 1);
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIBreak(svc#1, err#2)"));
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Cancel, ThatFailsIsReportedAndLeavesTheSessionsLastErrorAlone) {
  m_driver.HandleError(OCI_INVALID_HANDLE, nullptr, 0, 0);
  m_reports.Clear();
  Oci().FailCall("OCIBreak", 1, OraFault(3114, "not connected"));
  EXPECT_EQ(m_driver.Cancel(), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 3114: Cannot cancel\nORA-03114: not connected"));
  EXPECT_EQ(m_driver.GetLastErrorCode(), 0);
}

TEST_F(Cancel, WithoutASessionHasNothingToStop) {
  m_driver.Disconnect();
  Oci().ClearCalls();
  EXPECT_EQ(m_driver.Cancel(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(Cancel, DuringADisconnectNoLongerFindsTheSession) {
  int cancelled = 0;
  Oci().After("OCITransRollback", 1, [&] { cancelled = m_driver.Cancel(); });
  EXPECT_EQ(m_driver.Disconnect(), 1);
  EXPECT_EQ(cancelled, 1);
  EXPECT_EQ(Oci().CountCalls("OCIBreak"), 0);
}

TEST_F(Cancel, FromAnotherThreadMayMeetConnectsAndDisconnects) {
  std::atomic<bool> done{false};
  std::atomic<int> failures{0};
  std::thread canceller([&] {
    while (!done) failures += m_driver.Cancel() == 0 ? 1 : 0;
  });
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(m_driver.Disconnect(), 1);
    EXPECT_EQ(m_driver.Connect(L"db", L"u", L"p"), 1);
  }
  done = true;
  canceller.join();
  EXPECT_EQ(failures, 0);
  EXPECT_THAT(Oci().Violations(), IsEmpty());
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "db/DriverBase.h"

#include <gmock/gmock.h>

#include "Recorders.h"

namespace {

using scripted::RecordingHandler;
using testing::ElementsAre;

class IdleDriver : public CDriverBase {
 public:
  int Connect(LKString, LKString, LKString) override { return 1; }
  int Disconnect() override { return 1; }
  int IsConnected() const override { return 1; }
  int Commit() override { return 1; }
  int Rollback() override { return 1; }
  int Cancel() override { return 1; }
  int PrepareStatement(const wchar_t*, int) override { return 1; }
  int ExecuteStatement(int) override { return 1; }
  int CloseStatement() override { return 1; }
  int Query(LKString, std::vector<std::vector<LKString>>&) override { return 1; }
  LKString GetServerVersion() override { return {}; }
};

TEST(IgnoreList, HoldsACodeUntilEachAddHasHadItsRemove) {
  IdleDriver driver;
  driver.AddIgnoreError(942);
  driver.AddIgnoreError(942);
  driver.AddIgnoreError(2289);
  driver.RemoveIgnoreError(942);
  EXPECT_TRUE(driver.IsIgnoredError(942));
  driver.RemoveIgnoreError(942);
  EXPECT_FALSE(driver.IsIgnoredError(942));
  EXPECT_TRUE(driver.IsIgnoredError(2289));
}

TEST(IgnoreList, TakesARemoveWithoutAnAddAsNothing) {
  IdleDriver driver;
  driver.RemoveIgnoreError(942);
  driver.AddIgnoreError(942);
  EXPECT_TRUE(driver.IsIgnoredError(942));
}

TEST(DriverMessages, GoToTheHandlerAndAreNotAlwaysDisplayed) {
  IdleDriver driver;
  RecordingHandler handler;
  driver.AddHandler(&handler);
  driver.HandleErrorMsg(L"broken");
  driver.HandleWarningMsg(L"worn");
  driver.HandleInfoMsg(L"fine");
  EXPECT_THAT(handler.Reports(), ElementsAre("ERROR -1: broken", "WARNING 0: worn", "INFO 0: fine"));
  for (const CError& error : handler.Errors()) EXPECT_EQ(error.m_bAlwaysDisplay, 0);
}

TEST(DriverMessages, WithoutATextReachNoHandler) {
  IdleDriver driver;
  RecordingHandler handler;
  driver.AddHandler(&handler);
  driver.HandleErrorMsg(nullptr);
  driver.HandleInfoMsg(nullptr);
  driver.HandleWarningMsg(nullptr);
  EXPECT_TRUE(handler.Reports().empty());
}

TEST(Driver, CannotBeMadeFromItsAbstractClassInformation) {
  IdleDriver driver;
  EXPECT_TRUE(driver.IsKindOf(CLASSINFO(CDriverBase)));
  EXPECT_FALSE(CLASSINFO(CDriverBase)->IsDynamic());
}

}  // namespace

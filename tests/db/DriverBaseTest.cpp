// SPDX-License-Identifier: Apache-2.0
#include "db/DriverBase.h"

#include <gmock/gmock.h>

#include "ForeignDriver.h"
#include "Recorders.h"

namespace {

using scripted::ForeignDriver;
using scripted::RecordingHandler;
using testing::ElementsAre;

TEST(IgnoreList, HoldsACodeUntilEachAddHasHadItsRemove) {
  ForeignDriver driver;
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
  ForeignDriver driver;
  driver.RemoveIgnoreError(942);
  driver.AddIgnoreError(942);
  EXPECT_TRUE(driver.IsIgnoredError(942));
}

TEST(DriverMessages, GoToTheHandlerAndAreNotAlwaysDisplayed) {
  ForeignDriver driver;
  RecordingHandler handler;
  driver.AddHandler(&handler);
  driver.HandleErrorMsg(L"broken");
  driver.HandleWarningMsg(L"worn");
  driver.HandleInfoMsg(L"fine");
  EXPECT_THAT(handler.Reports(), ElementsAre("ERROR -1: broken", "WARNING 0: worn", "INFO 0: fine"));
  for (const CError& error : handler.Errors()) EXPECT_EQ(error.m_bAlwaysDisplay, 0);
}

TEST(DriverMessages, WithoutATextReachNoHandler) {
  ForeignDriver driver;
  RecordingHandler handler;
  driver.AddHandler(&handler);
  driver.HandleErrorMsg(nullptr);
  driver.HandleInfoMsg(nullptr);
  driver.HandleWarningMsg(nullptr);
  EXPECT_TRUE(handler.Reports().empty());
}

TEST(Driver, CannotBeMadeFromItsAbstractClassInformation) {
  ForeignDriver driver;
  EXPECT_TRUE(driver.IsKindOf(CLASSINFO(CDriverBase)));
  EXPECT_FALSE(CLASSINFO(CDriverBase)->IsDynamic());
}

}  // namespace

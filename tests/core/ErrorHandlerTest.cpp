// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "core/ErrorHandler.h"

namespace {

class Recorder final : public CErrorHandler {
 public:
  int HandleError(CError* pError) override {
    errors.push_back(*pError);
    return 7;
  }
  std::vector<CError> errors;
};

class Link final : public CErrorHandler {};

using MessageCall = void (CErrorHandler::*)(const wchar_t*, int);

constexpr MessageCall kCalls[] = {&CErrorHandler::HandleCriticalMsg, &CErrorHandler::HandleErrorMsg,
                                  &CErrorHandler::HandleWarningMsg, &CErrorHandler::HandleInfoMsg};

}  // namespace

TEST(ErrorHandler, NullMessageCallsNoHandler) {
  Recorder recorder;
  Link link;
  link.AddHandler(&recorder);
  for (const MessageCall call : kCalls) {
    (recorder.*call)(nullptr, 1);
    (link.*call)(nullptr, 0);
  }
  EXPECT_TRUE(recorder.errors.empty());
}

// Were a lock taken, this test would wait for itself.
TEST(ErrorHandler, MessagesTakeNoLockOfTheirHandler) {
  struct Locked final : CErrorHandler {
    int HandleError(CError*) override { return ++reports; }
    wxCriticalSection& Lock() { return m_ErrorHandlerCriticalSection; }
    int reports = 0;
  } handler;
  const wxCriticalSectionLocker lock(handler.Lock());
  std::jthread([&] {
    for (const MessageCall call : kCalls) (handler.*call)(L"text", 0);
  }).join();
  EXPECT_EQ(handler.reports, 4);
}

TEST(ErrorHandler, MessageBecomesAReportWithLevelAndNumber) {
  Recorder recorder;
  recorder.HandleErrorMsg(L"broken", 1);
  recorder.HandleInfoMsg(L"done", 0);
  recorder.HandleCriticalMsg(L"dead", 1);
  recorder.HandleWarningMsg(L"slow", 0);
  ASSERT_EQ(recorder.errors.size(), 4u);
  const eErrorLevel levels[] = {ERROR_LEVEL, INFO_LEVEL, CRITICAL_LEVEL, WARNING_LEVEL};
  const wchar_t* numbers[] = {L"-1", L"0", L"-1", L"0"};
  const wchar_t* messages[] = {L"broken", L"done", L"dead", L"slow"};
  for (size_t i = 0; i < 4; ++i) {
    const CError& error = recorder.errors[i];
    EXPECT_EQ(error.m_eErrorLevel, levels[i]);
    EXPECT_EQ(error.m_szErrorNumber, LKString(numbers[i]));
    EXPECT_EQ(error.m_szErrorMessage, LKString(messages[i]));
    EXPECT_EQ(error.m_bAlwaysDisplay, i % 2 == 0 ? 1 : 0);
    EXPECT_TRUE(error.m_szErrorSeverity.IsEmpty());
    EXPECT_TRUE(error.m_szErrorLocation.IsEmpty());
    EXPECT_TRUE(error.m_szData.IsEmpty());
  }
}

TEST(ErrorHandler, ReportTravelsToTheEndOfTheChain) {
  Link first;
  Link second;
  Recorder last;
  first.AddHandler(&second);
  first.AddHandler(&last);
  CError error;
  EXPECT_EQ(first.HandleError(&error), 7);
  EXPECT_EQ(second.HandleError(&error), 7);
  EXPECT_EQ(last.errors.size(), 2u);
}

TEST(ErrorHandler, ReportWithoutANextHandlerGives0) {
  Link alone;
  CError error;
  EXPECT_EQ(alone.HandleError(&error), 0);
}

TEST(ErrorHandler, FreshReportIsEmptyAndOfUnknownLevel) {
  const CError error;
  EXPECT_EQ(error.m_eErrorLevel, UNKNOWN_LEVEL);
  EXPECT_EQ(error.m_bAlwaysDisplay, 0);
  EXPECT_EQ(UNKNOWN_LEVEL, -1);
  EXPECT_EQ(INFO_LEVEL, 1);
  EXPECT_EQ(WARNING_LEVEL, 2);
  EXPECT_EQ(ERROR_LEVEL, 3);
  EXPECT_EQ(CRITICAL_LEVEL, 4);
}

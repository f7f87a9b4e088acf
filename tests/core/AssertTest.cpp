// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <wx/debug.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

#include "AssertionList.h"

namespace {

void Fail() { wxOnAssert("Benchmarks/CREP_ORA8/Some.cpp", 62, "PreBenchmark", "n > 0", "none"); }

// Says before each report that it is about to be made. One of its kind at a time.
class ReportWatch {
 public:
  explicit ReportWatch(std::latch& reporting) {
    s_pReporting = &reporting;
    s_previous = wxSetAssertHandler([](const wxString& file, int nLine, const wxString& function,
                                       const wxString& condition, const wxString& message) {
      s_pReporting->count_down();
      s_previous(file, nLine, function, condition, message);
    });
  }
  ~ReportWatch() { wxSetAssertHandler(s_previous); }
  ReportWatch(const ReportWatch&) = delete;
  ReportWatch& operator=(const ReportWatch&) = delete;

 private:
  static inline std::latch* s_pReporting;
  static inline wxAssertHandler_t s_previous;
};

}  // namespace

TEST(Assertion, ReachesTheSinkWithAllThatItSays) {
  const AssertionList assertions;
  Fail();
  ASSERT_EQ(assertions.All().size(), 1u);
  const LKAssertion report = assertions.All()[0];
  EXPECT_EQ(report.m_szFile, LKString(L"Benchmarks/CREP_ORA8/Some.cpp"));
  EXPECT_EQ(report.m_nLine, 62);
  EXPECT_EQ(report.m_szFunction, LKString(L"PreBenchmark"));
  EXPECT_EQ(report.m_szCondition, LKString(L"n > 0"));
  EXPECT_EQ(report.m_szMessage, LKString(L"none"));
}

TEST(Assertion, LetsExecutionContinue) {
  const AssertionList assertions;
  int nSteps = 0;
  wxASSERT(nSteps > 0);
  ++nSteps;
  EXPECT_EQ(nSteps, 1);
  EXPECT_EQ(assertions.All().size(), 1u);
}

TEST(Assertion, GoesToTheStandardErrorOutputByDefault) {
  testing::internal::CaptureStderr();
  Fail();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Benchmarks/CREP_ORA8/Some.cpp:62: PreBenchmark: assertion failed: n > 0 (none)\n");
}

TEST(Assertion, WithinASinkGoesToTheStandardErrorOutput) {
  int nReports = 0;
  const LKAssertSink previous = LKSetAssertSink([&nReports](const LKAssertion&) {
    ++nReports;
    Fail();
  });
  testing::internal::CaptureStderr();
  Fail();
  const std::string line = testing::internal::GetCapturedStderr();
  LKSetAssertSink(previous);
  EXPECT_EQ(nReports, 1);
  EXPECT_NE(line.find("Some.cpp:62"), std::string::npos);
}

TEST(Assertion, LeavesASinkThatThrowsReadyForTheNext) {
  const LKAssertSink previous = LKSetAssertSink([](const LKAssertion&) { throw std::runtime_error("sink"); });
  EXPECT_THROW(Fail(), std::runtime_error);
  EXPECT_THROW(Fail(), std::runtime_error);
  LKSetAssertSink(previous);
}

TEST(Assertion, FromManyThreadsArrivesOnceEach) {
  const AssertionList assertions;
  std::vector<std::jthread> threads;
  for (int nThread = 0; nThread < 8; ++nThread)
    threads.emplace_back([] {
      for (int i = 0; i < 50; ++i) Fail();
    });
  threads.clear();
  EXPECT_EQ(assertions.All().size(), 400u);
}

// Were the text of an assertion made by Format, this test would wait for itself.
TEST(Assertion, WithinAFormatDoesNotWaitForTheTextOfAnother) {
  std::latch reporting(2);
  std::latch inSink(1);
  std::atomic<int> nTexts{0};
  const LKAssertSink previous = LKSetAssertSink([&](const LKAssertion& assertion) {
    if (nTexts == 0) {
      inSink.count_down();
      reporting.wait();  // until the other thread is on its way here, within its Format
    }
    if (!LKAssertionText(assertion).IsEmpty()) ++nTexts;
  });
  {
    const ReportWatch watch(reporting);
    const std::jthread first(Fail);
    const std::jthread second([&] {
      inSink.wait();
      LKString().Format(L"%s %d", LKString(L"a"), LKString(L"b"));
    });
  }
  LKSetAssertSink(previous);
  EXPECT_EQ(nTexts, 2);
}

TEST(Assertion, WithoutAMessageNeedsNoBrackets) {
  LKAssertion assertion;
  assertion.m_szFile = L"a.cpp";
  assertion.m_nLine = 1;
  assertion.m_szFunction = L"f";
  assertion.m_szCondition = L"x";
  EXPECT_EQ(LKAssertionText(assertion), LKString(L"a.cpp:1: f: assertion failed: x"));
}

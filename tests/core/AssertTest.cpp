// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <wx/debug.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "AssertionList.h"

namespace {

void Fail() { wxOnAssert("Benchmarks/CREP_ORA8/Some.cpp", 62, "PreBenchmark", "n > 0", "none"); }

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

TEST(Assertion, WithoutAMessageNeedsNoBrackets) {
  LKAssertion assertion;
  assertion.m_szFile = L"a.cpp";
  assertion.m_nLine = 1;
  assertion.m_szFunction = L"f";
  assertion.m_szCondition = L"x";
  EXPECT_EQ(LKAssertionText(assertion), LKString(L"a.cpp:1: f: assertion failed: x"));
}

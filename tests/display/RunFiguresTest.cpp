// SPDX-License-Identifier: Apache-2.0
#include "lkbench/metrics/RunFigures.h"

#include <gtest/gtest.h>
#include <prometheus/text_serializer.h>

#include <sstream>

namespace lkbench {
namespace {

class RunFiguresTest : public testing::Test {
 protected:
  RunFiguresTest() {
    m_phase.settings.name = "burst";
    m_interval.users = 5;
    m_interval.backlog = 7;
    XactTotals& xact = m_part.xacts.emplace_back();
    xact.name = "Insert";
    xact.executions = 5;
    xact.failures = 3;
    xact.rows = 2;
    xact.errors[static_cast<size_t>(ErrorClass::kDeadlock)] = 2;
    xact.errors[static_cast<size_t>(ErrorClass::kOther)] = 1;
    xact.response.Record(2'000'000);
    xact.response.Record(400'000'000);
  }
  void Set() { m_figures.Set({m_interval, m_phase, m_part}); }
  bool Has(const std::string& line) const {
    std::ostringstream text;
    prometheus::TextSerializer().Serialize(text, m_figures.Collect());
    return ('\n' + text.str()).find('\n' + line + '\n') != std::string::npos;
  }

  RunFigures m_figures{{{"verb", "run"}}};
  Interval m_interval;
  PhaseRecord m_phase;
  Part m_part;
};

TEST_F(RunFiguresTest, FailuresAreCountedByTheirClass) {
  Set();
  const std::string labels = R"({phase="burst",part="measured",transaction="Insert")";
  EXPECT_TRUE(Has("lkbench_executions_total" + labels + "} 5"));
  EXPECT_TRUE(Has("lkbench_rows_total" + labels + "} 2"));
  EXPECT_TRUE(Has("lkbench_failures_total" + labels + R"(,class="deadlock"} 2)"));
  EXPECT_TRUE(Has("lkbench_failures_total" + labels + R"(,class="other"} 1)"));
  EXPECT_FALSE(Has("lkbench_failures_total" + labels + R"(,class="no-space"} 0)"));
}

TEST_F(RunFiguresTest, ATimeIsInEachBucketThatItDoesNotExceed) {
  m_interval.warm_up = true;
  Set();
  const std::string labels = R"({phase="burst",part="warm_up",transaction="Insert")";
  EXPECT_TRUE(Has("lkbench_response_seconds_bucket" + labels + R"(,le="0.001"} 0)"));
  EXPECT_TRUE(Has("lkbench_response_seconds_bucket" + labels + R"(,le="0.0025"} 1)"));
  EXPECT_TRUE(Has("lkbench_response_seconds_bucket" + labels + R"(,le="0.25"} 1)"));
  EXPECT_TRUE(Has("lkbench_response_seconds_bucket" + labels + R"(,le="0.5"} 2)"));
  EXPECT_TRUE(Has("lkbench_response_seconds_count" + labels + "} 2"));
}

TEST_F(RunFiguresTest, WhenAPhaseEndsItsFiguresStayAndNobodyIsAtWork) {
  Set();
  EXPECT_TRUE(Has("lkbench_users 5"));
  EXPECT_TRUE(Has("lkbench_backlog 7"));
  EXPECT_TRUE(Has(R"(lkbench_phase_info{phase="burst",part="measured"} 1)"));
  m_figures.EndPhase();
  EXPECT_TRUE(Has("lkbench_users 0"));
  EXPECT_TRUE(Has("lkbench_backlog 0"));
  EXPECT_FALSE(Has(R"(lkbench_phase_info{phase="burst",part="measured"} 1)"));
  EXPECT_TRUE(Has(R"(lkbench_rows_total{phase="burst",part="measured",transaction="Insert"} 2)"));
}

TEST_F(RunFiguresTest, TheRunAndItsLoadAreTold) {
  EXPECT_TRUE(Has(R"(lkbench_run_info{verb="run"} 1)"));
  EXPECT_TRUE(Has("lkbench_load_rows 0"));
  m_figures.Set(LoadState{300, 4000, 1});
  EXPECT_TRUE(Has("lkbench_load_rows 300"));
  EXPECT_TRUE(Has("lkbench_load_rows_expected 4000"));
}

}  // namespace
}  // namespace lkbench

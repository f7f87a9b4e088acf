// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PhaseRun.h"

#include <gtest/gtest.h>

namespace lkbench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class PhaseRunTest : public testing::Test {
 protected:
  Phase m_phase;
  CancelSwitch m_cancel;
};

TEST_F(PhaseRunTest, TheRampSpreadsTheUsersStarts) {
  m_phase.users = 4;
  m_phase.ramp = 20s;
  const TimePoint begin = Clock::now();
  const PhaseRun run(m_phase, begin, 1, m_cancel);
  EXPECT_EQ(run.StartOf(0), begin);
  EXPECT_EQ(run.StartOf(1), begin + 5s);
  EXPECT_EQ(run.StartOf(3), begin + 15s);
}

TEST_F(PhaseRunTest, TheDeadlineIsWarmUpAndDurationAfterTheBeginning) {
  m_phase.warm_up = 3s;
  m_phase.duration = 7s;
  const TimePoint begin = Clock::now();
  const PhaseRun run(m_phase, begin, 1, m_cancel);
  EXPECT_EQ(run.WarmUpEnd(), begin + 3s);
  EXPECT_EQ(run.Deadline(), begin + 10s);
}

TEST_F(PhaseRunTest, PastTheDeadlineThereIsNothingToDoAlsoBehindSchedule) {
  m_phase.duration = 1s;
  m_phase.rate = 1000;
  PhaseRun run(m_phase, Clock::now() - 2s, 1, m_cancel);
  EXPECT_FALSE(run.Next());
  EXPECT_GE(run.Backlog(run.Begin() + 1s), 1000u);
}

TEST_F(PhaseRunTest, TheCountIsHandedOutExactlyAndThenThePhaseIsOver) {
  m_phase.count = 3;
  m_phase.duration = 0s;
  PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(run.Next());
  EXPECT_FALSE(run.Next());
  EXPECT_TRUE(run.IsOver(Clock::now()));
}

TEST_F(PhaseRunTest, TheWarmUpTakesNothingOfTheCount) {
  m_phase.count = 1;
  m_phase.warm_up = 1h;
  PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(run.IsWarmUp(run.Next().value()));
}

TEST_F(PhaseRunTest, ExecutionsBeginNoEarlierThanTheSchedule) {
  m_phase.rate = 50;
  PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  for (int i = 0; i < 4; ++i) {
    const auto slot = run.Next();
    ASSERT_TRUE(slot);
    EXPECT_EQ(slot->intended, run.Begin() + i * 20ms);
    EXPECT_GE(Clock::now(), slot->intended);
  }
}

TEST_F(PhaseRunTest, ACancelEndsAWait) {
  PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  m_cancel.Set();
  EXPECT_FALSE(run.Wait(Clock::now() + 1h));
  EXPECT_FALSE(run.Next());
}

}  // namespace
}  // namespace lkbench

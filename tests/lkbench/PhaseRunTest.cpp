// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PhaseRun.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <future>
#include <thread>

namespace lkbench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kLong = 60s;
constexpr auto kAtOnce = 30s;  // against kLong, on a machine that has other things to do

// How often this thread has gone to sleep.
long Sleeps() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  return usage.ru_nvcsw;
}

// A user that waits on a thread of its own.
class Sleeper {
 public:
  explicit Sleeper(const PhaseRun& run)
      : m_goes_on(std::async(std::launch::async, [&run] { return run.Wait(Clock::now() + kLong); })) {}
  bool IsWoken() { return m_goes_on.wait_for(kAtOnce) == std::future_status::ready && !m_goes_on.get(); }

 private:
  std::future<bool> m_goes_on;
};

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

TEST_F(PhaseRunTest, ACancelWakesWhoSleeps) {
  m_phase.duration = 1h;
  const PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  Sleeper one(run);
  Sleeper two(run);
  std::this_thread::sleep_for(50ms);
  m_cancel.Set();
  EXPECT_TRUE(one.IsWoken());
  EXPECT_TRUE(two.IsWoken());
}

TEST_F(PhaseRunTest, WhoTakesTheLastOfTheCountWakesWhoSleeps) {
  m_phase.count = 2;
  m_phase.duration = 0s;
  PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  EXPECT_TRUE(run.Next());
  Sleeper one(run);
  Sleeper two(run);
  std::this_thread::sleep_for(50ms);
  EXPECT_TRUE(run.Next());
  EXPECT_TRUE(one.IsWoken());
  EXPECT_TRUE(two.IsWoken());
}

TEST_F(PhaseRunTest, WhoIsJustFallingAsleepIsWokenToo) {
  m_phase.count = 1;
  m_phase.duration = 0s;
  for (int i = 0; i < 300; ++i) {
    PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
    Sleeper sleeper(run);
    std::this_thread::sleep_for(std::chrono::microseconds(i % 100));
    EXPECT_TRUE(run.Next());
    ASSERT_TRUE(sleeper.IsWoken());
  }
}

TEST_F(PhaseRunTest, TheDeadlineEndsAWait) {
  m_phase.duration = 50ms;
  const PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  Sleeper sleeper(run);
  EXPECT_TRUE(sleeper.IsWoken());
  EXPECT_GE(Clock::now(), run.Deadline());
}

TEST_F(PhaseRunTest, WhoSleepsDoesNotLookAbout) {
  m_phase.duration = 1h;
  const PhaseRun run(m_phase, Clock::now(), 1, m_cancel);
  const TimePoint until = Clock::now() + 1s;
  const long before = Sleeps();
  EXPECT_TRUE(run.Wait(until));
  EXPECT_GE(Clock::now(), until);
  EXPECT_LE(Sleeps() - before, 5);
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Schedule.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Statistics.h"

namespace lkbench {
namespace {

using namespace std::chrono_literals;

const TimePoint kBegin{1h};

Phase AtRate(double rate, Arrival arrival = Arrival::kFixed) {
  Phase phase;
  phase.rate = rate;
  phase.arrival = arrival;
  return phase;
}

std::vector<double> Seconds(Arrivals arrivals, int count) {
  std::vector<double> seconds;
  for (int i = 0; i < count; ++i, arrivals.Advance())
    seconds.push_back(std::chrono::duration<double>(arrivals.Peek() - kBegin).count());
  return seconds;
}

TEST(Schedule, FixedArrivalsAreEvenlySpaced) {
  EXPECT_EQ(Seconds({AtRate(4), kBegin, kBegin, 1}, 4), (std::vector{0.0, 0.25, 0.5, 0.75}));
}

TEST(Schedule, ARateBelowOneIsExact) {
  EXPECT_EQ(Seconds({AtRate(0.5), kBegin, kBegin, 1}, 3), (std::vector{0.0, 2.0, 4.0}));
}

// At 2 a second after a ramp of 4 s: t*t/4 are due by t in the ramp, 4 at its end, then 2 a second.
TEST(Schedule, TheRateRisesEvenlyInTheRamp) {
  Phase phase = AtRate(2);
  phase.ramp = 4s;
  const std::vector<double> seconds = Seconds({phase, kBegin, kBegin, 1}, 7);
  EXPECT_NEAR(seconds[1], 2.0, 1e-6);
  EXPECT_NEAR(seconds[4], 4.0, 1e-6);
  EXPECT_NEAR(seconds[5], 4.5, 1e-6);
  EXPECT_NEAR(seconds[6], 5.0, 1e-6);
}

// The distance between Poisson arrivals is exponential, so exp(-rate * distance) is uniform.
TEST(Schedule, PoissonArrivalsHaveExponentialDistances) {
  const std::vector<double> seconds = Seconds({AtRate(50, Arrival::kPoisson), kBegin, kBegin, 7}, 20'001);
  std::vector<double> uniform;
  for (size_t i = 1; i < seconds.size(); ++i)
    uniform.push_back(std::exp(-50 * (seconds[i] - seconds[i - 1])));
  EXPECT_TRUE(statistics::IsUniformBetween(uniform, 0, 1));
}

TEST(Schedule, ASeedRepeatsItsArrivals) {
  const Phase phase = AtRate(50, Arrival::kPoisson);
  EXPECT_EQ(Seconds({phase, kBegin, kBegin, 7}, 10), Seconds({phase, kBegin, kBegin, 7}, 10));
  EXPECT_NE(Seconds({phase, kBegin, kBegin, 7}, 10), Seconds({phase, kBegin, kBegin, 8}, 10));
}

TEST(Schedule, TheBacklogIsWhatIsDueAndNotTaken) {
  Schedule schedule(AtRate(10), kBegin, kBegin, 1);
  EXPECT_EQ(schedule.Backlog(kBegin + 1ms), 1u);
  EXPECT_EQ(schedule.Backlog(kBegin + 1001ms), 11u);
  for (int i = 0; i < 4; ++i) schedule.Take(kBegin + 1001ms);
  EXPECT_EQ(schedule.Backlog(kBegin + 1001ms), 7u);
  for (int i = 0; i < 9; ++i) schedule.Take(kBegin + 1001ms);
  EXPECT_EQ(schedule.Backlog(kBegin + 1001ms), 0u);
}

TEST(Schedule, OverdueExecutionsAreTakenInTheirOrder) {
  Schedule schedule(AtRate(10), kBegin, kBegin, 1);
  EXPECT_EQ(schedule.Take(kBegin + 5s), kBegin);
  EXPECT_EQ(schedule.Take(kBegin + 5s), kBegin + 100ms);
}

TEST(Schedule, TheBacklogOfAWarmUpIsForgottenAtItsEnd) {
  Schedule schedule(AtRate(10), kBegin, kBegin + 2s, 1);
  for (int i = 0; i < 5; ++i) schedule.Take(kBegin + 1s);
  EXPECT_EQ(schedule.Backlog(kBegin + 1s + 950ms), 15u);
  EXPECT_EQ(schedule.Take(kBegin + 2s + 1ms), kBegin + 2s);
  EXPECT_EQ(schedule.Backlog(kBegin + 2s + 1ms), 0u);
  EXPECT_EQ(schedule.Forgotten(), 15u);
}

TEST(Schedule, WhoFindsTheWarmUpsLastExecutionTakenGetsTheFirstAfterIt) {
  Schedule schedule(AtRate(1), kBegin, kBegin + 2s, 1);
  EXPECT_EQ(schedule.Take(kBegin), kBegin);
  EXPECT_EQ(schedule.Take(kBegin), kBegin + 1s);
  EXPECT_EQ(schedule.Take(kBegin), kBegin + 2s);
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/IntervalLine.h"

#include <gmock/gmock.h>

namespace lkbench {
namespace {

using testing::EndsWith;

class IntervalLineTest : public testing::Test {
 protected:
  IntervalLineTest() {
    m_interval.begin = 1'000'000'000;
    m_interval.end = 2'000'000'000;
    m_interval.users = 3;
    m_interval.total.executions = 4;
    m_interval.total.failures = 2;
    TimesDigest& times = m_interval.total.response;
    times.p50 = times.p95 = times.p99 = 4'000'000;
    m_part.elapsed = 2'000'000'000;
    m_part.total.executions = 3000;
    m_part.total.response.Record(50);
  }
  Progress Now() const { return {m_interval, m_phase, m_part, m_phases, m_ends}; }
  std::string Line(std::size_t columns) const { return TextOf(IntervalLine(Now(), columns)); }
  std::string Status(std::size_t columns) const { return TextOf(WorkloadStatus(Now())(columns)); }

  Interval m_interval;
  PhaseRecord m_phase;
  Part m_part;
  std::size_t m_phases = 1;
  std::uint64_t m_ends = 10'000'000'000;
};

TEST_F(IntervalLineTest, ALineTellsOfItsOwnInterval) {
  EXPECT_EQ(IntervalLine(Now()), "   2 s       2.0 tx/s  failures 2  p50 4.000  p95 4.000  p99 4.000 ms");
  m_interval.backlog = 1200;
  m_interval.warm_up = true;
  m_phase.settings.rate = 10;
  m_phase.settings.name = "base";
  m_phases = 2;
  EXPECT_THAT(IntervalLine(Now()), EndsWith("4.000 ms  backlog 1,200  base  warm-up, not counted"));
}

TEST_F(IntervalLineTest, ANarrowWindowLeavesOutTheLowerPercentilesFirst) {
  EXPECT_EQ(Line(68), "   2 s       2.0 tx/s  failures 2  p95 4.000  p99 4.000 ms");
  EXPECT_EQ(Line(50), "   2 s       2.0 tx/s  failures 2  p99 4.000 ms");
  EXPECT_EQ(Line(20), "   2 s       2.0 tx/");
}

TEST_F(IntervalLineTest, FailuresAreShownAsBadOnlyWhereThereAreSome) {
  EXPECT_EQ(IntervalLine(Now(), 100)[4].tone, Tone::kBad);
  m_interval.total.failures = 0;
  EXPECT_EQ(IntervalLine(Now(), 100)[4].tone, Tone::kPlain);
}

TEST_F(IntervalLineTest, TheStatusTellsOfThePhaseSoFar) {
  EXPECT_EQ(Status(100), "workload  0:02  0:08 left  3 users  1500.0 tx/s  p99 0.000 ms  failures 0");
  EXPECT_EQ(Status(60), "workload  0:08 left  1500.0 tx/s  p99 0.000 ms  failures 0");
  m_interval.warm_up = true;
  m_phases = 2;
  m_interval.phase = 1;
  EXPECT_EQ(Status(100),
            "workload 2/2  warm-up  0:02  0:08 left  3 users  1500.0 tx/s  p99 0.000 ms  failures 0");
}

TEST_F(IntervalLineTest, APhaseThatACountEndsShowsHowManyAreDone) {
  m_ends = 0;
  m_phase.settings.count = 5000;
  EXPECT_EQ(Status(50), "workload  3,000 of 5,000  1500.0 tx/s  failures 0");
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/IntervalSeries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace lkbench {
namespace {

// Numbers of every length, and those at the ends of what there is.
class AnyNumbers {
 public:
  explicit AnyNumbers(unsigned seed) : m_source(seed) {}

  std::uint64_t Number() {
    const std::uint64_t draw = m_source();
    if (draw % 8 == 0) return 0;
    if (draw % 8 == 1) return std::numeric_limits<std::uint64_t>::max() - draw / 8 % 2;
    if (draw % 8 == 2) return std::uint64_t{1} << draw / 8 % 64;
    return m_source() >> m_source() % 64;
  }
  bool Coin() { return m_source() % 2 == 0; }
  std::size_t Below(std::size_t limit) { return m_source() % limit; }

  TimesDigest Times() { return {Number(), Number(), Number(), Number(), Number(), Number(), Number()}; }
  XactInterval Xact() {
    XactInterval xact;
    xact.executions = Number();
    xact.failures = Number();
    xact.rows = Number();
    xact.undone = Number();
    for (std::uint64_t& errors : xact.errors) errors = Coin() ? Number() : 0;
    xact.service = Times();
    xact.response = Coin() ? xact.service : Times();
    return xact;
  }
  Interval AnInterval() {
    Interval interval;
    interval.begin = Number();
    interval.end = Number();
    interval.phase = Number();
    interval.warm_up = Coin();
    interval.users = static_cast<int>(Number());
    interval.backlog = Number();
    interval.total = Xact();
    interval.xacts.resize(Below(10) == 0 ? Below(400) : Below(5));
    for (XactInterval& xact : interval.xacts) xact = Xact();
    return interval;
  }

 private:
  std::mt19937_64 m_source;
};

IntervalSeries SeriesOf(const std::vector<Interval>& intervals) {
  IntervalSeries series;
  for (const Interval& interval : intervals) series.Append(interval);
  return series;
}

std::vector<Interval> ListOf(const IntervalSeries& series) {
  std::vector<Interval> list;
  for (const Interval& interval : series) list.push_back(interval);
  return list;
}

class AnySeries : public testing::TestWithParam<unsigned> {};

TEST_P(AnySeries, ComesBackEqualInEveryBit) {
  AnyNumbers numbers(GetParam());
  std::vector<Interval> intervals(numbers.Below(60));
  for (Interval& interval : intervals) interval = numbers.AnInterval();
  const IntervalSeries series = SeriesOf(intervals);
  EXPECT_EQ(series.Size(), intervals.size());
  EXPECT_TRUE(ListOf(series) == intervals);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnySeries, testing::Range(1u, 51u));

TEST(IntervalSeries, WithoutIntervalsThereIsNothingToRead) {
  const IntervalSeries series;
  EXPECT_TRUE(series.begin() == series.end());
  EXPECT_EQ(series.Bytes(), 0u);
}

TEST(IntervalSeries, TheLargestNumbersComeBack) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  Interval interval{kMost, 0, kMost, true, std::numeric_limits<int>::min(), kMost, {}, {}};
  interval.total.executions = interval.total.failures = kMost;
  interval.total.errors.fill(kMost);
  interval.total.service = {kMost, 0, kMost, 0, kMost, 0, kMost};
  interval.xacts.assign(3, interval.total);
  EXPECT_TRUE(ListOf(SeriesOf({interval, interval})) == std::vector({interval, interval}));
}

TEST(IntervalSeries, ACopyIsASeriesOfItsOwn) {
  AnyNumbers numbers(1);
  const std::vector<Interval> intervals = {numbers.AnInterval(), numbers.AnInterval()};
  IntervalSeries series = SeriesOf({intervals[0]});
  const IntervalSeries copy = series;
  series.Append(intervals[1]);
  EXPECT_TRUE(ListOf(copy) == std::vector({intervals[0]}));
  EXPECT_TRUE(ListOf(series) == intervals);
}

// An hour of the default mix by 64 users, as a busy database answers: an execution takes 2 ms in the middle,
// one in a hundred ten times as long; now and then there is a deadlock.
class Hour {
 public:
  explicit Hour(bool has_rate) : m_has_rate(has_rate) {
    std::vector<Interval> minute(60);
    for (Interval& second : minute) second = Second();
    for (std::uint64_t number = 0; number < 3600; ++number) {
      Interval& interval = minute[number % 60];
      interval.begin = std::exchange(m_end, m_end + 1'000'000'000 + number % 7);
      interval.end = m_end;
      m_series.Append(interval);
    }
  }
  std::size_t BytesOfAnInterval() const { return m_series.Bytes() / m_series.Size(); }

 private:
  Interval Second() {
    Interval interval;
    interval.users = 64;
    interval.backlog = m_has_rate ? 150 : 0;
    HistogramData service;
    HistogramData response;
    for (const int executions : {4000, 4000, 2000})
      interval.xacts.push_back(Xact(executions, service, response));
    for (const XactInterval& xact : interval.xacts) interval.total.Add(xact);
    interval.total.service = DigestOf(service);
    interval.total.response = DigestOf(response);
    return interval;
  }
  XactInterval Xact(int executions, HistogramData& all_service, HistogramData& all_response) {
    XactInterval xact;
    xact.errors[static_cast<std::size_t>(ErrorClass::kDeadlock)] = xact.failures = m_source() % 3;
    xact.executions = static_cast<std::uint64_t>(executions) + m_source() % 100;
    xact.rows = xact.executions - xact.failures - m_source() % 5;
    HistogramData service;
    HistogramData response;
    for (std::uint64_t i = xact.failures; i < xact.executions; ++i) {
      const auto time = static_cast<std::uint64_t>(2e6 * std::exp(m_spread(m_source)));
      service.Record(time);
      response.Record(time + (m_has_rate ? m_source() % 500'000 : 0));
    }
    xact.service = DigestOf(service);
    xact.response = DigestOf(response);
    all_service.Add(service);
    all_response.Add(response);
    return xact;
  }

  bool m_has_rate;
  std::mt19937_64 m_source{1};
  std::normal_distribution<> m_spread;
  std::uint64_t m_end = 0;
  IntervalSeries m_series;
};

TEST(IntervalSeries, AnIntervalOfTheDefaultMixTakesNoMoreThanTheHeaderSays) {
  EXPECT_LE(Hour(false).BytesOfAnInterval(), 150u);
  EXPECT_LE(Hour(true).BytesOfAnInterval(), 240u);
}

}  // namespace
}  // namespace lkbench

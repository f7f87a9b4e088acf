// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace lkbench {
namespace {

HistogramData Of(std::initializer_list<std::uint64_t> values) {
  HistogramData data;
  for (const std::uint64_t value : values) data.Record(value);
  return data;
}

TEST(Histogram, EachValueBelow64HasABucketOfItsOwn) {
  for (std::uint64_t value = 0; value < 64; ++value)
    EXPECT_EQ(histogram::MiddleOf(histogram::BucketOf(value)), value);
}

TEST(Histogram, AReportedValueIsOffByAtMostOne128th) {
  for (std::uint64_t value = 1; value < (std::uint64_t{1} << histogram::kMostBits); value += 1 + value / 37) {
    const std::uint64_t reported = histogram::MiddleOf(histogram::BucketOf(value));
    const std::uint64_t error = reported > value ? reported - value : value - reported;
    ASSERT_LE(error * 128, value) << value << " is reported as " << reported;
  }
}

TEST(Histogram, BucketsFollowEachOtherWithoutAGap) {
  std::size_t last = 0;
  for (std::uint64_t value = 1; value < 1'000'000; ++value) {
    const std::size_t bucket = histogram::BucketOf(value);
    ASSERT_TRUE(bucket == last || bucket == last + 1) << value;
    last = bucket;
  }
}

TEST(Histogram, TheLargestValueInRangeFallsIntoTheLastBucketAndSoDoAllAbove) {
  const std::uint64_t end = std::uint64_t{1} << histogram::kMostBits;
  EXPECT_EQ(histogram::BucketOf(end - 1), histogram::kBuckets - 1);
  EXPECT_EQ(histogram::BucketOf(end), histogram::kBuckets - 1);
  EXPECT_EQ(histogram::BucketOf(~std::uint64_t{0}), histogram::kBuckets - 1);
}

TEST(Histogram, PercentileOfNothingIsZero) {
  EXPECT_EQ(HistogramData().Percentile(99), 0u);
  EXPECT_EQ(HistogramData().Mean(), 0u);
}

TEST(Histogram, PercentileOfASingleValueIsThatValue) {
  const HistogramData data = Of({42});
  for (const double percent : {0.0, 50.0, 100.0}) EXPECT_EQ(data.Percentile(percent), 42u);
}

TEST(Histogram, TheNinetiethOfOneToTenIsNine) {
  const HistogramData data = Of({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(data.Percentile(90), 9u);
  EXPECT_EQ(data.Percentile(91), 10u);
  EXPECT_EQ(data.Percentile(50), 5u);
}

TEST(Histogram, MeanAndMaximumAreExact) {
  const HistogramData data = Of({1'000'003, 2'000'001, 9'999'999});
  EXPECT_EQ(data.Mean(), 4'333'334u);
  EXPECT_EQ(data.Max(), 9'999'999u);
}

TEST(Histogram, APercentileIsNeverAboveTheMaximum) {
  EXPECT_GT(histogram::MiddleOf(histogram::BucketOf(1'000'000)), 1'000'000u);
  EXPECT_EQ(Of({1'000'000}).Percentile(99), 1'000'000u);
}

TEST(Histogram, MergedPercentilesAreThoseOfAllValues) {
  HistogramData left = Of({1, 2, 3, 4, 5});
  left.Add(Of({6, 7, 8, 9, 10}));
  EXPECT_EQ(left.Count(), 10u);
  EXPECT_EQ(left.Sum(), 55u);
  EXPECT_EQ(left.Percentile(90), 9u);
}

TEST(Histogram, WhatCameAfterASnapshotIsTheDifference) {
  HistogramData before = Of({50, 51, 52});
  HistogramData after = before;
  after.Record(7);
  after.Subtract(before);
  EXPECT_EQ(after.Count(), 1u);
  EXPECT_EQ(after.Sum(), 7u);
  EXPECT_EQ(after.Percentile(50), 7u);
  EXPECT_EQ(after.Max(), 7u);
}

TEST(Histogram, AReaderSeesOnlyWholeRecordsWhileTheWriterWrites) {
  Histogram histogram;
  constexpr std::uint64_t kRecords = 20'000;
  std::thread writer([&] {
    for (std::uint64_t i = 0; i < kRecords; ++i) histogram.Record(1000);
  });
  std::uint64_t last = 0;
  while (last < kRecords) {
    HistogramData seen;
    histogram.AddTo(seen);
    ASSERT_GE(seen.Count(), last);
    ASSERT_LE(seen.Count(), kRecords);
    last = seen.Count();
  }
  writer.join();
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/BucketCounts.h"

#include <gtest/gtest.h>

#include <thread>

namespace lkbench {
namespace {

constexpr std::uint32_t kMost = 1u << 31;  // that one call may add
constexpr std::uint64_t kPass = kMost;     // where the high word takes part

TEST(BucketCounts, ACountIsExactBelowAtAndAboveEachPass) {
  BucketCounts counts(3);
  std::uint64_t expected = 0;
  for (const std::uint32_t by : {1u, kMost - 2, 1u, 1u, kMost - 1, kMost - 1, 5u, kMost, kMost, 7u}) {
    counts.Raise(1, by);
    expected += by;
    EXPECT_EQ(counts.Get(1), expected);
  }
  EXPECT_EQ(counts.Get(0), 0u);
  EXPECT_EQ(counts.Get(2), 0u);
}

TEST(BucketCounts, ClearingForgetsBothWords) {
  BucketCounts counts(1);
  counts.Raise(0, kMost);
  counts.Raise(0, 3);
  counts.Clear();
  EXPECT_EQ(counts.Get(0), 0u);
  counts.Raise(0, kMost - 1);
  EXPECT_EQ(counts.Get(0), kPass - 1);
}

TEST(BucketCounts, AReaderNeverSeesACountFallOrJumpWhileItPasses) {
  constexpr std::uint32_t kSteps = 200'000;
  BucketCounts counts(1);
  counts.Raise(0, kMost - kSteps / 2);
  const std::uint64_t end = kPass + kSteps / 2;
  std::thread writer([&] {
    for (std::uint32_t i = 0; i < kSteps; ++i) counts.Raise(0);
  });
  std::uint64_t last = 0;
  while (last < end && !HasFailure()) {
    const std::uint64_t seen = counts.Get(0);
    EXPECT_GE(seen, last);
    EXPECT_LE(seen, end);
    last = seen;
  }
  writer.join();
}

TEST(BucketCounts, ManyWritersLoseNothingAtAPass) {
  constexpr std::uint32_t kSteps = 100'000;
  BucketCounts counts(1);
  counts.Raise(0, kMost - kSteps);
  const auto raise = [&] {
    for (std::uint32_t i = 0; i < kSteps; ++i) counts.RaiseShared(0);
  };
  std::thread other(raise);
  raise();
  other.join();
  EXPECT_EQ(counts.Get(0), kPass + kSteps);
  counts.RaiseShared(0, kMost);  // a high word that nobody raised would show only now
  EXPECT_EQ(counts.Get(0), 2 * kPass + kSteps);
}

}  // namespace
}  // namespace lkbench

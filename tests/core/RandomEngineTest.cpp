// SPDX-License-Identifier: Apache-2.0
// The engine against its published recurrence, written here a second time in its authors' manner: a plain
// array of four words, s[1] shifted last. Known answers of the publications check this second writing.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "core/Random.h"

namespace {

using Words = std::array<std::uint64_t, 4>;

std::uint64_t NextOfSplitMix(std::uint64_t& x) {
  x += 0x9E3779B97F4A7C15ULL;
  std::uint64_t z = x;
  z ^= z >> 30;
  z *= 0xBF58476D1CE4E5B9ULL;
  z ^= z >> 27;
  z *= 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return z;
}

std::uint64_t RotateLeft(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }

std::uint64_t NextOfXoshiro(Words& s) {
  const std::uint64_t result = RotateLeft(s[0] + s[3], 23) + s[0];
  const Words old = s;
  s[0] = old[0] ^ old[3] ^ old[1];
  s[1] = old[1] ^ old[2] ^ old[0];
  s[2] = old[2] ^ old[0] ^ (old[1] << 17);
  s[3] = RotateLeft(old[3] ^ old[1], 45);
  return result;
}

}  // namespace

TEST(RandomEngine, SecondWritingGivesThePublishedAnswers) {
  std::uint64_t x = 1234567;
  for (const std::uint64_t known : {6457827717110365317ULL, 3203168211198807973ULL, 9817491932198370423ULL})
    EXPECT_EQ(NextOfSplitMix(x), known);
  Words s{1, 2, 3, 4};
  for (const std::uint64_t known :
       {41943041ULL, 58720359ULL, 3588806011781223ULL, 3591011842654386ULL, 9228616714210784205ULL})
    EXPECT_EQ(NextOfXoshiro(s), known);
}

TEST(RandomEngine, GivesTheAnswersOfTheRecurrenceForAnySeed) {
  for (const std::uint64_t seed : {0ULL, 1ULL, 42ULL, 0xFFFFFFFFFFFFFFFFULL}) {
    std::uint64_t x = seed;
    Words s{};
    for (std::uint64_t& word : s) word = NextOfSplitMix(x);
    CXoshiro256 engine(seed);
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(engine.Next(), NextOfXoshiro(s)) << seed << " draw " << i;
  }
}

TEST(RandomEngine, RepeatsItsSequenceForASeed) {
  CXoshiro256 engine(7);
  const std::uint64_t first = engine.Next();
  engine.Next();
  engine.Seed(7);
  EXPECT_EQ(engine.Next(), first);
}

TEST(RandomEngine, DoubleIsTheUpper53Bits) {
  CXoshiro256 engine(3);
  CXoshiro256 same(3);
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(engine.NextDouble(), static_cast<double>(same.Next() >> 11) / 9007199254740992.0);
}

TEST(RandomEngine, BoundOf0IsTheWholeRange) {
  CXoshiro256 engine(5);
  CXoshiro256 same(5);
  EXPECT_EQ(engine.Below(0), same.Next());
}

// With a bound of three quarters of 2^64 every value of one third would come twice as often without the
// rejection, and a plain remainder would double the lowest third.
TEST(RandomEngine, BoundedDrawsHaveNoBias) {
  constexpr std::uint64_t kBound = 0xC000000000000000ULL;
  constexpr int kDraws = 30000;
  CXoshiro256 engine(11);
  std::array<int, 3> remainders{};
  std::array<int, 3> thirds{};
  for (int i = 0; i < kDraws; ++i) {
    const std::uint64_t value = engine.Below(kBound);
    ASSERT_LT(value, kBound);
    ++remainders[value % 3];
    ++thirds[value >> 62];
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(remainders[static_cast<size_t>(i)], kDraws / 3, 400) << i;  // 5 standard deviations
    EXPECT_NEAR(thirds[static_cast<size_t>(i)], kDraws / 3, 400) << i;
  }
}

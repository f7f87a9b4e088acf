// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Statistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

using namespace lkbench;

namespace {

// A level that varies by `noise` around `mean`; `memory` is how much of a deviation the next value keeps.
Series Drawn(std::mt19937& random, size_t count, double mean, double noise, double memory) {
  std::normal_distribution<double> normal(0, noise * std::sqrt(1 - memory * memory));
  Series values;
  double deviation = std::normal_distribution<double>(0, noise)(random);
  for (size_t i = 0; i < count; ++i) {
    values.push_back(mean + deviation);
    deviation = memory * deviation + normal(random);
  }
  return values;
}

// The share of 1000 pairs of runs of `count` seconds for which a difference is claimed at 5 %. The second
// runs have `gain` more; the noise is 5 % of the level.
double Claimed(size_t count, double memory, double gain) {
  std::mt19937 random(20260102);
  int claimed = 0;
  for (int pair = 0; pair < 1000; ++pair) {
    const Series first = Drawn(random, count, 100, 5, memory);
    const Series second = Drawn(random, count, 100 + gain, 5, memory);
    const auto difference = Compare(first, second);
    claimed += difference && difference->p_value < 0.05;
  }
  return claimed / 1000.0;
}

}  // namespace

TEST(Student, TailsAreThoseOfTheTables) {
  EXPECT_NEAR(StudentTail(12.706, 1), 0.05, 1e-5);
  EXPECT_NEAR(StudentTail(2.228, 10), 0.05, 1e-4);
  EXPECT_NEAR(StudentTail(-2.228, 10), 0.05, 1e-4);
  EXPECT_NEAR(StudentTail(2.660, 60), 0.01, 1e-4);
  EXPECT_EQ(StudentTail(0, 5), 1);
  EXPECT_NEAR(StudentQuantile(0.05, 10), 2.228, 1e-3);
  EXPECT_NEAR(StudentQuantile(0.01, 60), 2.660, 1e-3);
}

TEST(Welch, OfTwoSmallSamplesIsWhatOneComputesByHand) {
  // Means 3.5 and 5.5, variances 3.5 of six values each: error sqrt(3.5 / 3) = 1.0801, t = 1.8516, 10
  // degrees. The values swing, so each counts.
  const auto difference = Compare({1, 4, 3, 6, 2, 5}, {3, 6, 5, 8, 4, 7});
  ASSERT_TRUE(difference);
  EXPECT_DOUBLE_EQ(difference->mean, 2);
  EXPECT_NEAR(difference->margin, 2.2281 * 1.0801, 1e-3);
  EXPECT_NEAR(difference->p_value, 0.0938, 1e-4);
}

TEST(IndependentCount, IsLowerWhereNeighboursAreAlike) {
  EXPECT_EQ(IndependentCount({1, -1, 1, -1, 1, -1, 1, -1}), 8);
  std::mt19937 random(1);
  const Series values = Drawn(random, 20000, 0, 1, 0.5);
  EXPECT_NEAR(Autocorrelation(values), 0.5, 0.02);
  EXPECT_NEAR(IndependentCount(values), 20000 * 0.5 / 1.5, 300);
}

TEST(Compare, CountsValuesThatAreAlikeAsFewerOnes) {
  // 1.5 / 0.5 times the variance of a mean of independent values.
  std::mt19937 random(2);
  const Series first = Drawn(random, 10000, 0, 1, 0.5);
  const Series second = Drawn(random, 10000, 0, 1, 0.5);
  EXPECT_NEAR(Compare(first, second)->margin, 1.96 * std::sqrt(2 * 3 / 10000.0), 0.002);
}

TEST(Compare, SaysNothingOfSeriesThatAreTooShort) {
  EXPECT_FALSE(Compare({1, 2, 1, 2, 1}, {1, 2, 1, 2, 1, 2}));
  EXPECT_TRUE(Compare({1, 2, 1, 2, 1, 2}, {1, 2, 1, 2, 1, 2}));
  Series drifting(60);
  std::iota(drifting.begin(), drifting.end(), 0);
  EXPECT_FALSE(Compare(drifting, drifting));  // each second is like the one before: as good as one value
}

TEST(Compare, OfValuesThatNeverVaryIsCertain) {
  EXPECT_EQ(Compare(Series(6, 5.0), Series(6, 5.0))->p_value, 1);
  EXPECT_EQ(Compare(Series(6, 5.0), Series(6, 6.0))->p_value, 0);
}

TEST(Compare, ClaimsADifferenceWhereThereIsNoneInAboutFiveOfAHundredRuns) {
  EXPECT_LE(Claimed(60, 0, 0), 0.065);
  EXPECT_GE(Claimed(60, 0, 0), 0.030);
  for (const double memory : {0.0, 0.3, 0.5, 0.7, 0.9}) {
    for (const size_t count : {20, 60, 300})
      EXPECT_LE(Claimed(count, memory, 0), 0.075) << count << " values, memory " << memory;
    EXPECT_LE(Claimed(10, memory, 0), 0.09)
        << "memory " << memory;  // the memory of so few can only be guessed
  }
}

TEST(Compare, FindsADifferenceThatIsThere) {
  EXPECT_GE(Claimed(60, 0, 5), 0.99);  // 5 % of the level, as large as the noise of a second
  EXPECT_GE(Claimed(60, 0, 3), 0.85);
  EXPECT_GE(Claimed(300, 0.5, 3), 0.95);
  EXPECT_GE(Claimed(60, 0.5, 3), 0.35);
  EXPECT_GE(Claimed(60, 0.7, 10), 0.90);
}

TEST(Holm, RaisesEachValueByThoseThatAreLeftAndKeepsTheirOrder) {
  EXPECT_EQ(HolmAdjusted({0.04, 0.01, 0.5}), (std::vector<double>{0.08, 0.03, 0.5}));
  EXPECT_EQ(HolmAdjusted({0.02, 0.021}), (std::vector<double>{0.04, 0.04}));
  EXPECT_EQ(HolmAdjusted({0.9, 0.8}), (std::vector<double>{1, 1}));
}

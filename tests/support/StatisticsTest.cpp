// SPDX-License-Identifier: Apache-2.0
// The statistics that other tests rest on, against printed tables of critical values.
#include "Statistics.h"

#include <gtest/gtest-spi.h>

#include <cmath>
#include <cstdlib>

using statistics::ChiSquarePValue;
using statistics::HasShares;
using statistics::IsUniform;
using statistics::IsUniformBetween;
using statistics::KolmogorovPValue;
using statistics::Tally;
using Counts = std::vector<long>;

TEST(ChiSquare, GivesTheLevelsOfTheTableOfCriticalValues) {
  const struct {
    int degrees;
    double critical;
    double level;
  } kTable[] = {{1, 3.841459, 0.05},      {1, 10.827566, 0.001}, {2, 5.991465, 0.05},
                {5, 1.145476, 0.95},      {10, 18.307038, 0.05}, {10, 29.588298, 0.001},
                {30, 18.492661, 0.95},    {30, 50.892181, 0.01}, {100, 124.342113, 0.05},
                {100, 149.449253, 0.001}, {100, 77.929465, 0.95}};
  for (const auto& row : kTable)
    EXPECT_NEAR(ChiSquarePValue(row.critical, row.degrees), row.level, row.level * 1e-5)
        << row.degrees << " degrees";
}

// With two degrees of freedom the chance is exp(-x / 2), with one it is erfc(sqrt(x / 2)).
TEST(ChiSquare, IsExactWhereAClosedFormIsKnownFarIntoTheTail) {
  for (const double x : {0.01, 1.0, 3.9, 4.1, 20.0, 60.0, 700.0}) {
    EXPECT_NEAR(ChiSquarePValue(x, 2) / std::exp(-x / 2), 1, 1e-10) << x;
    EXPECT_NEAR(ChiSquarePValue(x, 1) / std::erfc(std::sqrt(x / 2)), 1, 1e-10) << x;
  }
}

TEST(ChiSquare, OfNoDistanceIsCertain) { EXPECT_EQ(ChiSquarePValue(0, 3), 1.0); }

TEST(ChiSquare, HoldsForThousandsOfDegrees) {
  EXPECT_NEAR(ChiSquarePValue(2703, 2703), 0.496, 0.001);  // the mean: a little below one half
  EXPECT_NEAR(ChiSquarePValue(2703 + 4.0 * std::sqrt(2 * 2703.0), 2703), 5e-5, 3e-5);  // four deviations up
}

TEST(Kolmogorov, GivesTheLevelsOfTheTableOfTheLimit) {
  constexpr size_t kMany = 100000000;  // where the correction is nothing
  const double root = std::sqrt(static_cast<double>(kMany));
  EXPECT_NEAR(KolmogorovPValue(1.22385 / root, kMany), 0.10, 1e-5);
  EXPECT_NEAR(KolmogorovPValue(1.35810 / root, kMany), 0.05, 1e-5);
  EXPECT_NEAR(KolmogorovPValue(1.62762 / root, kMany), 0.01, 1e-5);
  EXPECT_NEAR(KolmogorovPValue(1.94947 / root, kMany), 0.001, 1e-6);
  EXPECT_EQ(KolmogorovPValue(0.1 / root, kMany), 1.0);
}

TEST(Kolmogorov, GivesTheLevelsOfTheTableOfFiniteSamples) {
  EXPECT_NEAR(KolmogorovPValue(0.29408, 20), 0.05, 0.002);
  EXPECT_NEAR(KolmogorovPValue(0.13403, 100), 0.05, 0.001);
  EXPECT_NEAR(KolmogorovPValue(0.16081, 100), 0.01, 0.0005);
}

TEST(Fit, OfCountsIsTheirChiSquare) {
  EXPECT_TRUE(IsUniform(Counts{500, 500}));
  EXPECT_TRUE(IsUniform(Counts{577, 423}));   // 23.7: p = 1.1e-6
  EXPECT_FALSE(IsUniform(Counts{578, 422}));  // 24.3: p = 8.1e-7
  EXPECT_TRUE(HasShares(Counts{100, 300, 0}, {1, 3, 0}));
  EXPECT_FALSE(HasShares(Counts{100, 300}, {1, 1}));
}

TEST(Fit, RefusesWhatItCannotJudge) {
  EXPECT_FALSE(HasShares(Counts{100, 300, 1}, {1, 3, 0})) << "a cell that should be empty";
  EXPECT_FALSE(IsUniform(Counts{4, 4})) << "too few draws";
  EXPECT_FALSE(IsUniform(Counts{100})) << "one cell";
  EXPECT_FALSE(HasShares(Counts{100, 100}, {1})) << "a missing share";
}

TEST(Fit, OfATallyAllowsNothingOutside) {
  Tally tally(-1, 1);
  for (int i = 0; i < 30; ++i) tally.Add(i % 3 - 1);
  EXPECT_EQ(tally.Counts(), (std::vector<long>{10, 10, 10}));
  EXPECT_TRUE(IsUniform(tally));
  tally.Add(2);
  tally.Add(-2);
  EXPECT_EQ(tally.Outside(), 2);
  EXPECT_EQ(tally.FirstOutside(), 2);
  EXPECT_FALSE(IsUniform(tally));
  EXPECT_FALSE(HasShares(tally, {1, 1, 1}));
}

TEST(Fit, OfRealsIsTheirDistanceFromTheDiagonal) {
  std::vector<double> even;
  for (int i = 0; i < 1000; ++i) even.push_back(10 + (i + 0.5) / 100);
  EXPECT_TRUE(IsUniformBetween(even, 10, 20));
  EXPECT_FALSE(IsUniformBetween(even, 10, 22));
  EXPECT_FALSE(IsUniformBetween(even, 10, 19)) << "values above";
  EXPECT_FALSE(IsUniformBetween(even, 11, 20)) << "values below";
  for (double& value : even) value = 10 + (value - 10) * (value - 10) / 10;  // squared: too many small ones
  EXPECT_FALSE(IsUniformBetween(even, 10, 20));
  EXPECT_FALSE(IsUniformBetween({1, 2, 3}, 1, 3)) << "too few";
}

TEST(Fit, TakesTheNumberOfBoundedDrawsFromTheEnvironment) {
  unsetenv("LK_DRAWS");
  EXPECT_EQ(statistics::BoundedDraws(), 1000000);
  setenv("LK_DRAWS", "12", 1);
  EXPECT_EQ(statistics::BoundedDraws(), 12);
  setenv("LK_DRAWS", "many", 1);
  EXPECT_NONFATAL_FAILURE(statistics::BoundedDraws(), "LK_DRAWS must be a number above 0: many");
  unsetenv("LK_DRAWS");
}

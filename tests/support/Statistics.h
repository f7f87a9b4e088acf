// SPDX-License-Identifier: Apache-2.0
// Goodness of fit: whether a sample of random draws follows the distribution that it should. A sample is
// rejected when chance alone would give one at least as far off less than once in a million; with the fixed
// seeds of the tests the answer is the same in every run. Functions without state; any thread.
#pragma once

#include <gtest/gtest.h>

#include <vector>

namespace statistics {

inline constexpr double kRejectBelow = 1e-6;

// The chance that a chi-square variable of so many degrees of freedom reaches the statistic.
// REQUIRES: statistic >= 0, degrees >= 1.
double ChiSquarePValue(double statistic, int degrees);

// The chance that the empirical distribution of so many values is somewhere so far from the true one
// (Kolmogorov's limit with Stephens' correction, good to a few per cent from 20 values on).
double KolmogorovPValue(double distance, size_t values);

// How often each whole number from low to high came, and how often any other.
class Tally {
 public:
  Tally(long low, long high);
  void Add(long value);
  const std::vector<long>& Counts() const { return m_counts; }
  long Outside() const { return m_outside; }
  long FirstOutside() const { return m_firstOutside; }

 private:
  long m_low;
  std::vector<long> m_counts;
  long m_outside = 0;
  long m_firstOutside = 0;
};

// Pearson's test of the counts against shares, which are scaled to a sum of one. A share of zero forbids its
// cell; any other cell must expect at least five.
testing::AssertionResult HasShares(const std::vector<long>& counts, const std::vector<double>& shares);
testing::AssertionResult IsUniform(const std::vector<long>& counts);
// The same, and nothing outside.
testing::AssertionResult HasShares(const Tally& tally, const std::vector<double>& shares);
testing::AssertionResult IsUniform(const Tally& tally);

// The Kolmogorov-Smirnov test of the values against the uniform distribution, and none outside low..high.
testing::AssertionResult IsUniformBetween(std::vector<double> values, double low, double high);

// The number of draws of the tests that look for a single value out of bounds: the environment variable
// LK_DRAWS, or a million.
long BoundedDraws();

}  // namespace statistics

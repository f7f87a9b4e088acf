// SPDX-License-Identifier: Apache-2.0
// Whether two series of measurements differ by more than they vary themselves.
//
// Neighbouring intervals of a run are alike (a checkpoint slows several of them), so they are no independent
// samples: n values with an autocorrelation of r tell as much about their mean as n (1 - r) / (1 + r)
// independent ones. Welch's t test, which takes unequal variances and numbers, is made with that number. Pure
// functions.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace lkbench {

using Series = std::vector<double>;

// A series that can be judged has at least so many values, which tell as much as so many independent ones.
inline constexpr std::size_t kFewestValues = 6;
inline constexpr double kFewestIndependent = 4;

double Mean(const Series& values);
double Variance(const Series& values);  // of a sample; 0 of fewer than two

// Correlation of each value with the next one, 0 when the values do not vary. Corrected for the bias that a
// short series has.
double Autocorrelation(const Series& values);

// As how many independent values these tell of their mean; all of them where the correlation is no larger
// than chance makes it.
double IndependentCount(const Series& values);

struct Difference {
  double mean = 0;     // of the second series less that of the first
  double margin = 0;   // half the width of its 95 % confidence interval
  double p_value = 1;  // of a difference at least as large when there is none
};

// Missing when a series is too short to know its own noise.
std::optional<Difference> Compare(const Series& first, const Series& second);

// Holm's correction for several tests at once: each p value as large as it has to be so that `p < level` has
// a chance of at most `level` to be wrong anywhere.
std::vector<double> HolmAdjusted(const std::vector<double>& p_values);

// Student's t: the chance of a value beyond +-t, and the t that is exceeded so with a chance.
double StudentTail(double t, double freedom);
double StudentQuantile(double tail, double freedom);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace lkbench {
namespace {

// The continued fraction of the incomplete beta function, by the modified Lentz method.
double BetaFraction(double a, double b, double x) {
  constexpr double kTiny = 1e-300;
  const auto away = [](double value) { return std::abs(value) < kTiny ? kTiny : value; };
  double c = 1;
  double d = 1 / away(1 - (a + b) * x / (a + 1));
  double fraction = d;
  for (int m = 1; m < 500; ++m) {
    const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
    const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
    double change = 1;
    for (const double term : {even, odd}) {
      d = 1 / away(1 + term * d);
      c = away(1 + term / c);
      change = c * d;
      fraction *= change;
    }
    if (std::abs(change - 1) < 1e-15) break;
  }
  return fraction;
}

// The regularised incomplete beta function I_x(a, b).
double Beta(double a, double b, double x) {
  if (x <= 0) return 0;
  if (x >= 1) return 1;
  if (x > (a + 1) / (a + b + 2)) return 1 - Beta(b, a, 1 - x);
  const double log_front =
      std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) + b * std::log1p(-x);
  return std::exp(log_front) * BetaFraction(a, b, x) / a;
}

// What a series tells of its mean.
struct Level {
  double mean = 0;
  double error = 0;  // the variance of that mean
  double independent = 0;
};

// Values that are alike vary less than they would over a longer time: the variance is raised by what is
// missing.
Level LevelOf(const Series& values) {
  const auto count = static_cast<double>(values.size());
  const double independent = IndependentCount(values);
  const double missing = (count - 1) / (count - count / independent);
  return {Mean(values), Variance(values) * missing / independent, independent};
}

bool CanBeJudged(const Series& values) {
  return values.size() >= kFewestValues && IndependentCount(values) >= kFewestIndependent;
}

struct Welch {
  double error = 0;    // of the difference of the means
  double freedom = 1;  // degrees of it
};

Welch WelchOf(const Level& first, const Level& second) {
  const double sum = first.error + second.error;
  if (sum == 0) return {};
  const double parts = first.error * first.error / (first.independent - 1) +
                       second.error * second.error / (second.independent - 1);
  return {std::sqrt(sum), sum * sum / parts};
}

}  // namespace

double Mean(const Series& values) {
  return values.empty()
             ? 0
             : std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double Variance(const Series& values) {
  if (values.size() < 2) return 0;
  const double mean = Mean(values);
  double sum = 0;
  for (const double value : values) sum += (value - mean) * (value - mean);
  return sum / static_cast<double>(values.size() - 1);
}

double Autocorrelation(const Series& values) {
  const double mean = Mean(values);
  double products = 0;
  double squares = 0;
  for (size_t i = 0; i < values.size(); ++i) {
    squares += (values[i] - mean) * (values[i] - mean);
    if (i > 0) products += (values[i] - mean) * (values[i - 1] - mean);
  }
  if (squares == 0) return 0;
  const double raw = products / squares;
  const double corrected = raw + (1 + 3 * raw) / static_cast<double>(values.size());
  return std::clamp(corrected, -0.99, 0.99);
}

double IndependentCount(const Series& values) {
  const auto count = static_cast<double>(values.size());
  if (values.size() < 2) return count;
  const double correlation = Autocorrelation(values);
  if (correlation <= 1 / std::sqrt(count)) return count;
  return count * (1 - correlation) / (1 + correlation);
}

std::optional<Difference> Compare(const Series& first, const Series& second) {
  if (!CanBeJudged(first) || !CanBeJudged(second)) return {};
  const Level one = LevelOf(first);
  const Level other = LevelOf(second);
  Difference difference;
  difference.mean = other.mean - one.mean;
  const Welch welch = WelchOf(one, other);
  if (welch.error == 0) {
    difference.p_value = difference.mean == 0 ? 1 : 0;
    return difference;
  }
  difference.margin = welch.error * StudentQuantile(0.05, welch.freedom);
  difference.p_value = StudentTail(difference.mean / welch.error, welch.freedom);
  return difference;
}

std::vector<double> HolmAdjusted(const std::vector<double>& p_values) {
  std::vector<std::size_t> order(p_values.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::sort(order, {}, [&](std::size_t index) { return p_values[index]; });
  std::vector<double> adjusted(p_values.size());
  double least = 0;
  for (std::size_t rank = 0; rank < order.size(); ++rank) {
    const double raised = p_values[order[rank]] * static_cast<double>(order.size() - rank);
    least = std::max(least, std::min(1.0, raised));
    adjusted[order[rank]] = least;
  }
  return adjusted;
}

double StudentTail(double t, double freedom) { return Beta(freedom / 2, 0.5, freedom / (freedom + t * t)); }

double StudentQuantile(double tail, double freedom) {
  double low = 0;
  double high = 1;
  while (StudentTail(high, freedom) > tail && high < std::numeric_limits<double>::max() / 4) high *= 2;
  for (int step = 0; step < 200; ++step) {
    const double middle = (low + high) / 2;
    (StudentTail(middle, freedom) > tail ? low : high) = middle;
  }
  return high;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <string>

namespace statistics {
namespace {

constexpr double kEnough = 1e-15;  // a term or a factor that changes nothing any more
constexpr int kMaxTerms = 100000;

// The regularised lower incomplete gamma function P(a, x) by its power series, for x < a + 1.
double GammaPBySeries(double a, double x) {
  double term = 1 / a;
  double sum = term;
  for (int n = 1; n < kMaxTerms && term > sum * kEnough; ++n) {
    term *= x / (a + n);
    sum += term;
  }
  return sum * std::exp(a * std::log(x) - x - std::lgamma(a));
}

// The upper one, Q(a, x) = 1 - P(a, x), by its continued fraction (evaluated as Lentz does), for x >= a + 1.
double GammaQByFraction(double a, double x) {
  constexpr double kTiny = std::numeric_limits<double>::min() / kEnough;
  double b = x + 1 - a;
  double c = 1 / kTiny;
  double d = 1 / b;
  double value = d;
  double factor = 0;
  for (int n = 1; n < kMaxTerms && std::abs(factor - 1) > kEnough; ++n) {
    const double numerator = -n * (n - a);
    b += 2;
    d = numerator * d + b;
    if (std::abs(d) < kTiny) d = kTiny;
    c = b + numerator / c;
    if (std::abs(c) < kTiny) c = kTiny;
    d = 1 / d;
    factor = d * c;
    value *= factor;
  }
  return value * std::exp(a * std::log(x) - x - std::lgamma(a));
}

testing::AssertionResult Judge(double p, const std::string& what) {
  if (p >= kRejectBelow) return testing::AssertionSuccess();
  return testing::AssertionFailure() << what << " is too unlikely: p = " << p;
}

testing::AssertionResult NothingOutside(const Tally& tally) {
  if (tally.Outside() == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << tally.Outside() << " values outside the bounds, the first "
                                     << tally.FirstOutside();
}

}  // namespace

double ChiSquarePValue(double statistic, int degrees) {
  const double a = degrees / 2.0;
  const double x = statistic / 2;
  if (x <= 0) return 1;
  return x < a + 1 ? 1 - GammaPBySeries(a, x) : GammaQByFraction(a, x);
}

double KolmogorovPValue(double distance, size_t values) {
  const double root = std::sqrt(static_cast<double>(values));
  const double lambda = (root + 0.12 + 0.11 / root) * distance;
  if (lambda < 0.2) return 1;  // 1 - 5e-13; the series is slow here
  double sum = 0;
  for (int k = 1; k <= 20; ++k) sum += (k % 2 == 1 ? 2 : -2) * std::exp(-2.0 * k * k * lambda * lambda);
  return std::clamp(sum, 0.0, 1.0);
}

Tally::Tally(long low, long high) : m_low(low), m_counts(static_cast<size_t>(high - low + 1)) {}

void Tally::Add(long value) {
  if (value >= m_low && value - m_low < static_cast<long>(m_counts.size()))
    ++m_counts[static_cast<size_t>(value - m_low)];
  else if (m_outside++ == 0)
    m_firstOutside = value;
}

testing::AssertionResult HasShares(const std::vector<long>& counts, const std::vector<double>& shares) {
  if (counts.size() != shares.size())
    return testing::AssertionFailure() << counts.size() << " cells, " << shares.size() << " shares";
  const auto draws = static_cast<double>(std::accumulate(counts.begin(), counts.end(), 0L));
  const double whole = std::accumulate(shares.begin(), shares.end(), 0.0);
  double statistic = 0;
  int cells = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    const double expected = draws * shares[i] / whole;
    if (shares[i] == 0 && counts[i] == 0) continue;
    if (shares[i] == 0) return testing::AssertionFailure() << "cell " << i << " should be empty";
    if (expected < 5) return testing::AssertionFailure() << "cell " << i << " expects only " << expected;
    const double distance = static_cast<double>(counts[i]) - expected;
    statistic += distance * distance / expected;
    ++cells;
  }
  if (cells < 2) return testing::AssertionFailure() << "a test needs two cells";
  return Judge(ChiSquarePValue(statistic, cells - 1), "chi-square " + std::to_string(statistic) + " of " +
                                                          std::to_string(cells - 1) + " degrees of freedom");
}

testing::AssertionResult IsUniform(const std::vector<long>& counts) {
  return HasShares(counts, std::vector<double>(counts.size(), 1.0));
}

testing::AssertionResult HasShares(const Tally& tally, const std::vector<double>& shares) {
  const testing::AssertionResult inside = NothingOutside(tally);
  return inside ? HasShares(tally.Counts(), shares) : inside;
}

testing::AssertionResult IsUniform(const Tally& tally) {
  const testing::AssertionResult inside = NothingOutside(tally);
  return inside ? IsUniform(tally.Counts()) : inside;
}

testing::AssertionResult IsUniformBetween(std::vector<double> values, double low, double high) {
  if (values.size() < 20) return testing::AssertionFailure() << "only " << values.size() << " values";
  std::sort(values.begin(), values.end());
  if (values.front() < low) return testing::AssertionFailure() << values.front() << " is below " << low;
  if (values.back() > high) return testing::AssertionFailure() << values.back() << " is above " << high;
  const auto size = static_cast<double>(values.size());
  double distance = 0;
  for (size_t i = 0; i < values.size(); ++i) {
    const double share = (values[i] - low) / (high - low);
    const auto before = static_cast<double>(i);
    distance = std::max({distance, share - before / size, (before + 1) / size - share});
  }
  return Judge(KolmogorovPValue(distance, values.size()),
               "a distance of " + std::to_string(distance) + " from the uniform distribution");
}

long BoundedDraws() {
  const char* text = std::getenv("LK_DRAWS");
  const long draws = text == nullptr ? 1000000 : std::strtol(text, nullptr, 10);
  EXPECT_GT(draws, 0) << "LK_DRAWS must be a number above 0: " << text;
  return draws;
}

}  // namespace statistics

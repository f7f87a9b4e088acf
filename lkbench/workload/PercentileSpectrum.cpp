// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PercentileSpectrum.h"

#include <cmath>
#include <cstdio>

namespace lkbench {
namespace {

constexpr double kStepsPerHalving = 5;
constexpr double kMillisecond = 1e6;

// A line of the text; they are all shorter than this.
template <class... Values>
std::string Line(const char* format, Values... values) {
  char line[160];
  std::snprintf(line, sizeof line, format, values...);
  return line;
}

// The next percentile: a fifth of the way from the last halving of the distance to 100 to the next one.
double Next(double percent) {
  const double halvings = std::floor(std::log2(100 / (100 - percent))) + 1;
  return percent + 100 / (kStepsPerHalving * std::exp2(halvings));
}

double Deviation(const HistogramData& times) {
  const double mean = static_cast<double>(times.Sum()) / static_cast<double>(times.Count());
  double squares = 0;
  for (std::size_t bucket = 0; bucket < histogram::kBuckets; ++bucket) {
    const double distance = static_cast<double>(histogram::MiddleOf(bucket)) - mean;
    squares += static_cast<double>(times.CountOf(bucket)) * distance * distance;
  }
  return std::sqrt(squares / static_cast<double>(times.Count()));
}

std::string Foot(const HistogramData& times) {
  const auto count = static_cast<double>(times.Count());
  const double mean = times.Count() == 0 ? 0 : static_cast<double>(times.Sum()) / count;
  const double deviation = times.Count() == 0 ? 0 : Deviation(times);
  return Line("#[Mean    = %12.3f, StdDeviation   = %12.3f]\n", mean / kMillisecond,
              deviation / kMillisecond) +
         Line("#[Max     = %12.3f, Total count    = %12llu]\n",
              static_cast<double>(times.Max()) / kMillisecond,
              static_cast<unsigned long long>(times.Count())) +
         Line("#[Buckets = %12d, SubBuckets     = %12d]\n", histogram::kMostBits - histogram::kSubBits + 1,
              static_cast<int>(histogram::kSubBuckets));
}

std::string Row(const HistogramData& times, double percent, std::uint64_t count) {
  const double value = static_cast<double>(times.Percentile(percent)) / kMillisecond;
  const std::string row =
      Line("%12.3f %2.12f %10llu", value, percent / 100, static_cast<unsigned long long>(count));
  return percent < 100 ? row + Line(" %14.2f\n", 100 / (100 - percent)) : row + '\n';
}

}  // namespace

std::string PercentileSpectrum(const HistogramData& times) {
  std::string text = "       Value     Percentile TotalCount 1/(1-Percentile)\n\n";
  double percent = 0;
  std::uint64_t seen = 0;
  for (std::size_t bucket = 0; bucket < histogram::kBuckets && seen < times.Count(); ++bucket) {
    seen += times.CountOf(bucket);
    const double reached = 100.0 * static_cast<double>(seen) / static_cast<double>(times.Count());
    while (times.CountOf(bucket) > 0 && percent <= reached && seen < times.Count()) {
      text += Row(times, percent, seen);
      percent = Next(percent);
    }
  }
  if (times.Count() > 0) text += Row(times, 100, times.Count());
  return text + Foot(times);
}

}  // namespace lkbench

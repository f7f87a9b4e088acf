// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Interval.h"

namespace lkbench {

void Tally::Add(const Tally& other) {
  executions += other.executions;
  failures += other.failures;
  rows += other.rows;
  undone += other.undone;
  for (std::size_t i = 0; i < kErrorClasses; ++i) errors[i] += other.errors[i];
}

void Tally::Subtract(const Tally& earlier) {
  executions -= earlier.executions;
  failures -= earlier.failures;
  rows -= earlier.rows;
  undone -= earlier.undone;
  for (std::size_t i = 0; i < kErrorClasses; ++i) errors[i] -= earlier.errors[i];
}

TimesDigest DigestOf(const HistogramData& times) {
  return {times.Count(),        times.Mean(),           times.Percentile(50), times.Percentile(95),
          times.Percentile(99), times.Percentile(99.9), times.Max()};
}

}  // namespace lkbench

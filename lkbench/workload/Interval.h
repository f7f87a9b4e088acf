// SPDX-License-Identifier: Apache-2.0
// What about one second of a run was: counts and times, of each transaction and of all of them together.
// These are values; RunRecord.h says what is counted and timed, and which sums agree.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "lkbench/Histogram.h"
#include "lkbench/workload/ErrorClass.h"

namespace lkbench {

// Counts of executions.
struct Tally {
  std::uint64_t executions = 0;  // failures included
  std::uint64_t failures = 0;
  std::uint64_t rows = 0;
  std::uint64_t undone = 0;  // succeeded, but rolled back with a later failure before their common commit
  std::array<std::uint64_t, kErrorClasses> errors{};  // the failures by class

  void Add(const Tally& other);
  void Subtract(const Tally& earlier);
  bool operator==(const Tally&) const = default;
};

// The times of an interval in short. The maximum is off by at most 1/128, like the percentiles.
struct TimesDigest {
  std::uint64_t count = 0;
  std::uint64_t mean = 0;
  std::uint64_t p50 = 0, p95 = 0, p99 = 0, p999 = 0, max = 0;

  bool operator==(const TimesDigest&) const = default;
};

TimesDigest DigestOf(const HistogramData& times);

struct XactInterval : Tally {
  TimesDigest response;
  TimesDigest service;

  bool operator==(const XactInterval&) const = default;
};

// About one second. Where a warm-up ends there are two with the same begin and end, one of each kind.
struct Interval {
  std::uint64_t begin = 0;  // offsets
  std::uint64_t end = 0;
  std::size_t phase = 0;  // index into the phases
  bool warm_up = false;
  int users = 0;              // at work at the end: started, connected, not given up
  std::uint64_t backlog = 0;  // executions that were due at the end and had not begun; 0 without a rate
  XactInterval total;
  std::vector<XactInterval> xacts;  // the same transactions in the same order in every interval of a run

  bool operator==(const Interval&) const = default;
};

}  // namespace lkbench

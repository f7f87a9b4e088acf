// SPDX-License-Identifier: Apache-2.0
// Limits that a job sets for what a workload measures, as "insert.p99" = "<20ms". Values; pure functions.
//
// A name is WHAT or OF.WHAT. OF is total (also when it is left out) or the first word of a transaction's name
// in small letters: insert, update, delete. WHAT is p50, p90, p95, p99, p99.9, mean, max (of the response
// time), throughput (executions that succeeded, per second) or errors (the share or the number of failures).
// The measured parts of all phases together are judged.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

enum class LimitUnit { kNanoseconds, kRatio, kPerSecond, kCount };

const char* NameOf(LimitUnit unit);  // as run.json has it

struct Limit {
  bool operator==(const Limit&) const = default;

  std::string name;
  std::string asked;  // "<20ms"
  std::string of;     // "total", "insert" ...
  std::string what;   // "p99" ...
  LimitUnit unit = LimitUnit::kNanoseconds;
  bool below = true;  // the value must stay below `bound`, otherwise above
  bool or_equal = false;
  double bound = 0;
};

// Throws UsageError, with `place` before it, for a name or a bound that is none.
Limit ParseLimit(const std::string& name, const std::string& asked, const std::string& place);

struct LimitResult {
  std::string name;
  std::string asked;
  std::optional<double> value;  // missing: nothing was measured; then it failed
  LimitUnit unit = LimitUnit::kNanoseconds;
  bool passed = false;
};

// The exit code of a workload: kLimitFailed when a limit failed, kRanWithFailures when executions failed and
// no limit of theirs allows it, or a user ended early.
int WorkloadCode(const RunRecord& record, const std::vector<Limit>& limits);

// A table of the limits, with what was measured; for people.
std::string LimitText(const std::vector<LimitResult>& results);

std::vector<LimitResult> Judge(const std::vector<Limit>& limits, const Part& measured);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/TextTable.h"
#include "lkbench/results/Limits.h"
#include "lkbench/results/RecordJson.h"

namespace lkbench {
namespace {

const XactTotals* Subject(const Part& part, const std::string& of) {
  if (of == "total") return &part.total;
  const auto found = std::ranges::find_if(part.xacts, [&](const XactTotals& totals) {
    return Upper(totals.name.substr(0, totals.name.find(' '))) == Upper(of);
  });
  return found == part.xacts.end() ? nullptr : &*found;
}

std::optional<double> Time(const HistogramData& times, const std::string& what) {
  if (times.Count() == 0) return {};
  if (what == "mean") return static_cast<double>(times.Mean());
  if (what == "max") return static_cast<double>(times.Max());
  double percent = 0;
  ParseReal(std::string_view(what).substr(1), percent);
  return static_cast<double>(times.Percentile(percent));
}

std::optional<double> Measure(const Limit& limit, const Part& part) {
  const XactTotals* totals = Subject(part, limit.of);
  if (totals == nullptr || totals->executions == 0) return {};
  switch (limit.unit) {
    case LimitUnit::kNanoseconds:
      return Time(totals->response, limit.what);
    case LimitUnit::kPerSecond:
      return PerSecond(totals->executions - totals->failures, part.elapsed);
    case LimitUnit::kRatio:
      return static_cast<double>(totals->failures) / static_cast<double>(totals->executions);
    case LimitUnit::kCount:
      return static_cast<double>(totals->failures);
  }
  return {};
}

std::string ValueText(const LimitResult& result) {
  if (!result.value) return "nothing measured";
  switch (result.unit) {
    case LimitUnit::kNanoseconds:
      return Milliseconds(static_cast<std::uint64_t>(*result.value)) + " ms";
    case LimitUnit::kPerSecond:
      return Fixed(*result.value, 1) + " /s";
    case LimitUnit::kRatio:
      return Fixed(*result.value * 100, 3) + " %";
    case LimitUnit::kCount:
      return Grouped(static_cast<std::uint64_t>(*result.value));
  }
  return {};
}

bool Holds(const Limit& limit, double value) {
  if (value == limit.bound) return limit.or_equal;
  return limit.below ? value < limit.bound : value > limit.bound;
}

}  // namespace

std::string LimitText(const std::vector<LimitResult>& results) {
  std::vector<TextRow> rows = {{"limit", "asked for", "measured", ""}};
  for (const LimitResult& result : results)
    rows.push_back({result.name, result.asked, ValueText(result), result.passed ? "pass" : "FAIL"});
  return Aligned(rows);
}

int WorkloadCode(const RunRecord& record, const std::vector<Limit>& limits) {
  const auto results = Judge(limits, record.measured);
  if (!std::ranges::all_of(results, &LimitResult::passed)) return kLimitFailed;
  const bool failures_are_limited = std::ranges::any_of(limits, [](const Limit& limit) {
    return limit.of == "total" && limit.what == "errors" && limit.below;
  });
  const bool has_failures = record.measured.total.failures > 0 && !failures_are_limited;
  return has_failures || record.lost_users > 0 || record.given_up_users > 0 ? kRanWithFailures : kDone;
}

std::vector<LimitResult> Judge(const std::vector<Limit>& limits, const Part& measured) {
  std::vector<LimitResult> results;
  for (const Limit& limit : limits) {
    const std::optional<double> value = Measure(limit, measured);
    results.push_back({limit.name, limit.asked, value, limit.unit, value && Holds(limit, *value)});
  }
  return results;
}

}  // namespace lkbench

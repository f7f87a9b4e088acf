// SPDX-License-Identifier: Apache-2.0
// A RunRecord as the `workload` of run.json, and parts of it. docs/run.schema.json is the contract. Pure
// functions.
#pragma once

#include "lkbench/results/Json.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

Json TimesJson(const HistogramData& times);  // with the buckets that hold something
Json HistogramRuleJson();                    // how buckets are numbered
Json WorkloadJson(const RunRecord& record);
Json PhaseJson(const PhaseRecord& phase);
Json IntervalJson(const Interval& interval);
Json EventJson(const Event& event);
Json ErrorJson(const ErrorRecord& error);

// 0 without a time.
double PerSecond(std::uint64_t count, std::uint64_t nanoseconds);

}  // namespace lkbench

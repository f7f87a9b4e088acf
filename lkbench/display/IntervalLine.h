// SPDX-License-Identifier: Apache-2.0
// What a person reads while a workload runs: a line for each interval, and how its phase stands. Pure text.
#pragma once

#include "lkbench/display/Spans.h"
#include "lkbench/workload/Progress.h"

namespace lkbench {

std::string IntervalLine(const Progress& progress);
Spans IntervalLine(const Progress& progress, std::size_t columns);

// "burst 2/3  0:12  0:48 left  64 users  1436.8 tx/s  p99 6.128 ms  failures 0": the figures are those of
// the phase so far, or of its warm-up.
FittedLine WorkloadStatus(const Progress& progress);

}  // namespace lkbench

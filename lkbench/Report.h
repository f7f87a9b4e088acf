// SPDX-License-Identifier: Apache-2.0
// What a person reads of a workload: a line a second and the table at the end. Pure text, so it can be
// tested.
#pragma once

#include <string>
#include <vector>

#include "lkbench/ErrorLog.h"
#include "lkbench/workload/Progress.h"

namespace lkbench {

std::string IntervalLine(const Progress& progress);
std::string WorkloadTable(const RunRecord& record);
// The problems that came more than once, with their number; empty when there are none.
std::string ProblemTable(const std::vector<ProblemLine>& problems);
// Why the figures may not be representative.
std::vector<std::string> Doubts(const RunRecord& record);

}  // namespace lkbench

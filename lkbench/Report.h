// SPDX-License-Identifier: Apache-2.0
// What a person reads of a workload at its end. Pure text, so it can be tested.
#pragma once

#include <string>
#include <vector>

#include "lkbench/ErrorLog.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

// For a window of so many columns: where it is too narrow for the table, there are two.
std::string WorkloadTable(const RunRecord& record, size_t columns = std::string::npos);
// The problems that came more than once, with their number; empty when there are none.
std::string ProblemTable(const std::vector<ProblemLine>& problems);
// What lkbench itself took of the processors: "lkbench itself: 0.35 processors, 95.3 us an execution".
std::string ProcessorLine(const Part& part);
// Why the figures may not be representative, on a machine with so many processors.
std::vector<std::string> Doubts(const RunRecord& record, unsigned processors);

}  // namespace lkbench

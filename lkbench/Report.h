// SPDX-License-Identifier: Apache-2.0
// What a person reads of a workload: a line a second and the table at the end. Pure text, so it can be
// tested.
#pragma once

#include <string>
#include <vector>

#include "lkbench/ErrorLog.h"
#include "lkbench/Stats.h"

namespace lkbench {

// Remembers what was shown before, so that each line tells of its own interval.
class IntervalReport {
 public:
  std::string Line(const WorkloadResult& so_far);

 private:
  HistogramData m_shown;
  std::uint64_t m_executions = 0;
  std::uint64_t m_failures = 0;
  std::uint64_t m_elapsed = 0;
};

std::string WorkloadTable(const WorkloadResult& result);
// The problems that came more than once, with their number; empty when there are none.
std::string ProblemTable(const std::vector<ProblemLine>& problems);
// Why the figures may not be representative.
std::vector<std::string> Doubts(const WorkloadResult& result);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// How a workload goes on, for whoever shows it: called on the thread that conducts the users, about once a
// second and at the end of each part of a phase. What is referred to lives during the call.
#pragma once

#include <functional>

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

struct Progress {
  const Interval& interval;  // that has just ended
  const PhaseRecord& phase;  // its settings and begin are known
  const Part& part;          // of the phase so far, warm-up or measured as the interval; without tables
  std::size_t phases = 1;    // of the run
  std::uint64_t ends = 0;    // offset at which the phase ends at the latest; 0: only its count ends it
};

using Tick = std::function<void(const Progress&)>;
using PhaseEnd = std::function<void(const PhaseRecord&)>;  // on the same thread

}  // namespace lkbench

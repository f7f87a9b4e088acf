// SPDX-License-Identifier: Apache-2.0
// A phase in progress, as its users and the thread that conducts them share it: each holds it by a shared
// pointer, because a user whose call does not come back may outlast the phase.
#pragma once

#include <algorithm>

#include "lkbench/workload/PhaseRun.h"
#include "lkbench/workload/PhaseStats.h"
#include "lkbench/workload/RunContext.h"
#include "lkbench/workload/TableBook.h"

namespace lkbench {

struct RunningPhase {
  RunningPhase(size_t its_number, const Phase& phase, TimePoint begin, const RunContext& context,
               const std::vector<XactTotals>& names)
      : number(its_number),
        run(phase, begin, context.seed + static_cast<std::uint32_t>(its_number), context.cancel),
        stats(names, phase),
        tables(std::max(0, static_cast<int>(context.columns.size()) - 1), phase.users) {}

  const size_t number;  // from 0
  PhaseRun run;
  PhaseStats stats;
  TableBook tables;
};

}  // namespace lkbench

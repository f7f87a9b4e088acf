// SPDX-License-Identifier: Apache-2.0
// Settings of phases that contradict each other. A pure function.
#pragma once

#include <vector>

#include "lkbench/Job.h"

namespace lkbench {

// `phases` are those of the job, complete. Throws UsageError that begins with the place of a phase or, in a
// job that lists none, of a setting that was made on purpose.
void CheckPhases(const Job& job, const std::vector<Phase>& phases);

}  // namespace lkbench

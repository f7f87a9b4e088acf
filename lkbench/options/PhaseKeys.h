// SPDX-License-Identifier: Apache-2.0
// What a phase of the workload may say. The same keys stand in a [[phase]] of the job file, in a --phase flag
// and beside the other keys of the job, where they are what phases without a word of their own inherit. All
// functions are pure.
#pragma once

#include <span>
#include <vector>

#include "lkbench/Job.h"
#include "lkbench/options/Key.h"

namespace lkbench {

std::span<const Key<Phase>> PhaseKeys();

// The key of this name as one of the job itself. REQUIRES: it is a key of a phase.
Key<Job> JobKeyOfPhase(const std::string& name);

KeyType<Job> PhaseList();  // tables of keys, or texts "name=base users=8 duration=1m"

// The phases of a job, complete: what a phase does not say is the job's. A flag that is set apart from the
// phases holds for all phases of the file; a variable likewise. Throws UsageError where settings contradict
// each other.
std::vector<Phase> PhasesOf(const Job& job);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The one table of what a job may say. A key of the job file, a flag of the command line and an environment
// variable are the same entry (column_types, --column-types, LKBENCH_COLUMN_TYPES), so help, checking, the
// readers and the effective job follow from it. To add a key: a member of Job with its default, and a line
// here.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "lkbench/Job.h"
#include "lkbench/options/Key.h"

namespace lkbench {

using JobKey = Key<Job>;

std::span<const JobKey> JobKeys();
std::vector<std::string> JobKeyNames();
const JobKey* FindJobKey(const std::string& name);  // null when there is none

// Sets one key of the job and notes where it came from. Throws UsageError.
void SetJobKey(Job& job, const JobKey& key, const JobValue& value);

}  // namespace lkbench

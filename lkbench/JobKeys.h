// SPDX-License-Identifier: Apache-2.0
// The one table of what a job may say. A key of the job file and a flag of the command line are the same
// entry (users, --users; column_types, --column-types), so help, checking and both readers follow from it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "lkbench/Job.h"
#include "lkbench/JobValue.h"

namespace lkbench {

enum class KeyShape { kOneValue, kSwitch, kRepeated };  // as a flag: --key VALUE, --key, --key VALUE ...

struct JobKey {
  std::string name;
  std::string value;  // what stands for the value in help
  std::string help;
  KeyShape shape;
  void (*set)(Job& job, const JobValue& value);

  std::string Flag() const;  // with dashes
};

std::span<const JobKey> JobKeys();
std::vector<std::string> JobKeyNames();
const JobKey* FindJobKey(const std::string& name);  // null when there is none

// Sets one key of the job and notes where it came from. Throws UsageError.
void SetJobKey(Job& job, const JobKey& key, const JobValue& value);

}  // namespace lkbench

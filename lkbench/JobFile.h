// SPDX-License-Identifier: Apache-2.0
// Reads a job file (TOML) into a Job, over what the job says already. Throws UsageError with file, line, key.
#pragma once

#include <string>
#include <string_view>

#include "lkbench/Job.h"

namespace lkbench {

void ReadJobFile(Job& job, const std::string& path);
void ReadJobText(Job& job, std::string_view text, const std::string& path);  // TOML; `path` is for messages

}  // namespace lkbench

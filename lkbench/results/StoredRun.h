// SPDX-License-Identifier: Apache-2.0
// A run as it was left in a folder, read back from its run.json.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "lkbench/results/Json.h"

namespace lkbench {

struct StoredRun {
  std::string name;  // as the user named it
  std::string text;  // of run.json
  Json json;
};

// `place` is a results folder or a run.json. Throws UsageError when it is none, or one of another version.
StoredRun ReadRun(const std::filesystem::path& place);

}  // namespace lkbench

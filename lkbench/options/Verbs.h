// SPDX-License-Identifier: Apache-2.0
// The verbs of lkbench: one table from which the command line, help, man page and completion are made. A set
// of verbs is a sum of their bits; a key says with such a set who uses it.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace lkbench {

using Verbs = unsigned;

inline constexpr Verbs kRunVerb = 1, kCreateVerb = 2, kLoadVerb = 4, kWorkloadVerb = 8, kRefreshVerb = 16,
                       kDropVerb = 32, kListVerb = 64, kCheckVerb = 128, kHelpVerb = 256;
inline constexpr Verbs kBuildVerbs = kRunVerb | kCreateVerb;
inline constexpr Verbs kWorkVerbs = kRunVerb | kWorkloadVerb;
inline constexpr Verbs kSchemaVerbs = kWorkVerbs | kCreateVerb | kLoadVerb | kRefreshVerb;
inline constexpr Verbs kDatabaseVerbs = kSchemaVerbs | kDropVerb | kCheckVerb;
inline constexpr Verbs kPluginVerbs = kDatabaseVerbs | kListVerb;
inline constexpr Verbs kAllVerbs = ~0u;

struct Example {
  std::string command;
  std::string does;
};

struct VerbInfo {
  std::string name;
  Verbs bit;
  std::string help;            // one line
  std::string arguments = {};  // what stands behind the verb, as "[VERB]"; empty: nothing may
  size_t fewest = 0;           // of them
  size_t most = 0;
  std::string more = {};  // a paragraph for its own help
  std::vector<Example> examples = {};
};

std::span<const VerbInfo> AllVerbs();
const VerbInfo* FindVerb(const std::string& name);  // null when there is none
std::vector<std::string> VerbNames();

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// What other load programs call a flag or a verb of lkbench, for the line that answers an unknown one. All
// functions are pure.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lkbench {

struct PeerName {
  std::vector<std::string> theirs;
  std::vector<std::string> ours;
};
std::span<const PeerName> PeerKeys();  // a single letter is a flag, where case counts
std::span<const PeerName> PeerVerbs();

// ": did you mean "--users"?", or nothing. `name` is a flag, a key or a variable, `known` are those of
// lkbench, written alike, and `spell` writes a key so (warm_up as --warm-up).
std::string DidYouMeanKey(std::string_view name, const std::vector<std::string>& known,
                          const std::function<std::string(const std::string&)>& spell);

std::string DidYouMeanVerb(const std::string& name);

}  // namespace lkbench

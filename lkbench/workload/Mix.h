// SPDX-License-Identifier: Apache-2.0
// The relative weights of the workload's transactions. kMixParts is the one table of them: to add one, give
// it a member and a line there. Values; all functions are pure.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace lkbench {

struct Mix {
  int insert = 40;
  int update = 40;
  int remove = 20;

  bool operator==(const Mix&) const = default;
};

struct MixPart {
  const char* name;  // in jobs and results
  int id;            // of the plug-in's transaction
  int Mix::*weight;
};

inline constexpr std::array kMixParts = {MixPart{"insert", 131, &Mix::insert},
                                         MixPart{"update", 141, &Mix::update},
                                         MixPart{"delete", 151, &Mix::remove}};

inline std::vector<std::string> MixNames() {
  std::vector<std::string> names(kMixParts.size());
  std::ranges::transform(kMixParts, names.begin(),
                         [](const MixPart& part) { return std::string(part.name); });
  return names;
}

}  // namespace lkbench

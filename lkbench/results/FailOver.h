// SPDX-License-Identifier: Apache-2.0
// Whether runs got worse than they may, for scripts: what `lkbench compare --fail-over` decides. Pure
// functions.
#pragma once

#include <string>
#include <vector>

#include "lkbench/results/Comparison.h"

namespace lkbench {

struct FailOver {
  bool failed = false;
  std::string text;  // the verdict, and a line for each figure that got worse by more
};

// A figure counts where it is worse by more than noise, and by more than so many per cent of what the first
// run had; one that was 0 there counts always. Throws UsageError when a pair has a phase that is too short to
// be judged: such a check would pass whatever happens.
FailOver JudgeFailOver(const std::vector<Comparison>& comparisons, double percent);

}  // namespace lkbench

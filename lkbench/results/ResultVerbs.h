// SPDX-License-Identifier: Apache-2.0
// The verbs that work on runs that were left in folders: report and compare.
#pragma once

#include <optional>

#include "lkbench/Console.h"
#include "lkbench/options/Flags.h"

namespace lkbench {

// Does what such a verb says and returns the exit code; nothing for any other verb. Throws UsageError or
// ResultsError.
std::optional<int> RunResultVerb(const Invocation& invocation, Console& console);

}  // namespace lkbench

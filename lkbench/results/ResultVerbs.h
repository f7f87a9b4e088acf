// SPDX-License-Identifier: Apache-2.0
// The verbs that work on runs that were left in folders: report and compare.
#pragma once

#include "lkbench/Console.h"
#include "lkbench/options/Flags.h"

namespace lkbench {

// Does what such a verb says and returns true; false for any other verb. Throws UsageError or ResultsError.
bool RunResultVerb(const Invocation& invocation, Console& console);

}  // namespace lkbench

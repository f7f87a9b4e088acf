// SPDX-License-Identifier: Apache-2.0
// The verbs that need neither plug-in nor database: they write or print a text about lkbench.
#pragma once

#include "lkbench/Console.h"
#include "lkbench/options/Flags.h"

namespace lkbench {

// Does what such a verb says and returns true; false for any other verb. Throws UsageError.
bool RunTextVerb(const Invocation& invocation, Console& console);

}  // namespace lkbench

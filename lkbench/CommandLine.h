// SPDX-License-Identifier: Apache-2.0
// What lkbench is told: built-in values, then the job file, then the environment, then flags; what comes
// later wins. Throws UsageError for what is not understood, with the nearest name.
#pragma once

#include "lkbench/options/Flags.h"

namespace lkbench {

Invocation ReadCommandLine(int argc, const char* const* argv);

}  // namespace lkbench

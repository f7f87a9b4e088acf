// SPDX-License-Identifier: Apache-2.0
// What a verb that works on a database would do, without doing any of it: what the job says, and what it
// leaves to the schema, which nobody looks at. Nothing is connected to, started or written.
#pragma once

#include <string>

#include "lkbench/Target.h"
#include "lkbench/options/Flags.h"

namespace lkbench {

// Throws what the verb would throw for what cannot be used, as far as that can be told by looking: the folder
// and the program of a private server, where the password comes from, where results go, the port for metrics.
std::string DryRunText(const Invocation& invocation, const Target& target);

}  // namespace lkbench

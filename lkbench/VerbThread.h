// SPDX-License-Identifier: Apache-2.0
// Runs a verb on a thread of its own, so that a database call that does not come back keeps the verb and not
// the process. The calling thread waits and looks after the calls: those that take longer than any may are
// broken off, and when one does not come back even so, or not in time after a signal, all is given up.
#pragma once

#include <functional>
#include <string>

#include "lkbench/CallWatch.h"
#include "lkbench/Console.h"
#include "lkbench/Patience.h"

namespace lkbench {

struct VerbLimits {
  std::string verb;  // for messages
  Patience patience;
};

// Empty when the verb has ended; what it throws is thrown here. Otherwise the line that says which call does
// not come back: the verb's threads stand still then, so what it works on can be read, but must outlive the
// process like all that its threads use.
std::string RunPatiently(const std::function<void()>& verb, const VerbLimits& limits, CallWatch& calls,
                         const CancelSwitch& cancel, Console& console);

// Does the work on a thread of its own. False when it has not ended by then: the thread goes on, and what it
// uses must live as long as the process.
bool EndsWithin(std::chrono::nanoseconds patience, std::function<void()> work);

}  // namespace lkbench

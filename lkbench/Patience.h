// SPDX-License-Identifier: Apache-2.0
// How long is waited for calls that do not come back. A value.
#pragma once

#include <chrono>

namespace lkbench {

struct Patience {
  // After a deadline, or a cancel, calls may still run so long before they are broken off.
  std::chrono::nanoseconds grace = std::chrono::seconds(5);
  // So long after a call was to be broken off, its user is given up.
  std::chrono::nanoseconds give_up = std::chrono::seconds(10);
  std::chrono::nanoseconds call{0};  // that a call may take at any time before it is broken off; 0: no limit

  // After a signal, or for the end of sessions: what both steps take together.
  std::chrono::nanoseconds Whole() const { return grace + give_up; }
};

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// What all users of a run share. The owner keeps it as long as there are users.
#pragma once

#include <atomic>

#include "lkbench/Cancel.h"
#include "lkbench/workload/Reconnection.h"
#include "lkbench/workload/RunNotes.h"

namespace lkbench {

struct RunContext {
  CancelSwitch& cancel;
  CallBreaker& breaker;
  std::uint32_t seed;
  Reconnection reconnection;
  std::vector<int> columns{};  // of each table at its number, beside ID; 0: unknown
  RunNotes notes{};
  std::atomic<int> active{0};  // users at work
  std::atomic<int> lost{0};    // users that ended without a session
};

}  // namespace lkbench

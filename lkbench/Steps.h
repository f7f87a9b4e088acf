// SPDX-License-Identifier: Apache-2.0
// Runs set-up transactions by several users in step: every user's PreBenchmark, then every PreIteration, then
// every Execute, then every PostBenchmark. A user that fails or throws cancels the others; PostBenchmark runs
// for all whose PreBenchmark ran, so that backups are finished or dropped. Nobody ever waits for a user that
// is gone.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "db/Xact.h"
#include "lkbench/Cancel.h"
#include "lkbench/Users.h"

namespace lkbench {

// What one user does in a step: its own transaction copies, one after the other in each phase.
struct StepShare {
  VirtualUser* user = nullptr;
  std::vector<std::unique_ptr<CXact>> xacts;
};

struct StepResult {
  bool done = false;    // no phase of any user failed, nothing was cancelled
  std::string failure;  // which user failed first, and where; empty when none did
};

class StepRunner {
 public:
  StepRunner(CancelSwitch& cancel, CallBreaker& breaker) : m_cancel(cancel), m_breaker(breaker) {}

  // `tick` is called about once a second on the calling thread while the users work.
  StepResult Run(std::vector<StepShare>& shares, const std::function<void()>& tick = {});

 private:
  CancelSwitch& m_cancel;
  CallBreaker& m_breaker;
};

// One user's transaction from PreBenchmark to PostBenchmark: what creates, drops or rewrites objects. With a
// `tick` on a thread of its own, while the calling one calls that about once a second. Whether all of it
// succeeded.
bool RunAlone(VirtualUser& user, CallBreaker& breaker, CXact& xact, const std::function<void()>& tick = {});

// Calls `call` and returns its result; an exception that leaves it is one error in the user's log and result
// 0.
int Guarded(VirtualUser& user, const std::string& what, const std::function<int()>& call);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The measured part: every user repeats transactions, drawn by weight, until the time is over. All users
// start together after every PreBenchmark; a user whose session is lost ends early and the others go on.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "db/Xact.h"
#include "lkbench/Cancel.h"
#include "lkbench/Stats.h"
#include "lkbench/Users.h"

namespace lkbench {

// One transaction of one user: its copy, its weight in the mix, its numbers.
struct WorkloadShare {
  std::unique_ptr<CXact> xact;
  int weight = 1;
  XactStats stats;
};

struct WorkloadUser {
  VirtualUser* user = nullptr;
  std::vector<std::unique_ptr<WorkloadShare>> shares;
};

class Workload {
 public:
  // `users` outlive the object; each has the same transactions in the same order, none without weight.
  Workload(std::vector<WorkloadUser>& users, CancelSwitch& cancel, CallBreaker& breaker, std::uint32_t seed);

  // Runs for `duration` or until cancelled. `tick` gets the numbers so far about once a second. Throws
  // PrepareError when a user's PreBenchmark fails: then nothing has been measured.
  WorkloadResult Run(std::chrono::nanoseconds duration,
                     const std::function<void(const WorkloadResult&)>& tick);

 private:
  using Clock = std::chrono::steady_clock;
  class Gate;

  void RunUser(WorkloadUser& user, Gate& gate);
  void Prepare(WorkloadUser& user, Gate& gate);
  void Repeat(WorkloadUser& user, Clock::time_point deadline);
  void NoteEnd();
  WorkloadResult Merge(Clock::time_point begin, Clock::time_point end) const;

  std::vector<WorkloadUser>& m_users;
  CancelSwitch& m_cancel;
  CallBreaker& m_breaker;
  std::uint32_t m_seed;
  std::atomic<int> m_lost{0};
  std::mutex m_end_mutex;
  Clock::time_point m_end;  // of the user that ended last
};

// One execution with its commit or rollback.
Execution RunOnce(VirtualUser& user, CXact& xact);

}  // namespace lkbench

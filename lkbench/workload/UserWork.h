// SPDX-License-Identifier: Apache-2.0
// What one user's thread does in a workload: prepares its transactions, works through the phases, opens a
// lost session again, and cleans up. One thread, except where it says any.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <vector>

#include "db/Xact.h"
#include "lkbench/Cancel.h"
#include "lkbench/Users.h"
#include "lkbench/workload/Execution.h"
#include "lkbench/workload/RunningPhase.h"

namespace lkbench {

// One transaction of one user: its copy, and its weight in each phase.
struct WorkloadShare {
  std::unique_ptr<CXact> xact;
  std::vector<int> weights;
};

struct WorkloadUser {
  VirtualUser* user = nullptr;
  std::vector<std::unique_ptr<WorkloadShare>> shares;
};

class UserWork {
 public:
  UserWork(WorkloadUser& work, int index, RunContext& context);

  // Every PreBenchmark. What failed, or nothing.
  std::string Prepare();
  // Whether the user can go on with another phase.
  bool RunPhase(RunningPhase& phase);
  void Finish();  // every PostBenchmark

  // Any thread: from now on the user counts as gone. False when it did already.
  bool GiveUp();
  // Any thread: when the call that the user is in began; TimePoint{} when it is in none.
  TimePoint InCallSince() const { return TimePoint(TimePoint::duration(m_in_call_since.load())); }

 private:
  class Draw;
  class CallScope;
  class ActiveScope;

  void Repeat(RunningPhase& phase);
  void RunSlot(RunningPhase& phase, const PhaseRun::Slot& slot, size_t chosen);
  Execution RunLimited(const PhaseRun::Slot& slot, size_t chosen, bool commits);
  void NoteFailure(const Execution& execution);
  void EndWarmUp(RunningPhase& phase);
  void CommitRest(RunningPhase& phase);
  void Undo(RunningPhase& phase);
  void ForgetUncommitted();
  bool Reopen(RunningPhase& phase);
  bool TryReopen();
  bool PrepareAll(std::string& failure);
  void EndActivity();
  int Number() const { return m_work.user->Number(); }

  WorkloadUser& m_work;
  int m_index;
  RunContext& m_context;
  std::atomic<bool> m_given_up{false};
  std::atomic<bool> m_is_active{false};  // counted in the context
  std::atomic<TimePoint::rep> m_in_call_since{0};
  bool m_warms_up = false;
  bool m_has_session = true;
  bool m_is_lost = false;  // for good
  TimePoint m_lost_since{};
  std::vector<std::uint64_t> m_uncommitted;           // executions of each transaction
  std::map<int, std::uint64_t> m_uncommitted_tables;  // and of each table; measured ones
};

}  // namespace lkbench

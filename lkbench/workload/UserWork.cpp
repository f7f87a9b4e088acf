// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/UserWork.h"

#include <algorithm>
#include <numeric>

#include "core/Random.h"
#include "lkbench/Steps.h"
#include "lkbench/Text.h"
#include "lkbench/workload/TableWatch.h"

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

// Counts the user as being at work while it lives, or until it is given up.
class UserWork::ActiveScope {
 public:
  explicit ActiveScope(UserWork& work) : m_work(work) {
    m_work.m_is_active = true;
    ++m_work.m_context.active;
  }
  ~ActiveScope() { m_work.EndActivity(); }
  ActiveScope(const ActiveScope&) = delete;
  ActiveScope& operator=(const ActiveScope&) = delete;

 private:
  UserWork& m_work;
};

// Marks a call that may not take for ever.
class UserWork::CallScope {
 public:
  explicit CallScope(UserWork& work) : m_work(work) {
    m_work.m_in_call_since = Clock::now().time_since_epoch().count();
  }
  ~CallScope() { m_work.m_in_call_since = 0; }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  UserWork& m_work;
};

// What a user draws: transactions by weight, and pauses. A stream of its own: the transactions' streams
// choose tables and rows.
class UserWork::Draw {
 public:
  Draw(const WorkloadUser& work, const RunningPhase& phase, std::uint32_t seed)
      : m_phase(phase.run.Settings()),
        m_source(seed * 1000003u + static_cast<std::uint32_t>(work.user->Number()) +
                 static_cast<std::uint32_t>(phase.number) * 7919u) {
    for (const auto& share : work.shares) m_weights.push_back(share->weights[phase.number]);
    m_total = std::accumulate(m_weights.begin(), m_weights.end(), 0);
  }
  size_t Transaction() {
    auto draw = static_cast<int>(m_source.Below(static_cast<std::uint64_t>(m_total)));
    size_t chosen = 0;
    while (draw >= m_weights[chosen]) draw -= m_weights[chosen++];
    return chosen;
  }
  Phase::Time Pause() {
    const auto span = static_cast<std::uint64_t>((m_phase.think_max - m_phase.think_min).count());
    return m_phase.think_min + Phase::Time(span == 0 ? 0 : m_source.Below(span + 1));
  }

 private:
  const Phase& m_phase;
  CXoshiro256 m_source;
  std::vector<int> m_weights;
  int m_total = 0;
};

UserWork::UserWork(WorkloadUser& work, int index, RunContext& context)
    : m_work(work), m_index(index), m_context(context), m_uncommitted(work.shares.size()) {}

std::string UserWork::Prepare() {
  const CallBreaker::Scope breakable(m_context.breaker, m_work.user->Driver());
  std::string failure;
  PrepareAll(failure);
  return failure;
}

bool UserWork::PrepareAll(std::string& failure) {
  for (const auto& share : m_work.shares) {
    const std::string name = share->xact->GetName().ToChar();
    const CallScope call(*this);
    if (Guarded(*m_work.user, name, [&] { return share->xact->PreBenchmark(); }) <= 0 && failure.empty())
      failure = "user " + std::to_string(Number()) + " failed (" + name + ", PreBenchmark)";
  }
  return failure.empty();
}

bool UserWork::GiveUp() {
  if (m_given_up.exchange(true)) return false;
  EndActivity();
  return true;
}

void UserWork::EndActivity() {
  if (m_is_active.exchange(false)) --m_context.active;
}

void UserWork::Finish() {
  if (!m_has_session) {
    m_context.notes.NoteEvent(EventKind::kUserLost, m_lost_since, Clock::now(), Number(),
                              "no session at the end");
    ++m_context.lost;
  }
  for (const auto& share : m_work.shares) {
    const CallScope call(*this);
    Guarded(*m_work.user, share->xact->GetName().ToChar(), [&] { return share->xact->PostBenchmark(); });
  }
}

bool UserWork::RunPhase(RunningPhase& phase) {
  m_warms_up = phase.run.Settings().warm_up.count() > 0;
  if (phase.run.Wait(phase.run.StartOf(m_index))) {
    const CallBreaker::Scope breakable(m_context.breaker, m_work.user->Driver());
    Repeat(phase);
    if (m_has_session) CommitRest(phase);
  }
  return !m_is_lost && !m_given_up;
}

void UserWork::Repeat(RunningPhase& phase) {
  Draw draw(m_work, phase, m_context.seed);
  while (!m_given_up && (m_has_session || Reopen(phase))) {
    const ActiveScope active(*this);
    while (m_has_session) {
      const auto slot = phase.run.Next();
      if (!slot || m_given_up) return;
      if (m_warms_up && !phase.run.IsWarmUp(*slot)) EndWarmUp(phase);
      RunSlot(phase, *slot, draw.Transaction());
      const Phase::Time pause = draw.Pause();
      if (m_has_session && pause.count() > 0 && !phase.run.Wait(Clock::now() + pause)) return;
    }
  }
}

void UserWork::RunSlot(RunningPhase& phase, const PhaseRun::Slot& slot, size_t chosen) {
  const auto before = std::accumulate(m_uncommitted.begin(), m_uncommitted.end(), std::uint64_t{0});
  TakeTable();
  const bool commits = before + 1 >= static_cast<std::uint64_t>(phase.run.Settings().commit_every);
  const Execution execution = RunLimited(slot, chosen, commits);
  if (!execution.done) {
    Undo(phase);
    if (m_context.cancel.IsSet() || m_given_up) return;  // broken off, not failed
    NoteFailure(execution);
  } else if (commits) {
    ForgetUncommitted();
  } else {
    ++m_uncommitted[chosen];
  }
  phase.stats.Of(m_index, chosen).Record(execution);
  if (m_warms_up) return;
  const int table = TakeTable();
  phase.tables.Record(m_index, table, execution);
  if (execution.done && !commits) ++m_uncommitted_tables[table];
}

Execution UserWork::RunLimited(const PhaseRun::Slot& slot, size_t chosen, bool commits) {
  const CallScope call(*this);
  return RunOnce(*m_work.user, *m_work.shares[chosen]->xact, slot.is_scheduled ? slot.intended : TimePoint{},
                 commits);
}

void UserWork::NoteFailure(const Execution& execution) {
  const TimePoint now = Clock::now();
  const LastError error = m_work.user->Error();
  m_context.notes.NoteFailure(now, execution.error, error.code, DatabaseText(error.text));
  if (!m_work.user->LostSession()) return;
  m_has_session = false;
  m_lost_since = now;
}

// The rest of the warm-up is committed with it, so that no commit has executions of both.
void UserWork::EndWarmUp(RunningPhase& phase) {
  CommitRest(phase);
  phase.stats.EndWarmUp(m_index);
  m_warms_up = false;
}

void UserWork::CommitRest(RunningPhase& phase) {
  if (std::ranges::all_of(m_uncommitted, [](std::uint64_t count) { return count == 0; })) return;
  const CallScope call(*this);
  if (m_work.user->Driver().Commit() == 0) {
    m_work.user->RollBack();
    Undo(phase);
  }
  ForgetUncommitted();
}

void UserWork::ForgetUncommitted() {
  std::ranges::fill(m_uncommitted, 0);
  m_uncommitted_tables.clear();
}

void UserWork::Undo(RunningPhase& phase) {
  for (size_t i = 0; i < m_uncommitted.size(); ++i)
    if (m_uncommitted[i] > 0) phase.stats.Of(m_index, i).NoteUndone(m_uncommitted[i]);
  for (const auto& [table, executions] : m_uncommitted_tables)
    phase.tables.NoteUndone(m_index, table, executions);
  ForgetUncommitted();
}

// The transactions free what belongs to the session that is gone, and are prepared on the new one.
bool UserWork::Reopen(RunningPhase& phase) {
  if (m_context.reconnection.policy == OnDisconnect::kStop) {
    m_is_lost = true;
    return false;
  }
  auto pause = m_context.reconnection.first;
  while (!m_given_up && !phase.run.IsOver(Clock::now())) {
    if (TryReopen()) {
      m_has_session = true;
      m_context.notes.NoteEvent(EventKind::kOutage, m_lost_since, Clock::now(), Number(),
                                "the session was reopened");
      return true;
    }
    if (!phase.run.Wait(Clock::now() + pause)) return false;
    pause = std::min(pause * 2, m_context.reconnection.longest);
  }
  return false;
}

bool UserWork::TryReopen() {
  const auto quiet = m_work.user->Quietly();
  for (const auto& share : m_work.shares)
    Guarded(*m_work.user, share->xact->GetName().ToChar(), [&] { return share->xact->PostBenchmark(); });
  std::string failure;
  return m_work.user->Reopen() && PrepareAll(failure);
}

}  // namespace lkbench

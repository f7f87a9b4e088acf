// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Workload.h"

#include <algorithm>
#include <condition_variable>

#include "core/Random.h"
#include "lkbench/Failure.h"
#include "lkbench/Steps.h"
#include "lkbench/Text.h"
#include "lkbench/Threads.h"

namespace lkbench {

// Opens once all users are prepared: sets the common start and the deadline. A user that could not be
// prepared opens it too, for nobody to work.
class Workload::Gate {
 public:
  Gate(int users, std::chrono::nanoseconds duration) : m_missing(users), m_duration(duration) {}

  void Arrive(const std::string& failure) { Arrive(1, failure); }
  void Arrive(int users, const std::string& failure) {
    const std::lock_guard lock(m_mutex);
    if (m_failure.empty()) m_failure = failure;
    m_missing -= users;
    if (m_missing > 0) return;
    m_begin = Clock::now();
    m_opened.notify_all();
  }
  // False when somebody failed.
  bool WaitUntilOpen() {
    std::unique_lock lock(m_mutex);
    m_opened.wait(lock, [&] { return m_missing == 0; });
    return m_failure.empty();
  }
  Clock::time_point Begin() {
    const std::lock_guard lock(m_mutex);
    return m_missing == 0 ? m_begin : Clock::now();
  }
  Clock::time_point Deadline() { return Begin() + m_duration; }
  std::string Problem() {
    const std::lock_guard lock(m_mutex);
    return m_failure;
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_opened;
  int m_missing;
  std::chrono::nanoseconds m_duration;
  Clock::time_point m_begin;
  std::string m_failure;
};

namespace {

std::uint64_t Nanoseconds(std::chrono::steady_clock::duration time) {
  return static_cast<std::uint64_t>(std::chrono::nanoseconds(time).count());
}

void NoteDatabaseTime(Execution& execution, const CTimer& timer) {
  execution.has_database = timer.GetResponse() != 0 && timer.IsEnded();
  if (execution.has_database)
    execution.database = static_cast<std::uint64_t>(timer.GetEnd() - timer.GetResponse());
  if (timer.IsEnded()) execution.rows = static_cast<std::uint64_t>(timer.GetRows());
}

// The draw is a stream of the user's own: the transactions' streams choose tables and rows.
class Choice {
 public:
  Choice(const WorkloadUser& user, std::uint32_t seed) {
    for (const auto& share : user.shares) m_total += share->weight;
    m_random.Seed(static_cast<int>(seed * 1000003u + static_cast<std::uint32_t>(user.user->Number())));
  }
  WorkloadShare& Next(WorkloadUser& user) {
    int draw = m_random.GetRandomInt(1, m_total);
    for (const auto& share : user.shares) {
      draw -= share->weight;
      if (draw <= 0) return *share;
    }
    return *user.shares.back();
  }

 private:
  CRandom m_random;
  int m_total = 0;
};

}  // namespace

Execution RunOnce(VirtualUser& user, CXact& xact) {
  Execution execution;
  const std::string name = xact.GetName().ToChar();
  xact.GetTimer().Reset();
  Guarded(user, name, [&] { return xact.PreIteration() != 0 && xact.PreExecute() != 0 ? 1 : 0; });
  const auto begin = std::chrono::steady_clock::now();
  execution.done = Guarded(user, name, [&] { return xact.Execute(); }) > 0;
  if (execution.done) execution.done = user.Driver().Commit() != 0;
  execution.latency = Nanoseconds(std::chrono::steady_clock::now() - begin);
  if (!execution.done) user.RollBack();
  NoteDatabaseTime(execution, xact.GetTimer());
  Guarded(user, name, [&] { return xact.PostExecute() + xact.PostIteration(); });
  return execution;
}

Workload::Workload(std::vector<WorkloadUser>& users, CancelSwitch& cancel, CallBreaker& breaker,
                   std::uint32_t seed)
    : m_users(users), m_cancel(cancel), m_breaker(breaker), m_seed(seed) {}

WorkloadResult Workload::Run(std::chrono::nanoseconds duration,
                             const std::function<void(const WorkloadResult&)>& tick) {
  Gate gate(static_cast<int>(m_users.size()), duration);
  {
    UserThreads threads(
        static_cast<int>(m_users.size()),
        [&](int index) { RunUser(m_users[static_cast<size_t>(index)], gate); },
        [&](int missing) { gate.Arrive(missing, "not all users could be started"); });
    threads.Wait([&] { tick(Merge(gate.Begin(), Clock::now())); });
  }
  if (!gate.Problem().empty()) throw PrepareError("workload: " + gate.Problem());
  return Merge(gate.Begin(), m_end);
}

void Workload::RunUser(WorkloadUser& user, Gate& gate) {
  Prepare(user, gate);
  if (gate.WaitUntilOpen()) Repeat(user, gate.Deadline());
  NoteEnd();
  for (const auto& share : user.shares)
    Guarded(*user.user, share->xact->GetName().ToChar(), [&] { return share->xact->PostBenchmark(); });
}

void Workload::Prepare(WorkloadUser& user, Gate& gate) {
  const CallBreaker::Scope breakable(m_breaker, user.user->Driver());
  std::string failure;
  for (const auto& share : user.shares) {
    const std::string name = share->xact->GetName().ToChar();
    if (Guarded(*user.user, name, [&] { return share->xact->PreBenchmark(); }) <= 0 && failure.empty())
      failure = "user " + std::to_string(user.user->Number()) + " failed (" + name + ", PreBenchmark)";
  }
  gate.Arrive(failure);
}

void Workload::Repeat(WorkloadUser& user, Clock::time_point deadline) {
  const CallBreaker::Scope breakable(m_breaker, user.user->Driver());
  Choice choice(user, m_seed);
  while (Clock::now() < deadline && !m_cancel.IsSet()) {
    WorkloadShare& share = choice.Next(user);
    const Execution execution = RunOnce(*user.user, *share.xact);
    if (!execution.done && m_cancel.IsSet()) return;  // broken off, not failed
    share.stats.Record(execution);
    if (execution.done || !user.user->LostSession()) continue;
    m_lost.fetch_add(1);
    return;
  }
}

void Workload::NoteEnd() {
  const std::lock_guard lock(m_end_mutex);
  m_end = std::max(m_end, Clock::now());
}

WorkloadResult Workload::Merge(Clock::time_point begin, Clock::time_point end) const {
  WorkloadResult result;
  result.users = static_cast<int>(m_users.size());
  result.lost_users = m_lost.load();
  result.elapsed = Nanoseconds(std::max(end, begin) - begin);
  result.total.name = "total";
  for (size_t i = 0; i < m_users.front().shares.size(); ++i) {
    const CXact& xact = *m_users.front().shares[i]->xact;
    XactTotals totals;
    totals.name = xact.GetName().ToChar();
    totals.class_name = wxString(xact.GetClassInfo()->GetClassName()).ToStdString();
    totals.id = xact.GetXactID();
    for (const WorkloadUser& user : m_users) AddTo(totals, user.shares[i]->stats);
    result.total.Add(totals);
    result.xacts.push_back(std::move(totals));
  }
  return result;
}

}  // namespace lkbench

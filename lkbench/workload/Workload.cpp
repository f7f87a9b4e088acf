// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Workload.h"

#include <algorithm>
#include <ctime>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kInterval{1};
constexpr std::chrono::milliseconds kSnap{500};  // a cut so near to the end of a part is made there
constexpr std::chrono::milliseconds kBreakEvery{100};
constexpr std::chrono::seconds kBreakCallEvery{1};     // leaves a broken call the time to roll back
constexpr std::chrono::milliseconds kWatchEvery{100};  // for a cancel

std::uint64_t Between(TimePoint begin, TimePoint end) {
  return static_cast<std::uint64_t>(std::chrono::nanoseconds(std::max(begin, end) - begin).count());
}

std::vector<XactTotals> NamesOf(const WorkloadUser& user) {
  std::vector<XactTotals> names;
  for (const auto& share : user.shares) {
    XactTotals& xact = names.emplace_back();
    xact.name = share->xact->GetName().ToChar();
    xact.class_name = wxString(share->xact->GetClassInfo()->GetClassName()).ToStdString();
    xact.id = share->xact->GetXactID();
  }
  return names;
}

std::uint64_t ProcessorTime() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<std::uint64_t>(used.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(used.tv_nsec);
}

bool IsNear(TimePoint moment, TimePoint end) { return moment > end - kSnap && moment < end + kSnap; }

}  // namespace

Workload::Workload(std::vector<WorkloadUser>& users, std::vector<Phase> phases, RunContext& context,
                   Patience patience)
    : m_users(users),
      m_phases(std::move(phases)),
      m_context(context),
      m_patience(patience),
      m_names(NamesOf(users.front())),
      m_conductor(static_cast<int>(users.size())),
      m_calls_broken(users.size()) {
  for (size_t i = 0; i < users.size(); ++i)
    m_works.push_back(std::make_unique<UserWork>(users[i], static_cast<int>(i), context));
}

RunRecord Workload::Run(const Tick& tick, const PhaseEnd& phase_end) {
  m_threads = std::make_unique<UserThreads>(
      static_cast<int>(m_users.size()), [this](int index) { RunUser(index); },
      [this](int missing) { m_conductor.Miss(missing, "not all users could be started"); });
  const std::string problem = Prepare();
  const TimePoint origin = Clock::now();
  m_context.notes.SetOrigin(origin);
  TimePoint begin = origin;
  for (size_t i = 0; problem.empty() && i < m_phases.size(); ++i) {
    if (m_context.cancel.IsSet() || !m_conductor.HasUsers()) break;
    RunPhase(i, begin, tick);
    if (phase_end) phase_end(m_record.phases.back());
    begin = Clock::now();
  }
  m_conductor.Finish();
  WaitForThreads();
  if (!problem.empty()) throw PrepareError("workload: " + problem);
  return Finished(origin);
}

// Why there will be no work; empty: all are prepared.
std::string Workload::Prepare() {
  while (!m_conductor.WaitUntilPrepared(Clock::now() + kWatchEvery))
    Enforce(m_conductor.Unprepared(), PhaseRun::kNever);
  return m_conductor.Failure();
}

void Workload::RunUser(int index) {
  UserWork& work = *m_works[static_cast<size_t>(index)];
  m_conductor.Prepared(index, work.Prepare());
  for (size_t number = 0; number < m_phases.size(); ++number) {
    const auto phase = m_conductor.WaitForPhase(index, number);
    if (phase == nullptr) break;
    if (index >= phase->run.Settings().users) continue;
    if (!work.RunPhase(*phase)) m_conductor.Leave(index);
    m_conductor.EndPhase(index);
  }
  work.Finish();
  m_conductor.Leave(index);
}

void Workload::RunPhase(size_t number, TimePoint begin, const Tick& tick) {
  const Phase& settings = m_phases[number];
  const auto phase = std::make_shared<RunningPhase>(number, settings, begin, m_context, m_names);
  PhaseRecord& record = m_record.phases.emplace_back();
  record.settings = settings;
  record.begin = m_context.notes.Offset(begin);
  record.warm_up_end = m_context.notes.Offset(phase->run.WarmUpEnd());
  m_context.notes.NoteEvent(EventKind::kPhase, begin, begin, 0, settings.name);
  m_cutter.BeginPhase();
  m_last_cut = begin;
  m_processor.begin = m_processor.warm_up_end = ProcessorTime();
  m_conductor.Begin(phase);
  Conduct(*phase, tick);
  Cut(*phase, std::max(m_conductor.LastEnd(), m_last_cut), tick);
  Close(*phase);
}

void Workload::Conduct(RunningPhase& phase, const Tick& tick) {
  const TimePoint warm_up_end = phase.run.WarmUpEnd();
  TimePoint next = NextCut(phase.run);
  while (!m_conductor.WaitForUsers(std::min(next, Clock::now() + kWatchEvery))) {
    Enforce(m_conductor.AtWork(), phase.run.Deadline());
    if (Clock::now() < next) continue;
    if (next == warm_up_end) {
      m_processor.warm_up_end = ProcessorTime();
      m_context.notes.NoteEvent(EventKind::kWarmUpEnd, next, next, 0, phase.run.Settings().name);
    }
    Cut(phase, next, tick);
    next = NextCut(phase.run);
  }
}

// The next whole second of the phase, or the end of its warm-up. Where a part ends about then, its end.
TimePoint Workload::NextCut(const PhaseRun& run) const {
  const TimePoint end = m_last_cut < run.WarmUpEnd() ? run.WarmUpEnd() : run.Deadline();
  TimePoint next = run.Begin() + ((m_last_cut - run.Begin()) / kInterval + 1) * kInterval;
  if (end == PhaseRun::kNever) return next;
  if (end == run.WarmUpEnd()) return IsNear(next, end) || next > end ? end : next;
  while (IsNear(next, end)) next += kInterval;
  return next;
}

void Workload::Cut(RunningPhase& phase, TimePoint now, const Tick& tick) {
  PhaseRecord& record = m_record.phases.back();
  Interval interval;
  interval.begin = m_context.notes.Offset(m_last_cut);
  interval.end = m_context.notes.Offset(now);
  interval.phase = phase.number;
  interval.users = m_context.active;
  interval.backlog = phase.run.Backlog(now);
  const bool in_warm_up = m_last_cut < phase.run.WarmUpEnd();
  if (!in_warm_up) record.most_backlog = std::max(record.most_backlog, interval.backlog);
  m_last_cut = now;
  const TimePoint end = phase.run.Deadline();
  const std::uint64_t ends = end == PhaseRun::kNever ? 0 : m_context.notes.Offset(end);
  for (const Interval& each : m_cutter.Cut(phase.stats, interval, in_warm_up)) {
    m_record.intervals.Append(each);
    tick({each, record, m_cutter.SoFar(each.warm_up), m_phases.size(), ends});
  }
}

// Sees to it that nobody waits for a call for ever. `users` are those that are waited for.
void Workload::Enforce(const std::vector<int>& users, TimePoint deadline) {
  const TimePoint now = Clock::now();
  EnforceEnd(users, LimitOf(deadline, now), now);
  if (m_patience.call.count() > 0)
    for (const int index : users) EnforceCall(index, now);
}

// The moment by which the users should have ended: the deadline, or when the run was cancelled.
TimePoint Workload::LimitOf(TimePoint deadline, TimePoint now) {
  if (!m_context.cancel.IsSet()) return deadline;
  if (m_cancelled == TimePoint{}) {
    m_cancelled = now;
    m_context.cancel.Wake();  // a transaction may have set the flag
  }
  return std::min(deadline, m_cancelled);
}

void Workload::EnforceEnd(const std::vector<int>& users, TimePoint limit, TimePoint now) {
  if (limit == PhaseRun::kNever || now < limit + m_patience.grace) return;
  if (now >= limit + m_patience.grace + m_patience.give_up) {
    for (const int index : users) GiveUp(index);
    return;
  }
  if (now < m_broken + kBreakEvery) return;
  m_broken = now;
  m_context.breaker.BreakAll();
}

void Workload::EnforceCall(int index, TimePoint now) {
  const auto place = static_cast<size_t>(index);
  const TimePoint since = m_works[place]->InCallSince();
  if (since == TimePoint{} || now < since + m_patience.call) return;
  if (now >= since + m_patience.call + m_patience.give_up) return GiveUp(index);
  if (now < m_calls_broken[place] + kBreakCallEvery) return;
  m_calls_broken[place] = now;
  m_users[place].user->Driver().Cancel();
}

void Workload::GiveUp(int index) {
  const int number = m_users[static_cast<size_t>(index)].user->Number();
  if (!m_works[static_cast<size_t>(index)]->GiveUp()) return;
  m_conductor.Leave(index,
                    "user " + std::to_string(number) + " has a call that does not come back (PreBenchmark)");
  ++m_record.given_up_users;
  const TimePoint now = Clock::now();
  m_context.notes.NoteEvent(EventKind::kUserGivenUp, now, now, number, "its call does not come back");
}

void Workload::Close(RunningPhase& phase) {
  PhaseRecord& record = m_record.phases.back();
  const TimePoint end = m_conductor.LastEnd();
  const std::uint64_t processor = ProcessorTime();
  if (end < phase.run.WarmUpEnd()) m_processor.warm_up_end = processor;
  const TimePoint warm_up_end = std::min(phase.run.WarmUpEnd(), end);
  record.warm_up_end = m_context.notes.Offset(warm_up_end);
  record.end = m_context.notes.Offset(end);
  record.warm_up = phase.stats.WarmUp();
  record.warm_up.elapsed = Between(phase.run.Begin(), warm_up_end);
  record.warm_up.processor = m_processor.warm_up_end - m_processor.begin;
  record.measured = phase.stats.Measured();
  record.measured.tables = phase.tables.Totals(m_context.columns);
  record.measured.elapsed = Between(warm_up_end, end);
  record.measured.processor = processor - m_processor.warm_up_end;
  record.user_executions = phase.stats.UserExecutions();
  record.forgotten = phase.run.Forgotten();
}

// Where one was given up, the others may find no answer either, while they clean up.
void Workload::WaitForThreads() {
  const TimePoint deadline = m_record.given_up_users > 0 ? Clock::now() : PhaseRun::kNever;
  while (!m_conductor.WaitUntilLeft(Clock::now() + kWatchEvery)) Enforce(m_conductor.Users(), deadline);
  if (m_record.given_up_users == 0) m_threads->Wait({});
}

RunRecord Workload::Finished(TimePoint origin) {
  RunRecord& record = m_record;
  record.interrupted = m_context.cancel.IsSet();
  record.lost_users = m_context.lost;
  if (record.interrupted) {
    const TimePoint when = m_cancelled == TimePoint{} ? m_conductor.LastEnd() : m_cancelled;
    m_context.notes.NoteEvent(EventKind::kInterrupted, when, when, 0, "the run was interrupted");
  }
  m_context.notes.Write(record);
  record.elapsed = Between(origin, m_conductor.LastEnd());
  record.measured.total.name = "total";
  record.measured.xacts = m_names;
  for (const PhaseRecord& phase : record.phases) {
    record.measured.Add(phase.measured);
    record.users = std::max(record.users, phase.settings.users);
  }
  return record;
}

}  // namespace lkbench

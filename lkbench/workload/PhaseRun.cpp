// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PhaseRun.h"

#include <algorithm>

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

TimePoint DeadlineOf(const Phase& phase, TimePoint warm_up_end) {
  return phase.duration.count() == 0 ? PhaseRun::kNever : warm_up_end + phase.duration;
}

}  // namespace

PhaseRun::PhaseRun(const Phase& phase, TimePoint begin, std::uint32_t seed, CancelSwitch& cancel)
    : m_phase(phase),
      m_cancel(cancel),
      m_begin(begin),
      m_warm_up_end(begin + phase.warm_up),
      m_deadline(DeadlineOf(phase, m_warm_up_end)) {
  if (phase.rate > 0) m_schedule.emplace(phase, m_begin, m_warm_up_end, seed);
}

std::optional<PhaseRun::Slot> PhaseRun::Next() {
  const TimePoint now = Clock::now();
  if (IsOver(now)) return std::nullopt;
  Slot slot{now, false};
  if (m_schedule) {
    slot = {m_schedule->Take(now), true};
    if (slot.intended >= m_deadline || !Wait(slot.intended)) return std::nullopt;
  }
  if (!IsWarmUp(slot) && !TakeTicket()) return std::nullopt;
  return slot;
}

bool PhaseRun::TakeTicket() {
  if (m_phase.count == 0) return true;
  const std::uint64_t taken = m_tickets.fetch_add(1);
  if (taken + 1 == m_phase.count) {
    m_is_used_up = true;
    m_cancel.Wake();
  }
  return taken < m_phase.count;
}

bool PhaseRun::IsOver(TimePoint now) const { return now >= m_deadline || m_is_used_up || m_cancel.IsSet(); }

bool PhaseRun::Wait(TimePoint until) const {
  TimePoint now = Clock::now();
  if (now < until) {
    m_cancel.SleepUntil(std::min(until, m_deadline), [this] { return m_is_used_up.load(); });
    now = Clock::now();
  }
  return !IsOver(now);
}

TimePoint PhaseRun::StartOf(int index) const { return m_begin + m_phase.ramp * index / m_phase.users; }

}  // namespace lkbench

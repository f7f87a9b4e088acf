// SPDX-License-Identifier: Apache-2.0
// A phase while it runs: hands out the executions to its users, each with its intended start, until the time
// is over, the count is reached or the run is cancelled. Any thread may use it.
//
// A user that waits (for its start by the ramp, the intended start of its next execution, the end of its
// think time, the next attempt to open its session) sleeps until that moment or the deadline, whichever is
// first, and does not look about meanwhile. It is woken by whoever ends the phase before: the user that takes
// the last execution of the count, or who sets the cancel switch. A cancel that a transaction sets past the
// switch is passed on by the thread that conducts the users.
#pragma once

#include <atomic>
#include <optional>

#include "lkbench/Cancel.h"
#include "lkbench/workload/Schedule.h"

namespace lkbench {

class PhaseRun {
 public:
  static constexpr TimePoint kNever = TimePoint::max();

  PhaseRun(const Phase& phase, TimePoint begin, std::uint32_t seed, CancelSwitch& cancel);

  const Phase& Settings() const { return m_phase; }
  TimePoint Begin() const { return m_begin; }
  TimePoint WarmUpEnd() const { return m_warm_up_end; }
  TimePoint Deadline() const { return m_deadline; }  // kNever when only the count ends it

  struct Slot {
    TimePoint intended;
    bool is_scheduled = false;  // by a rate: response and service time differ
  };
  // The user's next execution, once it is time for it; nothing when there is none left.
  std::optional<Slot> Next();
  bool IsWarmUp(const Slot& slot) const { return slot.intended < m_warm_up_end; }

  // Sleeps until then, or shorter when the phase ends before. Whether the phase goes on.
  bool Wait(TimePoint until) const;
  bool IsOver(TimePoint now) const;
  TimePoint StartOf(int index) const;  // of the user at `index`, by the ramp

  std::uint64_t Backlog(TimePoint now) { return m_schedule ? m_schedule->Backlog(now) : 0; }
  std::uint64_t Forgotten() const { return m_schedule ? m_schedule->Forgotten() : 0; }

 private:
  bool TakeTicket();

  const Phase& m_phase;
  CancelSwitch& m_cancel;  // its sleepers are this phase's
  TimePoint m_begin;
  TimePoint m_warm_up_end;
  TimePoint m_deadline;
  std::optional<Schedule> m_schedule;
  std::atomic<std::uint64_t> m_tickets{0};  // taken of the count
  std::atomic<bool> m_is_used_up{false};
};

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// When the executions of a phase with a rate are due. Users take the next one each; who takes an overdue one
// is behind schedule. While users start one after the other (ramp), the rate rises evenly from 0. A schedule
// begins anew when the warm-up ends: what was overdue then is forgotten, so a slow warm-up does not spoil
// what is measured after it. Any thread may take; one thread asks for the backlog.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

#include "core/Random.h"
#include "lkbench/workload/Phase.h"

namespace lkbench {

using TimePoint = std::chrono::steady_clock::time_point;

// The moments at which executions are due, one after the other, from `begin` on.
class Arrivals {
 public:
  Arrivals(const Phase& phase, TimePoint origin, TimePoint begin, std::uint32_t seed);
  TimePoint Peek() const { return m_next; }
  void Advance();

 private:
  double ExpectedBy(double seconds) const;  // how many are due by then, on average
  double TimeOf(double number) const;       // its inverse
  void Place();

  double m_rate;
  double m_ramp;
  bool m_random;
  CXoshiro256 m_source;
  TimePoint m_origin;
  double m_number;  // of the next one, counted from the origin; with Poisson arrivals not whole
  TimePoint m_next;
};

class Schedule {
 public:
  // REQUIRES: phase.rate > 0. The ramp is counted from `begin`.
  Schedule(const Phase& phase, TimePoint begin, TimePoint warm_up_end, std::uint32_t seed);

  TimePoint Take(TimePoint now);

  // How many are due at `now` and not taken. The moments never go back.
  std::uint64_t Backlog(TimePoint now);
  std::uint64_t Forgotten() const { return m_forgotten; }  // known once Backlog was asked after the warm-up

 private:
  // The part before or after the end of the warm-up: what was taken of it and what is due.
  struct Section {
    Arrivals given;
    Arrivals due;
    std::uint64_t taken = 0;
    std::uint64_t due_count = 0;

    explicit Section(const Arrivals& arrivals) : given(arrivals), due(arrivals) {}
    void CountDue(TimePoint end);  // those before `end`
    std::uint64_t Overdue() const { return due_count > taken ? due_count - taken : 0; }
  };

  std::mutex m_mutex;
  TimePoint m_warm_up_end;
  Section m_warm_up;
  Section m_measured;
  bool m_warm_up_is_over = false;
  std::uint64_t m_forgotten = 0;
};

}  // namespace lkbench

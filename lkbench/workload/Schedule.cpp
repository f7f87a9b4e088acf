// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Schedule.h"

#include <cmath>

namespace lkbench {
namespace {

double Seconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

std::chrono::steady_clock::duration FromSeconds(double seconds) {
  return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
      std::chrono::duration<double>(seconds));
}

}  // namespace

Arrivals::Arrivals(const Phase& phase, TimePoint origin, TimePoint begin, std::uint32_t seed)
    : m_rate(phase.rate),
      m_ramp(Seconds(phase.ramp)),
      m_random(phase.arrival == Arrival::kPoisson),
      m_source(seed),
      m_origin(origin),
      m_number(ExpectedBy(Seconds(begin - origin))) {
  if (!m_random) m_number = std::ceil(m_number);
  if (m_random) m_number -= std::log1p(-m_source.NextDouble());
  Place();
}

void Arrivals::Advance() {
  m_number += m_random ? -std::log1p(-m_source.NextDouble()) : 1;
  Place();
}

void Arrivals::Place() { m_next = m_origin + FromSeconds(TimeOf(m_number)); }

double Arrivals::ExpectedBy(double seconds) const {
  return seconds < m_ramp ? m_rate * seconds * seconds / (2 * m_ramp) : m_rate * (seconds - m_ramp / 2);
}

double Arrivals::TimeOf(double number) const {
  return number < m_rate * m_ramp / 2 ? std::sqrt(2 * m_ramp * number / m_rate)
                                      : m_ramp / 2 + number / m_rate;
}

Schedule::Schedule(const Phase& phase, TimePoint begin, TimePoint warm_up_end, std::uint32_t seed)
    : m_warm_up_end(warm_up_end),
      m_warm_up(Arrivals(phase, begin, begin, seed)),
      m_measured(Arrivals(phase, begin, warm_up_end, seed + 1)),
      m_warm_up_is_over(warm_up_end <= begin) {}

TimePoint Schedule::Take(TimePoint now) {
  const std::lock_guard lock(m_mutex);
  const bool warms_up = !m_warm_up_is_over && now < m_warm_up_end && m_warm_up.given.Peek() < m_warm_up_end;
  Section& section = warms_up ? m_warm_up : m_measured;
  m_warm_up_is_over = !warms_up;
  const TimePoint due = section.given.Peek();
  section.given.Advance();
  ++section.taken;
  return due;
}

std::uint64_t Schedule::Backlog(TimePoint now) {
  const std::lock_guard lock(m_mutex);
  if (now < m_warm_up_end) {
    m_warm_up.CountDue(now);
    return m_warm_up.Overdue();
  }
  m_warm_up.CountDue(m_warm_up_end);
  m_forgotten = m_warm_up.Overdue();
  m_measured.CountDue(now);
  return m_measured.Overdue();
}

void Schedule::Section::CountDue(TimePoint end) {
  for (; due.Peek() < end; due.Advance()) ++due_count;
}

}  // namespace lkbench

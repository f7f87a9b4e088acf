// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Conductor.h"

#include <algorithm>

namespace lkbench {

Conductor::Conductor(int users) {
  for (int index = 0; index < users; ++index) m_users.insert(index);
  m_unprepared = m_users;
}

void Conductor::Prepared(int index, const std::string& failure) {
  const std::lock_guard lock(m_mutex);
  EndPreparation(index, failure);
}

void Conductor::Miss(int users, const std::string& failure) {
  const std::lock_guard lock(m_mutex);
  const int all = static_cast<int>(m_users.size());
  for (int index = all - users; index < all; ++index) {
    EndPreparation(index, failure);
    m_users.erase(index);
  }
}

void Conductor::EndPreparation(int index, const std::string& failure) {
  if (m_unprepared.erase(index) > 0 && m_failure.empty()) m_failure = failure;
  m_changed.notify_all();
}

bool Conductor::WaitUntilPrepared(TimePoint moment) {
  std::unique_lock lock(m_mutex);
  return m_changed.wait_until(lock, moment, [&] { return m_unprepared.empty(); });
}

std::vector<int> Conductor::Unprepared() const {
  const std::lock_guard lock(m_mutex);
  return {m_unprepared.begin(), m_unprepared.end()};
}

std::string Conductor::Failure() const {
  const std::lock_guard lock(m_mutex);
  return m_failure;
}

std::shared_ptr<RunningPhase> Conductor::WaitForPhase(int index, size_t number) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [&] { return m_is_over || (m_phase != nullptr && m_phase->number == number); });
  return m_is_over || !m_users.contains(index) ? nullptr : m_phase;
}

void Conductor::EndPhase(int index) {
  const std::lock_guard lock(m_mutex);
  End(index);
}

void Conductor::Leave(int index, const std::string& failure) {
  const std::lock_guard lock(m_mutex);
  EndPreparation(index, failure);
  m_users.erase(index);
  End(index);
}

void Conductor::End(int index) {
  if (m_at_work.erase(index) > 0) m_last_end = std::chrono::steady_clock::now();
  m_changed.notify_all();
}

void Conductor::Begin(std::shared_ptr<RunningPhase> phase) {
  const std::lock_guard lock(m_mutex);
  m_at_work = m_users;
  std::erase_if(m_at_work, [&](int index) { return index >= phase->run.Settings().users; });
  m_last_end = phase->run.Begin();
  m_phase = std::move(phase);
  m_changed.notify_all();
}

bool Conductor::WaitForUsers(TimePoint moment) {
  std::unique_lock lock(m_mutex);
  return m_changed.wait_until(lock, moment, [&] { return m_at_work.empty(); });
}

std::vector<int> Conductor::AtWork() const {
  const std::lock_guard lock(m_mutex);
  return {m_at_work.begin(), m_at_work.end()};
}

bool Conductor::HasUsers() const {
  const std::lock_guard lock(m_mutex);
  return !m_users.empty();
}

bool Conductor::WaitUntilLeft(TimePoint moment) {
  std::unique_lock lock(m_mutex);
  return m_changed.wait_until(lock, moment, [&] { return m_users.empty(); });
}

std::vector<int> Conductor::Users() const {
  const std::lock_guard lock(m_mutex);
  return {m_users.begin(), m_users.end()};
}

TimePoint Conductor::LastEnd() const {
  const std::lock_guard lock(m_mutex);
  return m_last_end;
}

void Conductor::Finish() {
  const std::lock_guard lock(m_mutex);
  m_is_over = true;
  m_changed.notify_all();
}

}  // namespace lkbench

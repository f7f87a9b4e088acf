// SPDX-License-Identifier: Apache-2.0
// A meeting point for a number of threads that any of them can leave for good. Reusable: each time all that
// are left have arrived, all go on.
#pragma once

#include <condition_variable>
#include <mutex>

namespace lkbench {

class Barrier {
 public:
  explicit Barrier(int parties) : m_parties(parties) {}

  void Arrive() {
    std::unique_lock lock(m_mutex);
    const int meeting = m_meeting;
    ++m_arrived;
    OpenWhenComplete();
    m_opened.wait(lock, [&] { return m_meeting != meeting; });
  }
  // This party is not waited for any more.
  void Leave() {
    const std::lock_guard lock(m_mutex);
    --m_parties;
    OpenWhenComplete();
  }

 private:
  void OpenWhenComplete() {
    if (m_arrived < m_parties) return;
    m_arrived = 0;
    ++m_meeting;
    m_opened.notify_all();
  }

  std::mutex m_mutex;
  std::condition_variable m_opened;
  int m_parties;
  int m_arrived = 0;
  int m_meeting = 0;
};

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Threads.h"

#include <chrono>
#include <system_error>

#include "lkbench/Failure.h"
#include "lkbench/HostSetUp.h"
#include "lkbench/Text.h"

namespace lkbench {

UserThreads::UserThreads(int count, const std::function<void(int)>& body,
                         const std::function<void(int)>& missing)
    : m_running(count) {
  try {
    for (int index = 0; index < count; ++index)
      m_threads.emplace_back([this, index, body] { Run(index, body); });
  } catch (const std::system_error&) {
    const std::lock_guard lock(m_mutex);
    m_missing = count - static_cast<int>(m_threads.size());
    m_running -= m_missing;
  }
  if (m_missing > 0) missing(m_missing);
}

UserThreads::~UserThreads() {
  for (std::thread& thread : m_threads) thread.join();
}

void UserThreads::Run(int index, const std::function<void(int)>& body) {
  const ThreadLog log;
  body(index);
  const std::lock_guard lock(m_mutex);
  --m_running;
  m_ended.notify_all();
}

bool UserThreads::WaitForAllBut(int left, std::chrono::steady_clock::time_point moment) {
  std::unique_lock lock(m_mutex);
  return m_ended.wait_until(lock, moment, [&] { return m_running <= left; });
}

void UserThreads::Wait(const std::function<void()>& tick) {
  std::unique_lock lock(m_mutex);
  auto next = std::chrono::steady_clock::now();
  while (m_running > 0) {
    next += std::chrono::seconds(1);
    if (m_ended.wait_until(lock, next, [&] { return m_running == 0; }) || !tick) continue;
    lock.unlock();
    tick();
    lock.lock();
  }
  if (m_missing > 0)
    throw PrepareError("the system gives no thread for " +
                       Plural(static_cast<std::uint64_t>(m_missing), "user") +
                       ": use fewer users or raise the limit (ulimit -u)");
}

}  // namespace lkbench

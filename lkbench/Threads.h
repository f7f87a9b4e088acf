// SPDX-License-Identifier: Apache-2.0
// The threads of a set of users: started together, waited for with a tick a second. The starting thread owns
// the object.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace lkbench {

class UserThreads {
 public:
  // Runs `body(index)` on `count` threads. When the system gives fewer, `missing(n)` is called with the
  // number of those that will never run, and Wait throws PrepareError. `body` throws nothing.
  UserThreads(int count, const std::function<void(int)>& body, const std::function<void(int)>& missing);
  ~UserThreads();
  UserThreads(const UserThreads&) = delete;
  UserThreads& operator=(const UserThreads&) = delete;

  // Returns when no more than `left` are still running, or at that moment: whether they are that few.
  bool WaitForAllBut(int left, std::chrono::steady_clock::time_point moment);
  // Returns when all have ended; calls `tick` every second meanwhile, when there is one.
  void Wait(const std::function<void()>& tick);

 private:
  void Run(int index, const std::function<void(int)>& body);

  std::mutex m_mutex;
  std::condition_variable m_ended;
  int m_running = 0;
  int m_missing = 0;
  std::vector<std::thread> m_threads;
};

}  // namespace lkbench

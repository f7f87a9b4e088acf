// SPDX-License-Identifier: Apache-2.0
// A Deadline bounds a wait. What is waited for here (a lock, a socket, a process of somebody else) has no
// common way to be told of, so it is looked at every few milliseconds.
#pragma once

#include <chrono>
#include <string>
#include <thread>

namespace localdb {

class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds patience)
      : m_patience(patience), m_end(Clock::now() + patience) {}
  bool Passed() const { return Clock::now() >= m_end; }

  // "120 s", for messages.
  std::string Text() const {
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(m_patience).count()) + " s";
  }

  // Waits until the condition holds; false when the deadline passed first. It is asked at least once.
  template <class Condition>
  bool WaitFor(Condition condition) const {
    while (!condition()) {
      if (Passed()) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
  }

 private:
  using Clock = std::chrono::steady_clock;
  std::chrono::milliseconds m_patience;
  Clock::time_point m_end;
};

}  // namespace localdb

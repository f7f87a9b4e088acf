// SPDX-License-Identifier: Apache-2.0
// How a run is stopped before its end. CancelSwitch is the flag that every transaction copy watches; a failed
// step sets it, and so does a signal. Users that have nothing to do sleep at it. CallBreaker knows the
// sessions that may be inside a database call. SignalWatch is the one thread that takes SIGINT and SIGTERM:
// the first signal sets the switch and, after a grace time, breaks the calls that still run; the second ends
// the process at once. Any thread may use them.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <set>
#include <thread>

#include "db/DriverBase.h"
#include "lkbench/Console.h"

namespace lkbench {

class CancelSwitch {
 public:
  void Set();  // wakes who sleeps; not in a signal handler
  void SetBySignal(int signal);
  bool IsSet() const { return m_flag.load(std::memory_order_relaxed); }
  int Signal() const { return m_signal.load(); }  // 0: none came
  std::chrono::steady_clock::time_point SignalledAt() const;
  // A transaction that sets it (CXact::RequestCancel) wakes nobody: whoever notices it calls Wake.
  std::atomic<bool>* Flag() { return &m_flag; }

  // Sleeps until the moment, or until cancelled, or until `is_over` is true. Whoever makes it true calls Wake
  // afterwards: a sleeper looks and falls asleep under the lock that Wake takes, so it either sees what has
  // become true or is woken. `is_over` only looks, at what any thread may read.
  template <class Condition>
  void SleepUntil(std::chrono::steady_clock::time_point moment, const Condition& is_over) {
    std::unique_lock lock(m_mutex);
    m_wake.wait_until(lock, moment, [&] { return IsSet() || is_over(); });
  }
  void Wake();

 private:
  std::mutex m_mutex;  // of the sleepers
  std::condition_variable m_wake;
  std::atomic<bool> m_flag{false};
  std::atomic<int> m_signal{0};
  std::atomic<std::chrono::steady_clock::rep> m_signalled_at{0};  // set before the signal
};

class CallBreaker {
 public:
  // Marks a session as breakable while it lives: the user's thread may be inside a call that is worth ending.
  class Scope {
   public:
    Scope(CallBreaker& breaker, CDriverBase& driver);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    CallBreaker& m_breaker;
    CDriverBase& m_driver;
  };
  void BreakAll();

 private:
  std::mutex m_mutex;
  std::set<CDriverBase*> m_drivers;
};

class SignalWatch {
 public:
  // Blocks the two signals in this thread, and so in all that it starts, until the object goes: after that a
  // signal ends the process as usual.
  SignalWatch(CancelSwitch& cancel, CallBreaker& breaker, Console& console);
  ~SignalWatch();
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;

 private:
  void Watch();

  CancelSwitch& m_cancel;
  CallBreaker& m_breaker;
  Console& m_console;
  sigset_t m_before{};
  int m_signals;  // signalfd
  int m_stop;     // eventfd: the watch ends
  std::thread m_thread;
};

}  // namespace lkbench

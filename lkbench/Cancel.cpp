// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Cancel.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

#include "lkbench/Failure.h"

namespace lkbench {
namespace {

constexpr int kGraceMilliseconds = 1000;
constexpr int kBreakEveryMilliseconds = 100;
constexpr int kForever = -1;

sigset_t WatchedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

int OpenSignals(sigset_t& before) {
  const sigset_t signals = WatchedSignals();
  pthread_sigmask(SIG_BLOCK, &signals, &before);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

int ReadSignal(int file) {
  signalfd_siginfo info{};
  return read(file, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : SIGTERM;
}

}  // namespace

void CancelSwitch::Set() {
  m_flag.store(true, std::memory_order_relaxed);
  Wake();
}

void CancelSwitch::Wake() {
  { const std::lock_guard lock(m_mutex); }
  m_wake.notify_all();
}

std::chrono::steady_clock::time_point CancelSwitch::SignalledAt() const {
  using Clock = std::chrono::steady_clock;
  return Clock::time_point(Clock::duration(m_signalled_at.load()));
}

void CancelSwitch::SetBySignal(int signal) {
  m_signalled_at = std::chrono::steady_clock::now().time_since_epoch().count();
  m_signal.store(signal);
  Set();
}

CallBreaker::Scope::Scope(CallBreaker& breaker, CDriverBase& driver) : m_breaker(breaker), m_driver(driver) {
  const std::lock_guard lock(m_breaker.m_mutex);
  m_breaker.m_drivers.insert(&m_driver);
}

CallBreaker::Scope::~Scope() {
  const std::lock_guard lock(m_breaker.m_mutex);
  m_breaker.m_drivers.erase(&m_driver);
}

void CallBreaker::BreakAll() {
  const std::lock_guard lock(m_mutex);
  for (CDriverBase* driver : m_drivers) driver->Cancel();
}

SignalWatch::SignalWatch(CancelSwitch& cancel, CallBreaker& breaker, Console& console)
    : m_cancel(cancel),
      m_breaker(breaker),
      m_console(console),
      m_signals(OpenSignals(m_before)),
      m_stop(eventfd(0, EFD_CLOEXEC)),
      m_thread([this] { Watch(); }) {}

SignalWatch::~SignalWatch() {
  eventfd_write(m_stop, 1);
  m_thread.join();
  close(m_stop);
  close(m_signals);
  pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void SignalWatch::Watch() {
  pollfd files[] = {{m_signals, POLLIN, 0}, {m_stop, POLLIN, 0}};
  int wait = kForever;
  while (true) {
    const int ready = poll(files, 2, wait);
    if (ready < 0) continue;
    if ((files[1].revents & POLLIN) != 0) return;
    if (ready == 0) {
      m_breaker.BreakAll();
      wait = kBreakEveryMilliseconds;
      continue;
    }
    const int signal = ReadSignal(m_signals);
    if (m_cancel.Signal() != 0) {
      m_console.EraseStatusAtOnce();
      _exit(signal == SIGINT ? kInterrupted : kTerminated);
    }
    m_console.Problem("stopping; once more to quit at once");
    m_cancel.SetBySignal(signal);
    wait = kGraceMilliseconds;
  }
}

}  // namespace lkbench

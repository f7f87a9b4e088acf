// SPDX-License-Identifier: Apache-2.0
#include "lkbench/VerbThread.h"

#include <algorithm>
#include <exception>
#include <future>
#include <memory>
#include <thread>

#include "lkbench/HostSetUp.h"
#include "lkbench/Text.h"
#include "lkbench/Threads.h"
#include "lkbench/options/TomlText.h"

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLookEvery{50};

std::string HasBeen(const CallWatch::Call& call) { return call.who + " has been " + call.doing; }

std::string GivenUpText(const std::string& verb, const CallWatch::Call& call) {
  const std::chrono::duration<double> elapsed = Clock::now() - call.since;
  return verb + ": " + HasBeen(call) + " for " + Fixed(elapsed.count(), 1) +
         " s, and the call does not come back: given up";
}

// What began before it is given up; TimePoint{}: nothing is.
Clock::time_point LastBegin(const Patience& patience, const CancelSwitch& cancel, Clock::time_point now) {
  if (cancel.Signal() != 0 && now >= cancel.SignalledAt() + patience.Whole()) return now;
  return patience.call.count() > 0 ? now - patience.call - patience.give_up : Clock::time_point{};
}

// Why all is given up; empty: nothing hangs.
std::string LookAfter(CallWatch& calls, const VerbLimits& limits, const CancelSwitch& cancel,
                      Console& console) {
  const Clock::time_point now = Clock::now();
  const Patience& patience = limits.patience;
  if (patience.call.count() > 0)
    for (const CallWatch::Call& call : calls.BreakBegunBefore(now - patience.call))
      console.Problem(limits.verb + ": " + HasBeen(call) + " for longer than call_timeout (" +
                      DurationText(patience.call) + "): the call is broken off");
  const auto hung = calls.GiveUpBegunBefore(LastBegin(patience, cancel, now));
  if (!hung) return {};
  return (cancel.Signal() != 0 ? "interrupted: " : "") + GivenUpText(limits.verb, *hung);
}

}  // namespace

std::string RunPatiently(const std::function<void()>& verb, const VerbLimits& limits, CallWatch& calls,
                         const CancelSwitch& cancel, Console& console) {
  const auto thrown = std::make_shared<std::exception_ptr>();
  const auto body = [verb, thrown](int) {
    try {
      verb();
    } catch (...) {
      *thrown = std::current_exception();
    }
  };
  auto thread = std::make_unique<UserThreads>(1, body, [](int) {});
  while (!thread->WaitForAllBut(0, Clock::now() + kLookEvery)) {
    std::string problem = LookAfter(calls, limits, cancel, console);
    if (problem.empty()) continue;
    static_cast<void>(thread.release());  // kept: its end would wait for the call
    return problem;
  }
  thread->Wait({});
  if (*thrown) std::rethrow_exception(*thrown);
  return {};
}

bool EndsWithin(std::chrono::nanoseconds patience, std::function<void()> work) {
  auto ended = std::make_shared<std::promise<void>>();
  const std::future<void> end = ended->get_future();
  std::thread thread([work = std::move(work), ended]() mutable {
    {
      const ThreadLog log;
      work();
      work = {};  // what it owns goes here, too
    }
    ended->set_value();
  });
  const bool has_ended = end.wait_for(patience) == std::future_status::ready;
  has_ended ? thread.join() : thread.detach();
  return has_ended;
}

}  // namespace lkbench

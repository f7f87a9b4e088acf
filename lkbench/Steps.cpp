// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Steps.h"

#include <array>
#include <mutex>

#include "lkbench/Barrier.h"
#include "lkbench/Text.h"
#include "lkbench/Threads.h"

namespace lkbench {
namespace {

struct Moment {
  const char* name;
  int (CXact::*call)();
};

constexpr std::array kWork = {Moment{"PreBenchmark", &CXact::PreBenchmark},
                              Moment{"PreIteration", &CXact::PreIteration},
                              Moment{"Execute", &CXact::Execute}};
constexpr Moment kEnd = {"PostBenchmark", &CXact::PostBenchmark};

// One step of one set of users, while it lasts.
class Step {
 public:
  Step(int users, CancelSwitch& cancel, CallBreaker& breaker)
      : m_barrier(users), m_cancel(cancel), m_breaker(breaker) {}

  void RunUser(StepShare& share) {
    const CallWatch::Work work = share.user->AtWork();
    for (const Moment& phase : kWork) {
      if (&phase == kWork.data() || !m_cancel.IsSet()) {
        const CallBreaker::Scope breakable(m_breaker, share.user->Driver());
        for (const auto& xact : share.xacts) Call(share, phase, *xact);
      }
      if (m_cancel.IsSet()) share.user->RollBack();  // its locks would stop whoever drops the backups
      m_barrier.Arrive();
    }
    for (const auto& xact : share.xacts) Call(share, kEnd, *xact);
  }

  void LeaveFor(int missing) {
    m_cancel.Set();
    while (missing-- > 0) m_barrier.Leave();
  }

  StepResult Result() {
    const std::lock_guard lock(m_mutex);
    return {m_failure.empty() && !m_cancel.IsSet(), m_failure};
  }

 private:
  void Call(StepShare& share, const Moment& phase, CXact& xact) {
    const std::string what = xact.GetName().ToChar() + ", " + phase.name;
    if (Guarded(*share.user, what, [&] { return (xact.*phase.call)(); }) > 0) return;
    {
      const std::lock_guard lock(m_mutex);
      if (m_failure.empty() && !m_cancel.IsSet())
        m_failure = "user " + std::to_string(share.user->Number()) + " failed (" + what + ")";
    }
    m_cancel.Set();
  }

  Barrier m_barrier;
  CancelSwitch& m_cancel;
  CallBreaker& m_breaker;
  std::mutex m_mutex;
  std::string m_failure;
};

}  // namespace

bool RunAlone(VirtualUser& user, CallBreaker& breaker, CXact& xact, const std::function<void()>& tick) {
  if (tick) {
    bool is_done = false;
    UserThreads thread(
        1, [&](int) { is_done = RunAlone(user, breaker, xact); }, [](int) {});
    thread.Wait(tick);
    return is_done;
  }
  const CallWatch::Work work = user.ForLkbench();
  const CallBreaker::Scope breakable(breaker, user.Driver());
  int result = 1;
  for (const Moment& phase : kWork)
    if (result > 0) result = Guarded(user, xact.GetName().ToChar(), [&] { return (xact.*phase.call)(); });
  Guarded(user, xact.GetName().ToChar(), [&] { return xact.PostBenchmark(); });
  return result > 0;
}

int Guarded(VirtualUser& user, const std::string& what, const std::function<int()>& call) {
  try {
    return call();
  } catch (const std::exception& error) {
    user.Log().Report(ERROR_LEVEL, "-1", what + ": " + OneLine(error.what()));
  } catch (...) {
    user.Log().Report(ERROR_LEVEL, "-1", what + ": an unknown exception");
  }
  return 0;
}

StepResult StepRunner::Run(std::vector<StepShare>& shares, const std::function<void()>& tick) {
  Step step(static_cast<int>(shares.size()), m_cancel, m_breaker);
  UserThreads threads(
      static_cast<int>(shares.size()), [&](int index) { step.RunUser(shares[static_cast<size_t>(index)]); },
      [&](int missing) { step.LeaveFor(missing); });
  threads.Wait(tick);
  return step.Result();
}

}  // namespace lkbench

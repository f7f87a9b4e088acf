// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Execution.h"

#include "lkbench/Text.h"

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

std::uint64_t Nanoseconds(Clock::duration time) {
  return static_cast<std::uint64_t>(std::chrono::nanoseconds(time).count());
}

// The result of a call; an exception that leaves it is one error in the user's log and result 0.
template <class Call>
int Guard(VirtualUser& user, const CXact& xact, Call call) {
  try {
    return call();
  } catch (const std::exception& error) {
    user.Report(std::string(xact.GetName().ToChar()) + ": " + OneLine(error.what()));
  } catch (...) {
    user.Report(std::string(xact.GetName().ToChar()) + ": an unknown exception");
  }
  return 0;
}

void NoteDatabaseTime(Execution& execution, const CTimer& timer) {
  execution.has_database = timer.GetResponse() != 0 && timer.IsEnded();
  if (execution.has_database)
    execution.database = static_cast<std::uint64_t>(timer.GetEnd() - timer.GetResponse());
  if (timer.IsEnded()) execution.rows = static_cast<std::uint64_t>(timer.GetRows());
}

}  // namespace

Execution RunOnce(VirtualUser& user, CXact& xact, TimePoint intended, bool commits) {
  Execution execution;
  user.ForgetError();
  xact.GetTimer().Reset();
  Guard(user, xact, [&] { return xact.PreIteration() != 0 && xact.PreExecute() != 0 ? 1 : 0; });
  const TimePoint begin = Clock::now();
  execution.done = Guard(user, xact, [&] { return xact.Execute(); }) > 0;
  if (execution.done && commits) execution.done = user.Driver().Commit() != 0;
  const TimePoint end = Clock::now();
  execution.service = Nanoseconds(end - begin);
  execution.response = intended == TimePoint{} ? execution.service : Nanoseconds(end - intended);
  if (!execution.done) {
    const LastError error = user.Error();
    execution.error = ClassOf(error.code, error.text);
    user.RollBack();
  }
  NoteDatabaseTime(execution, xact.GetTimer());
  Guard(user, xact, [&] { return xact.PostExecute() + xact.PostIteration(); });
  return execution;
}

}  // namespace lkbench

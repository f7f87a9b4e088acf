// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Bench.h"

#include <csignal>

#include "lkbench/Failure.h"

namespace lkbench {

std::unique_ptr<CXact> Bench::Copy(Role role, VirtualUser& user, Seat seat,
                                   const CBenchmarkProperties& properties) {
  std::unique_ptr<CXact> xact = NewXact(benchmark, role);
  Bind(*xact, user, seat, benchmark, properties, cancel, job.schema_seed);
  return xact;
}

void Bench::RunObject(Role role, const CBenchmarkProperties& properties, const std::function<void()>& tick) {
  ThrowIfInterrupted();
  const auto xact = Copy(role, Admin(), Seat{}, properties);
  benchmark.SetBenchmarkScale(properties.GetScale());
  if (!RunAlone(Admin(), breaker, *xact, tick)) {
    ThrowIfInterrupted();
    throw PrepareError(std::string(xact->GetName().ToChar()) + " failed");
  }
  ThrowIfInterrupted();
}

void Bench::ThrowIfInterrupted() const {
  if (cancel.Signal() != 0)
    throw Failure(cancel.Signal() == SIGINT ? kInterrupted : kTerminated, "interrupted");
}

std::vector<StepShare> SharesFor(Bench& bench, int count) {
  std::vector<StepShare> shares;
  for (VirtualUser* user : bench.users.Open(count)) shares.push_back(StepShare{user, {}});
  return shares;
}

}  // namespace lkbench

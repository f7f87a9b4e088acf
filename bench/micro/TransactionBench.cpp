// SPDX-License-Identifier: Apache-2.0
// What one execution of a workload transaction costs with its commit, its measuring and all the host around
// it, when the database costs nothing.
#include <benchmark/benchmark.h>

#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "bench/micro/NullUser.h"
#include "lkbench/workload/Execution.h"

namespace {

template <class Transaction>
void Execution(benchmark::State& state) {
  bench::NullUser null;
  Transaction xact;
  null.Prepare(xact);
  lkbench::XactStats stats;
  for ([[maybe_unused]] auto _ : state) {
    const lkbench::Execution execution = lkbench::RunOnce(null.User(), xact);
    if (!execution.done) state.SkipWithError("an execution failed");
    stats.Record(execution);
  }
  xact.PostBenchmark();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Execution<CXact_Insert>)->Name("execution/insert");
BENCHMARK(Execution<CXact_Update>)->Name("execution/update");
BENCHMARK(Execution<CXact_Delete>)->Name("execution/delete");

}  // namespace

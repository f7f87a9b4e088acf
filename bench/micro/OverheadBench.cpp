// SPDX-License-Identifier: Apache-2.0
// What measuring costs: an execution that does nothing but bracket itself, timed and recorded.
#include <benchmark/benchmark.h>

#include "bench/micro/NullUser.h"
#include "lkbench/workload/Execution.h"
#include "lkbench/workload/TableBook.h"
#include "lkbench/workload/TableWatch.h"

namespace {

class Nothing : public CXact {
 public:
  int Execute() override {
    m_Timer.SetStartTime();
    m_Timer.SetResponseTime();
    m_Timer.SetEndTime(1, 0);
    return 1;
  }
};

void Measuring(benchmark::State& state) {
  bench::NullUser null;
  Nothing xact;
  null.Prepare(xact);
  lkbench::XactStats stats;
  lkbench::TableBook tables(4, 1);
  lkbench::VirtualUser& user = null.User();
  for ([[maybe_unused]] auto _ : state) {
    lkbench::NoteStatement("delete from LK_REP_TABLE2 where id = 1");
    const lkbench::Execution execution = lkbench::RunOnce(user, xact);
    stats.Record(execution);
    tables.Record(0, lkbench::TakeTable(), execution);
  }
}
BENCHMARK(Measuring)->Name("measuring/execution");

void HistogramRecord(benchmark::State& state) {
  lkbench::Histogram histogram;
  std::uint64_t value = 1;
  for ([[maybe_unused]] auto _ : state) histogram.Record(value = value * 6364136223846793005u % 1000000007u);
}
BENCHMARK(HistogramRecord)->Name("measuring/histogram");

void Clock(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(std::chrono::steady_clock::now());
}
BENCHMARK(Clock)->Name("measuring/clock");

}  // namespace

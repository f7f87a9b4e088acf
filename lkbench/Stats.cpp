// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Stats.h"

namespace lkbench {
namespace {

void Raise(std::atomic<std::uint64_t>& counter, std::uint64_t by) {
  counter.store(counter.load(std::memory_order_relaxed) + by, std::memory_order_relaxed);
}

}  // namespace

void XactStats::Record(const Execution& execution) {
  if (execution.done) {
    m_latency.Record(execution.latency);
    if (execution.has_database) m_database.Record(execution.database);
    Raise(m_rows, execution.rows);
  } else {
    Raise(m_failures, 1);
  }
  Raise(m_executions, 1);
}

void XactTotals::Add(const XactStats& stats) {
  executions += stats.m_executions.load(std::memory_order_relaxed);
  failures += stats.m_failures.load(std::memory_order_relaxed);
  rows += stats.m_rows.load(std::memory_order_relaxed);
  stats.m_latency.AddTo(latency);
  stats.m_database.AddTo(database);
}

void XactTotals::Add(const XactTotals& other) {
  executions += other.executions;
  failures += other.failures;
  rows += other.rows;
  latency.Add(other.latency);
  database.Add(other.database);
}

}  // namespace lkbench

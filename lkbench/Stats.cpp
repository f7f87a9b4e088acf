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

void AddTo(XactTotals& totals, const XactStats& stats) {
  totals.executions += stats.m_executions.load(std::memory_order_relaxed);
  totals.failures += stats.m_failures.load(std::memory_order_relaxed);
  totals.rows += stats.m_rows.load(std::memory_order_relaxed);
  stats.m_latency.AddTo(totals.response);
  stats.m_database.AddTo(totals.database);
}

}  // namespace lkbench

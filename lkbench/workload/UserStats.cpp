// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/UserStats.h"

namespace lkbench {
namespace {

void Raise(std::atomic<std::uint64_t>& counter, std::uint64_t by) {
  counter.store(counter.load(std::memory_order_relaxed) + by, std::memory_order_relaxed);
}

}  // namespace

XactStats::XactStats(bool keeps_response)
    : m_response(keeps_response ? std::make_unique<Histogram>() : nullptr) {}

void XactStats::Record(const Execution& execution) {
  if (!execution.done) return Raise(m_errors[static_cast<std::size_t>(execution.error)], 1);
  m_service.Record(execution.service);
  if (execution.has_database) m_database.Record(execution.database);
  if (m_response) m_response->Record(execution.response);
  Raise(m_rows, execution.rows);
}

void XactStats::NoteUndone(std::uint64_t executions) { Raise(m_undone, executions); }

void XactStats::Clear() {
  for (auto& count : m_errors) count.store(0, std::memory_order_relaxed);
  m_rows.store(0, std::memory_order_relaxed);
  m_undone.store(0, std::memory_order_relaxed);
  m_service.Clear();
  m_database.Clear();
  if (m_response) m_response->Clear();
}

// Executions are counted from their parts: so the sum is right also of numbers that are being written.
void XactStats::AddTo(XactTotals& totals) const {
  HistogramData service;
  m_service.AddTo(service);
  totals.executions += service.Count();
  totals.service.Add(service);
  m_database.AddTo(totals.database);
  if (m_response)
    m_response->AddTo(totals.response);
  else
    totals.response.Add(service);
  for (std::size_t i = 0; i < kErrorClasses; ++i) {
    const std::uint64_t count = m_errors[i].load(std::memory_order_relaxed);
    totals.errors[i] += count;
    totals.failures += count;
    totals.executions += count;
  }
  totals.rows += m_rows.load(std::memory_order_relaxed);
  totals.undone += m_undone.load(std::memory_order_relaxed);
}

}  // namespace lkbench

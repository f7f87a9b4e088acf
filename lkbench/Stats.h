// SPDX-License-Identifier: Apache-2.0
// The numbers of a workload. Every user writes its own XactStats, one per transaction; one reader merges them
// into XactTotals while they are written. Totals are sums of their parts.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "lkbench/Histogram.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

struct Execution {
  bool done = false;
  std::uint64_t rows = 0;
  std::uint64_t latency = 0;   // of the transaction with its commit, in ns
  std::uint64_t database = 0;  // from the transaction's database call to its end, in ns
  bool has_database = false;   // a failed call has no such time
};

class alignas(64) XactStats {
 public:
  void Record(const Execution& execution);  // the user's thread

 private:
  friend void AddTo(struct XactTotals& totals, const XactStats& stats);
  std::atomic<std::uint64_t> m_executions{0};
  std::atomic<std::uint64_t> m_failures{0};
  std::atomic<std::uint64_t> m_rows{0};
  Histogram m_latency;  // of those that succeeded, likewise below
  Histogram m_database;
};

void AddTo(XactTotals& totals, const XactStats& stats);

struct WorkloadResult {
  std::vector<XactTotals> xacts;
  XactTotals total;
  std::uint64_t elapsed = 0;  // ns from the common start to the last user's end
  int users = 0;
  int lost_users = 0;  // ended early, their session was gone
};

}  // namespace lkbench

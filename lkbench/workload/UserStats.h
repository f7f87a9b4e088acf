// SPDX-License-Identifier: Apache-2.0
// The numbers of one user in one phase, a XactStats for each transaction. The user's thread writes; any
// thread may add them to totals at the same time and sees each execution either before or after it was
// recorded. Memory: two histograms a transaction, three with a rate, whatever happens.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "lkbench/Histogram.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

// One execution of a transaction, as measured. Times in ns.
struct Execution {
  bool done = false;
  bool has_database = false;  // a failed call has no such time
  std::uint64_t rows = 0;
  std::uint64_t service = 0;              // with its commit, when it made one
  std::uint64_t response = 0;             // from the intended start; without a rate that of the service
  std::uint64_t database = 0;             // from the transaction's database call to its end
  ErrorClass error = ErrorClass::kOther;  // of one that failed
};

class alignas(64) XactStats {
 public:
  explicit XactStats(bool keeps_response = false);  // else the service time is both

  void Record(const Execution& execution);
  void NoteUndone(std::uint64_t executions);  // that had succeeded and were rolled back
  // Makes all of it 0. REQUIRES: nobody reads meanwhile.
  void Clear();

  void AddTo(XactTotals& totals) const;

 private:
  std::array<std::atomic<std::uint64_t>, kErrorClasses> m_errors{};
  std::atomic<std::uint64_t> m_rows{0};
  std::atomic<std::uint64_t> m_undone{0};
  Histogram m_service;  // of those that succeeded, likewise below
  Histogram m_database;
  std::unique_ptr<Histogram> m_response;
};

}  // namespace lkbench

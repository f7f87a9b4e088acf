// SPDX-License-Identifier: Apache-2.0
// How far a load is, told once a second and read from the row counters that the users' transactions raise.
#pragma once

#include <chrono>
#include <vector>

#include "db/Xact.h"
#include "lkbench/Bench.h"
#include "lkbench/Console.h"
#include "lkbench/LoadPlan.h"
#include "lkbench/display/ProgressText.h"

namespace lkbench {

class LoadProgress {
 public:
  // The copies are not owned and outlive the object. `rows` is what they will load together.
  LoadProgress(Console& console, std::vector<const CXact*> copies, std::uint64_t rows);
  void Tick();

 private:
  LoadState Now() const;

  Console& m_console;
  const StatusScope m_scope{m_console};
  std::vector<const CXact*> m_copies;
  std::uint64_t m_rows;
  std::chrono::steady_clock::time_point m_begin;
};

std::string LoadSummary(const LoadResult& result, const LoadPlan& plan);

}  // namespace lkbench

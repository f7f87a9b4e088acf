// SPDX-License-Identifier: Apache-2.0
// How far a load is, told once a second and read from the row counters that the users' transactions raise.
#pragma once

#include <chrono>
#include <vector>

#include "db/Xact.h"
#include "lkbench/Bench.h"
#include "lkbench/LoadPlan.h"
#include "lkbench/display/RunView.h"

namespace lkbench {

class LoadProgress {
 public:
  // The copies are not owned and outlive the object. `rows` is what they will load together.
  LoadProgress(const RunViews& views, std::vector<const CXact*> copies, std::uint64_t rows);
  void Tick() const;
  void End(bool is_done) const;

 private:
  std::uint64_t Rows() const;
  void Tell(std::uint64_t rows, bool is_over) const;

  const RunViews& m_views;
  std::vector<const CXact*> m_copies;
  std::uint64_t m_rows;
  std::chrono::steady_clock::time_point m_begin;
};

std::string LoadSummary(const LoadResult& result, const LoadPlan& plan);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/LoadProgress.h"

#include <algorithm>

#include "lkbench/Text.h"

namespace lkbench {

LoadProgress::LoadProgress(Console& console, std::vector<const CXact*> copies, std::uint64_t rows)
    : m_console(console),
      m_copies(std::move(copies)),
      m_rows(rows),
      m_begin(std::chrono::steady_clock::now()) {
  if (m_rows > 0) m_console.Status(LoadBar({0, m_rows, 0}));
}

void LoadProgress::Tick() {
  if (m_rows == 0) return;
  const LoadState load = Now();
  m_console.Status(LoadLine(load), LoadBar(load));
}

LoadState LoadProgress::Now() const {
  std::uint64_t loaded = 0;
  for (const CXact* copy : m_copies) loaded += static_cast<std::uint64_t>(copy->GetRowsProcessed());
  const std::chrono::nanoseconds elapsed = std::chrono::steady_clock::now() - m_begin;
  return {std::min(loaded, m_rows), m_rows, static_cast<std::uint64_t>(elapsed.count())};
}

std::string LoadSummary(const LoadResult& result, const LoadPlan& plan) {
  const double seconds = static_cast<double>(result.elapsed) / 1e9;
  const int tables = plan.last - plan.first + 1;
  return "loaded " + Plural(static_cast<std::uint64_t>(tables), "table") + " to scale " +
         Short(std::max(plan.base, plan.wanted)) + ": " + Grouped(result.rows) + " rows in " +
         Fixed(seconds, 1) + " s, " + RowsPerSecondText(result.rows, result.elapsed);
}

}  // namespace lkbench

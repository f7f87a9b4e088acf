// SPDX-License-Identifier: Apache-2.0
#include "lkbench/LoadProgress.h"

#include <algorithm>

#include "lkbench/Text.h"

namespace lkbench {
namespace {

std::string PerSecond(std::uint64_t rows, double seconds) {
  return Grouped(seconds > 0 ? static_cast<std::uint64_t>(static_cast<double>(rows) / seconds) : 0) +
         " rows/s";
}

}  // namespace

LoadProgress::LoadProgress(Console& console, std::vector<const CXact*> copies, std::uint64_t rows)
    : m_console(console),
      m_copies(std::move(copies)),
      m_rows(rows),
      m_begin(std::chrono::steady_clock::now()) {}

void LoadProgress::Tick() {
  if (m_rows == 0) return;
  std::uint64_t loaded = 0;
  for (const CXact* copy : m_copies) loaded += static_cast<std::uint64_t>(copy->GetRowsProcessed());
  loaded = std::min(loaded, m_rows);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_begin).count();
  m_console.Progress("loaded " + Grouped(loaded) + " of " + Grouped(m_rows) + " rows (" +
                     std::to_string(loaded * 100 / m_rows) + " %), " + PerSecond(loaded, seconds));
}

std::string LoadSummary(const LoadResult& result, const LoadPlan& plan) {
  const double seconds = static_cast<double>(result.elapsed) / 1e9;
  const int tables = plan.last - plan.first + 1;
  return "loaded " + Plural(static_cast<std::uint64_t>(tables), "table") + " to scale " +
         Short(std::max(plan.base, plan.wanted)) + ": " + Grouped(result.rows) + " rows in " +
         Fixed(seconds, 1) + " s, " + PerSecond(result.rows, seconds);
}

}  // namespace lkbench

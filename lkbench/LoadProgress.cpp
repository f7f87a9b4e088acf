// SPDX-License-Identifier: Apache-2.0
#include "lkbench/LoadProgress.h"

#include <algorithm>

#include "lkbench/Text.h"
#include "lkbench/display/ProgressText.h"

namespace lkbench {

LoadProgress::LoadProgress(const RunViews& views, std::vector<const CXact*> copies, std::uint64_t rows)
    : m_views(views), m_copies(std::move(copies)), m_rows(rows), m_begin(std::chrono::steady_clock::now()) {
  if (m_rows > 0) m_views.Tell(&RunView::OnLoad, LoadState{0, m_rows});
}

void LoadProgress::Tick() const { Tell(Rows(), false); }

// The counters lack the rows of the last, short batches: a load that is done has loaded all.
void LoadProgress::End(bool is_done) const { Tell(is_done ? m_rows : Rows(), true); }

std::uint64_t LoadProgress::Rows() const {
  std::uint64_t loaded = 0;
  for (const CXact* copy : m_copies) loaded += static_cast<std::uint64_t>(copy->GetRowsProcessed());
  return std::min(loaded, m_rows);
}

void LoadProgress::Tell(std::uint64_t rows, bool is_over) const {
  if (m_rows == 0) return;
  const std::chrono::nanoseconds elapsed = std::chrono::steady_clock::now() - m_begin;
  m_views.Tell(&RunView::OnLoad,
               LoadState{rows, m_rows, static_cast<std::uint64_t>(elapsed.count()), is_over});
}

std::string LoadSummary(const LoadResult& result, const LoadPlan& plan) {
  const double seconds = static_cast<double>(result.elapsed) / 1e9;
  const int tables = plan.last - plan.first + 1;
  const std::string loaded = "loaded " + Plural(static_cast<std::uint64_t>(tables), "table") + " to scale " +
                             Short(std::max(plan.base, plan.wanted));
  if (result.rows == 0) return loaded + ": all rows were there already";
  return loaded + ": " + Grouped(result.rows) + " rows in " + Fixed(seconds, 1) + " s, " +
         RowsPerSecondText(result.rows, result.elapsed);
}

}  // namespace lkbench

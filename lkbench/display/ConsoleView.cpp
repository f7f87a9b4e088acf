// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/ConsoleView.h"

#include "lkbench/display/IntervalLine.h"

namespace lkbench {

// Its begin and its end have lines of their own.
void ConsoleView::OnLoad(const LoadState& load) {
  if (load.elapsed == 0 || load.is_over)
    m_console.Status(LoadBar(load));
  else
    m_console.Status(LoadLine(load), LoadBar(load));
}

// What is over soon has no line.
void ConsoleView::OnTables(const TablesState& state) {
  constexpr std::uint64_t kSoon = 5'000'000'000;
  if (state.elapsed < kSoon || state.is_over)
    m_console.Status(TablesStatus(state));
  else
    m_console.Status(TablesLine(state), TablesStatus(state));
}

void ConsoleView::OnInterval(const Progress& progress) {
  m_console.Progress(IntervalLine(progress),
                     [&](std::size_t columns) { return IntervalLine(progress, columns); });
  m_console.Status(WorkloadStatus(progress));
}

}  // namespace lkbench

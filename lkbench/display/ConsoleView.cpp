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

void ConsoleView::OnInterval(const Progress& progress) {
  m_console.Progress(IntervalLine(progress),
                     [&](std::size_t columns) { return IntervalLine(progress, columns); });
  m_console.Status(WorkloadStatus(progress));
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/StreamView.h"

#include "lkbench/display/StreamObjects.h"

namespace lkbench {

void StreamView::OnLoad(const LoadState& load) { m_console.Object(LoadObject(load)); }
void StreamView::OnTables(const TablesState& state) { m_console.Object(TablesObject(state)); }
void StreamView::OnInterval(const Progress& progress) { m_console.Object(IntervalObject(progress)); }
void StreamView::OnPhaseEnd(const PhaseRecord& phase) { m_console.Object(PhaseObject(phase)); }
void StreamView::OnEvent(const Event& event) { m_console.Object(EventObject(event)); }
void StreamView::OnNewError(const ErrorRecord& error) { m_console.Object(ErrorObject(error)); }

}  // namespace lkbench

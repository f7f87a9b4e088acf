// SPDX-License-Identifier: Apache-2.0
#include "lkbench/TablesProgress.h"

#include <algorithm>

namespace lkbench {

TablesProgress::TablesProgress(Bench& bench, std::string verb, std::size_t tables, RowsRemoved rows)
    : m_bench(bench),
      m_verb(std::move(verb)),
      m_tables(tables),
      m_rows(rows),
      m_before(bench.users.Calls().Done()) {
  Tell(false);
}

TablesProgress::~TablesProgress() {
  Tell(true);
  m_bench.console.EraseStatus();
}

void TablesProgress::Tell(bool is_over) const {
  const CallWatch::Tally done = m_bench.users.Calls().Done();
  const std::chrono::nanoseconds elapsed = std::chrono::steady_clock::now() - m_begin;
  TablesState state{m_verb, std::min(done.tables - m_before.tables, m_tables), m_tables, {}, 0, is_over};
  if (m_rows == RowsRemoved::kTold) state.rows = done.rows - m_before.rows;
  state.elapsed = static_cast<std::uint64_t>(elapsed.count());
  m_bench.views.Tell(&RunView::OnTables, state);
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/TableBook.h"

#include <algorithm>
#include <string>

namespace lkbench {
namespace {

constexpr int kMostCopies = 16;
constexpr int kMostEntries = 256;  // more than that only where there are more tables

void Raise(std::atomic<std::uint64_t>& counter, std::uint64_t by) {
  counter.fetch_add(by, std::memory_order_relaxed);
}

}  // namespace

struct alignas(64) TableBook::Entry {
  std::array<std::atomic<std::uint64_t>, kErrorClasses> errors{};
  std::atomic<std::uint64_t> done{0};
  std::atomic<std::uint64_t> rows{0};
  std::atomic<std::uint64_t> undone{0};
  std::unique_ptr<Histogram> response;

  void AddTo(TableTotals& totals) const {
    for (std::size_t i = 0; i < kErrorClasses; ++i) {
      totals.errors[i] += errors[i];
      totals.failures += errors[i];
      totals.executions += errors[i];
    }
    totals.executions += done;
    totals.rows += rows;
    totals.undone += undone;
    if (response) response->AddTo(totals.response);
  }
};

TableBook::TableBook(int tables, int users)
    : m_tables(tables), m_copies(std::clamp(kMostEntries / (tables + 1), 1, std::min(users, kMostCopies))) {
  for (int i = 0; i < m_copies * (tables + 1); ++i) {
    m_entries.push_back(std::make_unique<Entry>());
    if (tables <= kMostTimed) m_entries.back()->response = std::make_unique<Histogram>();
  }
}

TableBook::~TableBook() = default;

TableBook::Entry& TableBook::Of(int user, int table) {
  const int known = table > m_tables ? 0 : table;
  return *m_entries[Index(user % m_copies, known)];
}

void TableBook::Record(int user, int table, const Execution& execution) {
  Entry& entry = Of(user, table);
  if (!execution.done) return Raise(entry.errors[static_cast<std::size_t>(execution.error)], 1);
  Raise(entry.done, 1);
  Raise(entry.rows, execution.rows);
  if (entry.response) entry.response->RecordShared(execution.response);
}

void TableBook::NoteUndone(int user, int table, std::uint64_t executions) {
  Raise(Of(user, table).undone, executions);
}

std::vector<TableTotals> TableBook::Totals(const std::vector<int>& columns) const {
  std::vector<TableTotals> all;
  for (int table = 0; table <= m_tables; ++table) {
    TableTotals totals;
    for (int copy = 0; copy < m_copies; ++copy) m_entries[Index(copy, table)]->AddTo(totals);
    if (totals.executions == 0) continue;
    totals.number = table;
    totals.name = table == 0 ? "(unknown)" : "LK_REP_TABLE" + std::to_string(table);
    totals.columns = static_cast<size_t>(table) < columns.size() ? columns[static_cast<size_t>(table)] : 0;
    all.push_back(std::move(totals));
  }
  return all;
}

}  // namespace lkbench

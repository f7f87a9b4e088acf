// SPDX-License-Identifier: Apache-2.0
// The measured executions of a phase by table. All users write to the same book, so its size does not depend
// on their number; several copies of a small one keep users on many processors apart. Any thread may write
// and read at any time. Past kMostTimed tables the times are left out, the counts stay.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <vector>

#include "lkbench/workload/UserStats.h"

namespace lkbench {

class TableBook {
 public:
  static constexpr int kMostTimed = 512;

  // Of the tables 1 to `tables`, for that many users.
  TableBook(int tables, int users);
  ~TableBook();
  TableBook(const TableBook&) = delete;
  TableBook& operator=(const TableBook&) = delete;

  // `table` is 0 where it is not known; so is a number past the last.
  void Record(int user, int table, const Execution& execution);
  void NoteUndone(int user, int table, std::uint64_t executions);

  // Those that were used, by number; `columns` has each table's columns at its number.
  std::vector<TableTotals> Totals(const std::vector<int>& columns) const;

 private:
  struct Entry;
  Entry& Of(int user, int table);

  std::size_t Index(int copy, int table) const {
    return static_cast<std::size_t>(copy) * (static_cast<std::size_t>(m_tables) + 1) +
           static_cast<std::size_t>(table);
  }

  int m_tables;
  int m_copies;
  std::vector<std::unique_ptr<Entry>> m_entries;  // by copy, then by table
};

}  // namespace lkbench

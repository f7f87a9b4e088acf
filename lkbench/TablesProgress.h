// SPDX-License-Identifier: Apache-2.0
// How far a verb is that works on one table after the other, told when the object is made, by each Tick and
// when it goes. It is read from the statements that the verb's threads have executed.
#pragma once

#include "lkbench/Bench.h"

namespace lkbench {

enum class RowsRemoved { kTold, kNone };

class TablesProgress {
 public:
  TablesProgress(Bench& bench, std::string verb, std::size_t tables, RowsRemoved rows = RowsRemoved::kNone);
  ~TablesProgress();
  TablesProgress(const TablesProgress&) = delete;
  TablesProgress& operator=(const TablesProgress&) = delete;

  void Tick() const { Tell(false); }

 private:
  void Tell(bool is_over) const;

  Bench& m_bench;
  std::string m_verb;
  std::uint64_t m_tables;
  RowsRemoved m_rows;
  CallWatch::Tally m_before;
  std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

}  // namespace lkbench

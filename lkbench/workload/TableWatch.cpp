// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/TableWatch.h"

#include <charconv>
#include <utility>

namespace lkbench {
namespace {

constexpr std::string_view kPrefix = "LK_REP_TABLE";

thread_local int t_table = 0;

}  // namespace

int TableNumberIn(std::string_view text) {
  const size_t begin = text.find(kPrefix);
  if (begin == std::string_view::npos) return 0;
  int number = 0;
  std::from_chars(text.data() + begin + kPrefix.size(), text.data() + text.size(), number);
  return number;
}

void NoteStatement(std::string_view text) {
  if (const int number = TableNumberIn(text); number > 0) t_table = number;
}

int TakeTable() { return std::exchange(t_table, 0); }

}  // namespace lkbench

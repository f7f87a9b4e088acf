// SPDX-License-Identifier: Apache-2.0
// How far a load or another verb is, and the numbers of such lines. Pure text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "lkbench/display/Spans.h"

namespace lkbench {

struct LoadState {
  std::uint64_t rows = 0;
  std::uint64_t of = 0;       // not 0
  std::uint64_t elapsed = 0;  // ns
  bool is_over = false;
};

// Of a verb that works on one table after the other.
struct TablesState {
  std::string verb;
  std::uint64_t tables = 0;  // that are done
  std::uint64_t of = 0;
  std::optional<std::uint64_t> rows;  // removed so far
  std::uint64_t elapsed = 0;          // ns
  bool is_over = false;
};

// "create: 3 of 20 tables, 0:05"
std::string TablesLine(const TablesState& state);
// "refresh  3 of 20 tables  4,000 rows removed  0:05  0:28 left", what fits
FittedLine TablesStatus(const TablesState& state);

// "loaded 1,200 of 4,000 rows (30 %), 1,200 rows/s"
std::string LoadLine(const LoadState& load);
// "load [###-------]  30 %  1,200 of 4,000 rows  1,200 rows/s  0:02 left", the bar as long as there is room
FittedLine LoadBar(const LoadState& load);

std::string RowsPerSecondText(std::uint64_t rows, std::uint64_t nanoseconds);  // 1,200 rows/s
std::string PerSecondText(std::uint64_t count, std::uint64_t nanoseconds);     // with one decimal
std::string ClockText(std::uint64_t nanoseconds);                              // 0:07, 12:00, 1:00:00

}  // namespace lkbench

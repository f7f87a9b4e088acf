// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/ProgressText.h"

#include <algorithm>

#include "lkbench/Text.h"
#include "lkbench/display/Width.h"

namespace lkbench {
namespace {

constexpr std::size_t kShortestBar = 10;
constexpr std::size_t kLongestBar = 50;
constexpr std::size_t kAroundBar = 8;  // "load [] "

double RowsPerSecond(std::uint64_t rows, std::uint64_t nanoseconds) {
  return nanoseconds > 0 ? static_cast<double>(rows) * 1e9 / static_cast<double>(nanoseconds) : 0;
}

std::string Percent(const LoadState& load) { return std::to_string(load.rows * 100 / load.of) + " %"; }

std::string Remaining(const LoadState& load) {
  const double seconds = static_cast<double>(load.of - load.rows) / RowsPerSecond(load.rows, load.elapsed);
  return ClockText(static_cast<std::uint64_t>(seconds * 1e9)) + " left";
}

std::string Bar(const LoadState& load, std::size_t length) {
  const std::size_t done = length * load.rows / load.of;
  return '[' + std::string(done, '#') + std::string(length - done, '-') + ']';
}

std::vector<Piece> Pieces(const LoadState& load) {
  const std::string percent = Percent(load);
  std::vector<Piece> pieces = {{std::string(5 - percent.size(), ' ') + percent},
                               {Grouped(load.rows) + " of " + Grouped(load.of) + " rows", 2},
                               {RowsPerSecondText(load.rows, load.elapsed), 1}};
  if (load.rows > 0) pieces.push_back({Remaining(load)});
  return pieces;
}

Spans BarLine(const LoadState& load, std::size_t columns) {
  const std::size_t room = columns - std::min(columns, kAroundBar + kShortestBar);
  Spans spans = Fitted(Pieces(load), room);
  const std::size_t spare = room - std::min(room, DisplayWidth(TextOf(spans)));
  const std::size_t length = std::min(kShortestBar + spare, kLongestBar);
  spans.insert(spans.begin(), {"load " + Bar(load, length) + ' '});
  return CutToWidth(spans, columns);
}

std::string TablesText(const TablesState& state) {
  return Grouped(state.tables) + " of " + Plural(state.of, "table");
}

std::vector<Piece> Pieces(const TablesState& state) {
  std::vector<Piece> pieces = {{state.verb}, {TablesText(state)}};
  if (state.rows) pieces.push_back({Grouped(*state.rows) + " rows removed", 2});
  pieces.push_back({ClockText(state.elapsed), 1});
  if (state.tables > 0)
    pieces.push_back({ClockText(state.elapsed / state.tables * (state.of - state.tables)) + " left"});
  return pieces;
}

}  // namespace

std::string TablesLine(const TablesState& state) {
  return state.verb + ": " + TablesText(state) +
         (state.rows ? ", " + Grouped(*state.rows) + " rows removed" : "") + ", " + ClockText(state.elapsed);
}

FittedLine TablesStatus(const TablesState& state) {
  return [state](std::size_t columns) { return CutToWidth(Fitted(Pieces(state), columns), columns); };
}

std::string LoadLine(const LoadState& load) {
  return "loaded " + Grouped(load.rows) + " of " + Grouped(load.of) + " rows (" + Percent(load) + "), " +
         RowsPerSecondText(load.rows, load.elapsed);
}

FittedLine LoadBar(const LoadState& load) {
  return [load](std::size_t columns) { return BarLine(load, columns); };
}

std::string RowsPerSecondText(std::uint64_t rows, std::uint64_t nanoseconds) {
  return Grouped(static_cast<std::uint64_t>(RowsPerSecond(rows, nanoseconds))) + " rows/s";
}

std::string PerSecondText(std::uint64_t count, std::uint64_t nanoseconds) {
  const double seconds = static_cast<double>(nanoseconds) / 1e9;
  return Fixed(seconds > 0 ? static_cast<double>(count) / seconds : 0, 1);
}

std::string ClockText(std::uint64_t nanoseconds) {
  const std::uint64_t seconds = (nanoseconds + 500'000'000) / 1'000'000'000;
  const auto two = [](std::uint64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const std::uint64_t hours = seconds / 3600;
  const std::uint64_t minutes = seconds / 60 % 60;
  return (hours > 0 ? std::to_string(hours) + ':' + two(minutes) : std::to_string(minutes)) + ':' +
         two(seconds % 60);
}

}  // namespace lkbench

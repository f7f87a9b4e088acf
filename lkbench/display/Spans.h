// SPDX-License-Identifier: Apache-2.0
// A line in pieces, so that it can be coloured and fitted into a window. Values and pure functions.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace lkbench {

enum class Tone { kPlain, kBad };  // kBad: failures, limits that were not kept

struct Span {
  std::string text;
  Tone tone = Tone::kPlain;
};

using Spans = std::vector<Span>;

// A line for a window of so many columns.
using FittedLine = std::function<Spans(std::size_t columns)>;

std::string Painted(const Span& span);                         // with the codes of its colour around it
std::string TextOf(const Spans& spans, bool painted = false);  // the pieces one after the other
Spans CutToWidth(const Spans& spans, std::size_t columns);

// A piece that may be left out where the window is too narrow: the higher its rank, the sooner.
struct Piece {
  std::string text;
  int rank = 0;  // 0: never left out
  Tone tone = Tone::kPlain;
};

// The pieces two blanks apart, without as many as it takes; cut where even the rest is too wide.
Spans Fitted(std::vector<Piece> pieces, std::size_t columns);

}  // namespace lkbench

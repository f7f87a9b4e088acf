// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/Spans.h"

#include <algorithm>

#include "lkbench/display/Width.h"

namespace lkbench {
namespace {

constexpr const char* kRed = "\x1b[31m";
constexpr const char* kReset = "\x1b[0m";
constexpr const char* kGap = "  ";

Spans Joined(const std::vector<Piece>& pieces) {
  Spans spans;
  for (const Piece& piece : pieces) {
    if (!spans.empty()) spans.push_back({kGap});
    spans.push_back({piece.text, piece.tone});
  }
  return spans;
}

}  // namespace

std::string Painted(const Span& span) {
  return span.tone == Tone::kPlain ? span.text : kRed + span.text + kReset;
}

std::string TextOf(const Spans& spans, bool painted) {
  std::string text;
  for (const Span& span : spans) text += painted ? Painted(span) : span.text;
  return text;
}

Spans CutToWidth(const Spans& spans, std::size_t columns) {
  Spans cut;
  for (const Span& span : spans) {
    const std::string text = CutToWidth(span.text, columns);
    cut.push_back({text, span.tone});
    if (text.size() < span.text.size()) break;
    columns -= DisplayWidth(text);
  }
  return cut;
}

Spans Fitted(std::vector<Piece> pieces, std::size_t columns) {
  while (DisplayWidth(TextOf(Joined(pieces))) > columns) {
    const auto last = std::ranges::max_element(pieces, {}, &Piece::rank);
    if (last == pieces.end() || last->rank == 0) break;
    pieces.erase(last);
  }
  return CutToWidth(Joined(pieces), columns);
}

}  // namespace lkbench

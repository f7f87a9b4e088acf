// SPDX-License-Identifier: Apache-2.0
#include "lkbench/TextTable.h"

#include <algorithm>

namespace lkbench {
namespace {

size_t Width(const std::string& text) {
  return static_cast<size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string Line(const TextRow& row, const std::vector<size_t>& widths, size_t left) {
  std::string line;
  for (size_t i = 0; i < row.size(); ++i) {
    const std::string blanks(widths[i] - Width(row[i]), ' ');
    line += (i == 0 ? "" : "  ") + (i < left ? row[i] + blanks : blanks + row[i]);
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

std::string Aligned(const std::vector<TextRow>& rows, size_t left) {
  std::vector<size_t> widths;
  for (const TextRow& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  for (const TextRow& row : rows) text += (text.empty() ? "" : "\n") + Line(row, widths, left);
  return text;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// Text by the columns that it takes on a terminal: wide characters take two, combining ones none. Texts are
// UTF-8; a byte that is none takes one column. Pure functions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lkbench {

std::size_t DisplayWidth(std::string_view text);

// The beginning of the text that takes at most so many columns. Characters stay whole.
std::string CutToWidth(std::string_view text, std::size_t columns);

// The text in lines of at most so many columns, cut at single blanks; each but the first is indented. A word
// that is longer keeps its line to itself. A line with several blanks in a row is laid out already and stays.
std::string Folded(std::string_view text, std::size_t columns);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// What a fuzz target says about its text. A fact that does not hold is printed and ends the run; the fuzzer
// keeps the text that led to it.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace fuzz {

inline void Require(bool holds, std::string_view fact) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(fact.size()), fact.data());
  std::abort();
}

constexpr bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

// What a user is told stands in one line of a readable length, and nothing in it moves the cursor.
inline void RequireOneLine(std::string_view message, std::size_t longest) {
  Require(!message.empty(), "a message says something");
  Require(std::ranges::none_of(message, IsControl), "a message holds no control characters");
  Require(message.size() <= longest, "a message is not too long to read");
}

}  // namespace fuzz

// SPDX-License-Identifier: Apache-2.0
// ASCII-only letter case, as SQL words need it: independent of the locale, bytes above 127 as they are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ocimaria::sql {

constexpr char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string UpperCase(std::string_view text);

// `upper` is upper case already.
constexpr bool EqualsUpper(std::string_view text, std::string_view upper) {
  if (text.size() != upper.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (ToUpper(text[i]) != upper[i]) return false;
  return true;
}

// 'text' as an SQL literal: quotes doubled.
std::string QuoteLiteral(std::string_view text);

}  // namespace ocimaria::sql

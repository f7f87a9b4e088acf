// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/ServerMessage.h"

#include <algorithm>

#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

constexpr std::string_view kMarks = "'\"`";

// An apostrophe inside a word, as in "doesn't", is no mark.
std::size_t FindOpening(std::string_view message, std::size_t from) {
  std::size_t at = message.find_first_of(kMarks, from);
  while (at != message.npos && at > 0 && message[at] == '\'' && IsLetter(message[at - 1])) {
    at = message.find_first_of(kMarks, at + 1);
  }
  return at;
}

}  // namespace

std::string_view Quoted(std::string_view message, int n) {
  std::size_t from = 0;
  for (;; --n) {
    const auto opening = FindOpening(message, from);
    if (opening == message.npos) return {};
    const auto closing = message.find(message[opening], opening + 1);
    if (closing == message.npos) return {};
    if (n == 0) return message.substr(opening + 1, closing - opening - 1);
    from = closing + 1;
  }
}

std::string_view LastQuoted(std::string_view message) {
  const auto closing = message.rfind('\'');
  if (closing == message.npos || closing == 0) return {};
  const auto opening = message.rfind('\'', closing - 1);
  return opening == message.npos ? std::string_view() : message.substr(opening + 1, closing - opening - 1);
}

std::string_view Between(std::string_view message, std::string_view left, std::string_view right) {
  const auto begin = message.find(left);
  if (begin == message.npos) return {};
  const auto rest = message.substr(begin + left.size());
  return rest.substr(0, std::min(rest.find(right), rest.size()));
}

std::string_view LastName(std::string_view name) {
  while (!name.empty() && kMarks.find(name.back()) != kMarks.npos) name.remove_suffix(1);
  const auto before = name.find_last_of(".'\"`");
  return before == name.npos ? name : name.substr(before + 1);
}

std::string QuotedName(std::string_view dotted) {
  std::string quoted = "\"";
  for (const char c : dotted) {
    if (c == '.') {
      quoted += "\".\"";
    } else {
      quoted += ToUpper(c);
    }
  }
  return quoted += '"';
}

std::string_view LineOf(std::string_view message) {
  constexpr std::string_view kAtLine = "at line ";
  const auto found = message.rfind(kAtLine);
  if (found == message.npos) return "1";
  const auto number = message.substr(found + kAtLine.size());
  const auto end = std::ranges::find_if_not(number, IsDigit);
  return number.substr(0, static_cast<std::size_t>(end - number.begin()));
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ParseErrorOffset.h"

#include <mysqld_error.h>

#include <algorithm>
#include <cctype>
#include <limits>

#include "oci/mariadb/sql/ServerMessage.h"

namespace ocimaria {
namespace {

constexpr std::size_t kEnoughToRecognise = 24;  // bytes of the text at the place

bool SameLetter(unsigned char a, unsigned char b) { return std::toupper(a) == std::toupper(b); }

std::size_t Find(std::string_view text, std::string_view wanted) {
  return static_cast<std::size_t>(
      std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), SameLetter) - text.begin());
}

bool IsNameByte(unsigned char c) { return std::isalnum(c) || c == '_' || c == '$' || c == '#'; }

// The name where it stands alone.
std::size_t FindName(std::string_view text, std::string_view name) {
  for (std::size_t at = Find(text, name); !name.empty() && at < text.size();
       at += 1 + Find(text.substr(at + 1), name)) {
    const bool starts = at == 0 || !IsNameByte(text[at - 1]);
    const bool ends = at + name.size() >= text.size() || !IsNameByte(text[at + name.size()]);
    if (starts && ends) return at;
  }
  return text.size();
}

// What the server shows is its own text: placeholders are question marks there.
std::size_t FindShown(std::string_view statement, std::string_view shown) {
  if (shown.empty()) return statement.size();
  shown = shown.substr(0, std::min(shown.find('?'), kEnoughToRecognise));
  return Find(statement, shown);
}

}  // namespace

ub2 ParseErrorOffset(std::string_view statement, const ServerFailure& failure) {
  std::size_t offset = statement.size();
  if (failure.Number() == ER_PARSE_ERROR)
    offset = FindShown(statement, sql::Between(failure.Text(), "near '", "' at line"));
  else if (failure.Number() == ER_BAD_FIELD_ERROR || failure.Number() == ER_NO_SUCH_TABLE)
    offset = FindName(statement, sql::LastName(sql::Quoted(failure.Text(), 0)));
  if (offset >= statement.size()) return 0;
  return static_cast<ub2>(std::min<std::size_t>(offset, std::numeric_limits<ub2>::max()));
}

}  // namespace ocimaria

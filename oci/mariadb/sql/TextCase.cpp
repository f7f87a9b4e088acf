// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/TextCase.h"

#include <algorithm>

namespace ocimaria::sql {

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), ToUpper);
  return upper;
}

std::string QuoteLiteral(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted += '\'';
}

}  // namespace ocimaria::sql

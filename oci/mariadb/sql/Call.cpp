// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Call.h"

#include <algorithm>

#include "oci/mariadb/OraError.h"

namespace ocimaria::sql {

bool IsCallOf(const PieceList& pieces, std::size_t i) {
  return pieces.Kind(i) == TokenKind::kWord && pieces.IsSymbol(i + 1, "(") &&
         !(i > 0 && pieces.IsSymbol(i - 1, "."));
}

Call ParseCall(const PieceList& pieces, std::size_t name) {
  Call call{name, name + 1, pieces.ClosingOf(name + 1), {}};
  call.arguments = SplitAtCommas(pieces, call.open, call.close);
  if (std::ranges::any_of(call.arguments, [](const Range& r) { return r.Size() == 0; })) throw OraError(936);
  return call;
}

std::vector<Range> SplitAtCommas(const PieceList& pieces, std::size_t open, std::size_t close) {
  std::vector<Range> parts;
  if (close == open + 1) return parts;
  std::size_t begin = open + 1;
  for (std::size_t i = begin; i < close; ++i) {
    if (pieces.IsSymbol(i, "(")) i = pieces.ClosingOf(i);
    if (!pieces.IsSymbol(i, ",")) continue;
    parts.push_back({begin, i});
    begin = i + 1;
  }
  parts.push_back({begin, close});
  return parts;
}

}  // namespace ocimaria::sql

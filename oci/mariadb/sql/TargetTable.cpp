// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/TargetTable.h"

#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

// Where the table's name begins; 0: the statement changes no table that it names.
std::size_t FindName(const PieceList& pieces) {
  if (pieces.IsAnyWord(0, {"INSERT", "MERGE"})) return pieces.IsWord(1, "INTO") ? 2 : 0;
  if (pieces.IsWord(0, "DELETE")) return pieces.IsWord(1, "FROM") ? 2 : 1;
  if (pieces.IsWord(0, "UPDATE")) return 1;
  const bool is_ddl = pieces.IsAnyWord(0, {"CREATE", "ALTER", "DROP", "TRUNCATE"});
  return is_ddl && pieces.IsWord(1, "TABLE") ? 2 : 0;
}

}  // namespace

std::size_t EndOfName(const PieceList& pieces, std::size_t i) {
  if (!pieces.IsName(i)) return i;
  while (pieces.IsSymbol(i + 1, ".") && pieces.IsName(i + 2)) i += 2;
  return i + 1;
}

std::string DictionaryName(const PieceList& pieces, std::size_t i) {
  const auto text = pieces.Text(i);
  if (pieces.Kind(i) == TokenKind::kQuotedName) return std::string(text.substr(1, text.size() - 2));
  return UpperCase(text);
}

std::string TargetTable(const PieceList& pieces) {
  const std::size_t begin = FindName(pieces);
  const std::size_t end = EndOfName(pieces, begin);
  return begin == 0 || end == begin ? std::string() : DictionaryName(pieces, end - 1);
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/SelectNames.h"

#include <string>

#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

// Where the list that begins behind SELECT ends: at its FROM, or with the text.
std::size_t EndOfList(const PieceList& pieces, std::size_t begin) {
  std::size_t i = begin;
  while (i < pieces.Size() && !pieces.IsWord(i, "FROM") && !pieces.IsSymbol(i, ")")) {
    i = pieces.IsSymbol(i, "(") ? pieces.ClosingOf(i) + 1 : i + 1;
  }
  return i;
}

// A name behind an operand is an alias; behind an operator or a point it is part of the expression.
bool HasAlias(const PieceList& pieces, const Range& item) {
  const std::size_t last = item.end - 1;
  if (item.Size() < 2 || !pieces.IsName(last) || pieces.IsWord(last, "END")) return false;
  return pieces.Kind(last - 1) != TokenKind::kSymbol || pieces.IsSymbol(last - 1, ")");
}

// What the server names by its own means: it says s.nextval where Oracle says NEXTVAL.
bool IsDrawnNumber(const PieceList& pieces, const Range& item) {
  return item.Size() >= 3 && pieces.IsSymbol(item.end - 2, ".") &&
         pieces.IsAnyWord(item.end - 1, {"NEXTVAL", "CURRVAL"});
}

std::string NameOf(const PieceList& pieces, const Range& item) {
  if (EndOfName(pieces, item.begin) == item.end) return DictionaryName(pieces, item.end - 1);
  std::string name;
  for (std::size_t i = item.begin; i < item.end; ++i) name += UpperCase(pieces.Text(i));
  return name;
}

void KeepName(PieceList& pieces, const Range& item) {
  constexpr std::size_t kLongestAlias = 64;
  if (item.Size() == 0 || HasAlias(pieces, item)) return;
  if (!pieces.IsChanged(item.begin, item.end) && !IsDrawnNumber(pieces, item)) return;
  const std::string name = NameOf(pieces, item);
  const std::string quoted = "\"" + name + "\"";
  if (name.size() > kLongestAlias || name.find('"') != name.npos) return;
  if (pieces.Join(item.begin, item.end).ends_with(quoted)) return;
  pieces.InsertAfter(item.end - 1, " " + quoted);
}

}  // namespace

void KeepSelectNames(PieceList& pieces) {
  if (!pieces.IsWord(0, "SELECT")) return;
  const std::size_t begin = pieces.IsAnyWord(1, {"DISTINCT", "ALL", "UNIQUE"}) ? 2 : 1;
  const std::size_t end = EndOfList(pieces, begin);
  for (const Range& item : SplitAtCommas(pieces, begin - 1, end)) KeepName(pieces, item);
}

}  // namespace ocimaria::sql

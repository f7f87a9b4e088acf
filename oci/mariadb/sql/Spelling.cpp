// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Spelling.h"

#include <string>
#include <string_view>

#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

void RefuseWord(const PieceList& pieces, std::size_t i) {
  if (pieces.Noted(i) == NotedWord::kNone) return;
  if (pieces.AreWords(i, {"CONNECT", "BY"})) throw Unimplemented("CONNECT BY");
  if (pieces.IsWord(i, "NULLS") && pieces.IsAnyWord(i + 1, {"FIRST", "LAST"})) {
    throw Unimplemented("NULLS FIRST and NULLS LAST");
  }
}

// Marks that Oracle's language has not; to the server some of them have a meaning.
void RefuseForeignMark(std::string_view mark) {
  constexpr std::string_view kForeign = "?`\\{}[]~&!";
  const bool is_control = static_cast<unsigned char>(mark.front()) < ' ';
  if (is_control || (mark.size() == 1 && kForeign.find(mark.front()) != kForeign.npos)) throw OraError(911);
  if (mark == "@") throw Unimplemented("a database link");
}

void RefuseOuterJoin(const PieceList& pieces, std::size_t i) {
  if (pieces.IsSymbol(i, "(") && pieces.IsSymbol(i + 1, "+") && pieces.IsSymbol(i + 2, ")")) {
    throw Unimplemented("outer joins with (+); write LEFT JOIN or RIGHT JOIN");
  }
}

void RewritePiece(PieceList& pieces, std::size_t i) {
  const auto text = pieces.Text(i);
  switch (pieces.Kind(i)) {
    case TokenKind::kString:
      // The server would make one literal of them.
      if (pieces.Kind(i + 1) == TokenKind::kString) throw OraError(933);
      if (!text.starts_with('\'')) pieces.Replace(i, QuoteLiteral(StringValue(text)));
      break;
    case TokenKind::kWord:
      RefuseWord(pieces, i);
      // The server ends a name at "#" and takes the rest of the line for a comment.
      if (text.find('#') != text.npos) pieces.Replace(i, "\"" + UpperCase(text) + "\"");
      break;
    case TokenKind::kSymbol:
      RefuseForeignMark(text);
      RefuseOuterJoin(pieces, i);
      if (text == "^=") pieces.Replace(i, "!=");
      break;
    default:
      break;
  }
}

}  // namespace

void RewriteSpelling(PieceList& pieces) {
  for (std::size_t i = 0; i < pieces.Size(); ++i) RewritePiece(pieces, i);
}

}  // namespace ocimaria::sql

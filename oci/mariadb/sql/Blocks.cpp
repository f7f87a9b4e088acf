// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Blocks.h"

#include <optional>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/StorageType.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

// A declared column type, or nothing: a variable may be of a type that no column has.
std::optional<ParsedType> TryParseType(const PieceList& pieces, std::size_t i) {
  try {
    return ParseOracleType(pieces, i);
  } catch (const OraError&) {
    return std::nullopt;
  }
}

// The server's PL knows these by the same name and meaning.
bool IsServerType(const PieceList& pieces, const ParsedType& parsed, std::size_t begin) {
  switch (parsed.type.family) {
    case TypeFamily::kNumber:
      return pieces.IsWord(begin, "NUMBER") && !parsed.type.any_precision &&
             (parsed.type.scale == kNoScale ||
              (parsed.type.scale >= 0 && parsed.type.scale <= parsed.type.precision));
    case TypeFamily::kVarchar2:
    case TypeFamily::kChar:
      return parsed.end - begin <= 4;  // no BYTE or CHAR behind the length
    case TypeFamily::kDate:
    case TypeFamily::kClob:
    case TypeFamily::kBlob:
    case TypeFamily::kRaw:
      return true;
    default:
      return false;
  }
}

void RewriteVariable(PieceList& pieces, std::size_t name) {
  const std::size_t type_at = pieces.IsWord(name + 1, "CONSTANT") ? name + 2 : name + 1;
  if (pieces.IsAnyWord(type_at, {"PLS_INTEGER", "BINARY_INTEGER", "SIMPLE_INTEGER"})) {
    return pieces.Replace(type_at, "INT");
  }
  const auto parsed = TryParseType(pieces, type_at);
  if (!parsed || IsServerType(pieces, *parsed, type_at)) return;
  pieces.Remove(type_at, parsed->end);
  pieces.Replace(type_at, StorageType(parsed->type));
}

// From DECLARE to its BEGIN, which is returned, a name begins each declaration.
std::size_t RewriteDeclarations(PieceList& pieces, std::size_t declare) {
  std::size_t i = declare + 1;
  for (; i < pieces.Size() && !pieces.IsWord(i, "BEGIN"); ++i) {
    const bool begins = i == declare + 1 || pieces.IsSymbol(i - 1, ";");
    if (begins && pieces.IsName(i)) RewriteVariable(pieces, i);
  }
  return i;
}

}  // namespace

void RewriteBlock(PieceList& pieces, const RewriteNested& rewrite) {
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    if (pieces.IsWord(i, "DECLARE")) i = RewriteDeclarations(pieces, i);
    if (!pieces.AreWords(i, {"EXECUTE", "IMMEDIATE"}) || pieces.Kind(i + 2) != TokenKind::kString) continue;
    const std::string text = StringValue(pieces.Text(i + 2));
    const std::string rewritten = rewrite(text);
    if (rewritten != text) pieces.Replace(i + 2, QuoteLiteral(rewritten));
  }
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Rewrite.h"

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/Blocks.h"
#include "oci/mariadb/sql/DateFunctions.h"
#include "oci/mariadb/sql/DdlRewrite.h"
#include "oci/mariadb/sql/DictionaryViews.h"
#include "oci/mariadb/sql/Functions.h"
#include "oci/mariadb/sql/PieceList.h"
#include "oci/mariadb/sql/SelectNames.h"
#include "oci/mariadb/sql/Spelling.h"
#include "oci/mariadb/sql/StatementKind.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// A semicolon ends a statement of PL/SQL; plain SQL holds none.
void RefuseSemicolon(const PieceList& pieces) {
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    if (pieces.IsSymbol(i, ";")) throw OraError(911);
  }
}

std::string PlaceholderName(std::string_view text) {
  text.remove_prefix(1);
  if (!text.starts_with('"')) return UpperCase(text);
  return std::string(text.substr(1, text.size() - 2));
}

// The server takes values through question marks and gives none back.
void RefuseOutput(const PieceList& pieces, std::size_t i) {
  if (pieces.IsSymbol(i + 1, ":=") || (i > 0 && pieces.IsWord(i - 1, "INTO"))) {
    throw Unimplemented("a value handed back through the placeholder " + std::string(pieces.Text(i)));
  }
}

std::vector<Placeholder> TakePlaceholders(PieceList& pieces) {
  std::vector<Placeholder> placeholders;
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    if (pieces.Kind(i) != TokenKind::kPlaceholder || pieces.IsRemoved(i)) continue;
    RefuseOutput(pieces, i);
    placeholders.push_back({PlaceholderName(pieces.Text(i)), std::string(pieces.DateMask(i))});
    pieces.Replace(i, "?");
  }
  return placeholders;
}

bool DrawsSequence(const PieceList& pieces) {
  if (!pieces.Mentions({NotedWord::kNextval})) return false;
  for (std::size_t i = 2; i < pieces.Size(); ++i) {
    if (pieces.IsWord(i, "NEXTVAL") && pieces.IsSymbol(i - 1, ".")) return true;
  }
  return false;
}

bool LocksRows(const PieceList& pieces) {
  if (!pieces.Mentions({NotedWord::kFor})) return false;
  for (std::size_t i = 0; i + 1 < pieces.Size(); ++i) {
    if (pieces.AreWords(i, {"FOR", "UPDATE"})) return true;
  }
  return false;
}

Rewritten RewriteAtDepth(std::string_view oracle_sql, int depth);

// The text of an EXECUTE IMMEDIATE. Its placeholders are given their values by the server, which converts
// none. A text within a text has its quotes doubled once more at each level, hence the limit.
std::string NestedText(std::string_view oracle_sql, int depth) {
  constexpr int kDeepest = 4;
  if (depth > kDeepest) throw Unimplemented("EXECUTE IMMEDIATE nested more than four deep");
  Rewritten nested = RewriteAtDepth(oracle_sql, depth);
  for (const Placeholder& placeholder : nested.placeholders) {
    if (!placeholder.date_mask.empty()) throw Unimplemented("TO_DATE of a placeholder in EXECUTE IMMEDIATE");
  }
  return std::move(nested.text);
}

Rewritten RewriteAtDepth(std::string_view oracle_sql, int depth) {
  PieceList pieces(oracle_sql);
  const StatementKind kind = ClassifyStatement(pieces);
  if (!kind.is_block && !kind.is_stored_program) RefuseSemicolon(pieces);

  Rewritten rewritten;
  rewritten.type = kind.type;
  rewritten.is_empty = pieces.Size() == 0;
  rewritten.is_ddl = kind.is_ddl;
  rewritten.is_block = kind.is_block;
  rewritten.is_query = kind.type == OCI_STMT_SELECT;
  rewritten.draws_sequence = DrawsSequence(pieces);
  rewritten.locks_rows = rewritten.is_query && LocksRows(pieces);
  rewritten.no_wait = pieces.Mentions({NotedWord::kNowait});
  rewritten.target_table = TargetTable(pieces);

  RewriteSpelling(pieces);
  RewriteDateFunctions(pieces);
  RewriteFunctions(pieces);
  RewriteDictionaryViews(pieces);
  if (kind.is_block || kind.is_stored_program) {
    RewriteBlock(pieces, [depth](std::string_view text) { return NestedText(text, depth + 1); });
  }
  // All of them, before a definition loses the parts that the server has not.
  if (!kind.is_stored_program) rewritten.placeholders = TakePlaceholders(pieces);
  RewriteDdl(pieces);
  KeepSelectNames(pieces);
  rewritten.text = pieces.Join();
  return rewritten;
}

}  // namespace

Rewritten Rewrite(std::string_view oracle_sql) { return RewriteAtDepth(oracle_sql, 0); }

ub2 StatementType(std::string_view oracle_sql) {
  try {
    return ClassifyStatement(PieceList(oracle_sql)).type;
  } catch (const OraError&) {
    return OCI_STMT_UNKNOWN;
  }
}

}  // namespace ocimaria::sql

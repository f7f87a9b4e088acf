// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DdlRewrite.h"

#include "oci/mariadb/sql/StorageOptions.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// DROP TABLE t CASCADE CONSTRAINTS PURGE: both say what the server does anyhow.
void RewriteDropTable(PieceList& pieces) {
  for (std::size_t i = EndOfName(pieces, 2); i < pieces.Size(); ++i) {
    if (pieces.IsAnyWord(i, {"CASCADE", "CONSTRAINTS", "PURGE"})) pieces.Remove(i, i + 1);
  }
}

void RewriteDropIndex(PieceList& pieces) {
  const std::size_t behind = EndOfName(pieces, 2);
  if (!pieces.IsWord(behind, "ON"))
    throw Unimplemented("DROP INDEX by name alone; write DROP INDEX name ON table");
}

// The server's indexes have none of Oracle's storage.
void RewriteCreateIndex(PieceList& pieces, std::size_t index) {
  const std::size_t on = EndOfName(pieces, index + 1);
  const std::size_t open = EndOfName(pieces, on + 1);
  if (!pieces.IsWord(on, "ON") || !pieces.IsSymbol(open, "(")) return;
  for (std::size_t i = pieces.ClosingOf(open) + 1; i < pieces.Size();) {
    const std::size_t behind = SkipStorageOption(pieces, i);
    if (behind == i) throw OraError(922);
    pieces.Remove(i, behind);
    i = behind;
  }
}

// A bound that the server's 64 bits cannot hold is no bound.
void RewriteBound(PieceList& pieces, std::size_t i, std::string_view no_bound) {
  constexpr std::size_t kMostDigits = 18;
  const std::size_t number = pieces.IsSymbol(i + 1, "-") ? i + 2 : i + 1;
  if (pieces.Kind(number) != TokenKind::kNumber || pieces.Text(number).size() <= kMostDigits) return;
  pieces.Remove(i, number + 1);
  pieces.Replace(i, std::string(no_bound));
}

// Numbers come in their order here, whatever is asked.
void RewriteSequence(PieceList& pieces) {
  for (std::size_t i = EndOfName(pieces, 2); i < pieces.Size(); ++i) {
    if (pieces.IsAnyWord(i, {"ORDER", "NOORDER"})) pieces.Remove(i, i + 1);
    if (pieces.IsWord(i, "MAXVALUE")) RewriteBound(pieces, i, "NOMAXVALUE");
    if (pieces.IsWord(i, "MINVALUE")) RewriteBound(pieces, i, "NOMINVALUE");
  }
}

// An increment that is left open is the server's auto_increment_increment: 1 by default, and in a Galera
// cluster the number of its nodes, which keeps their values apart and is the only increment that it lets be
// cached.
void RewriteCreateSequence(PieceList& pieces) {
  RewriteSequence(pieces);
  const std::size_t options = EndOfName(pieces, 2);
  for (std::size_t i = options; i < pieces.Size(); ++i)
    if (pieces.IsWord(i, "INCREMENT")) return;
  pieces.InsertAfter(options - 1, " INCREMENT BY 0");
}

void RewriteCommentOn(PieceList& pieces) {
  const std::size_t is = EndOfName(pieces, 3);
  if (!pieces.IsWord(2, "TABLE") || !pieces.IsWord(is, "IS"))
    throw Unimplemented("COMMENT ON anything but a table");
  pieces.Replace(0, "ALTER");
  pieces.Remove(1, 2);
  pieces.Replace(is, "COMMENT =");
}

void RewriteCreate(PieceList& pieces) {
  if (pieces.IsWord(1, "TABLE")) return RewriteCreateTable(pieces);
  if (pieces.IsWord(1, "SEQUENCE")) return RewriteCreateSequence(pieces);
  if (pieces.IsWord(1, "INDEX")) return RewriteCreateIndex(pieces, 1);
  if (pieces.AreWords(1, {"UNIQUE", "INDEX"})) return RewriteCreateIndex(pieces, 2);
  if (pieces.AreWords(1, {"BITMAP", "INDEX"})) throw Unimplemented("a bitmap index");
  if (pieces.IsAnyWord(1, {"GLOBAL", "PRIVATE"}) && pieces.IsWord(2, "TEMPORARY")) {
    throw Unimplemented("a temporary table");
  }
}

void RewriteDrop(PieceList& pieces) {
  if (pieces.IsAnyWord(1, {"TABLE", "VIEW"})) RewriteDropTable(pieces);
  if (pieces.IsWord(1, "INDEX")) RewriteDropIndex(pieces);
}

void RewriteAlter(PieceList& pieces) {
  if (pieces.IsWord(1, "TABLE")) RewriteAlterTable(pieces);
  if (pieces.IsWord(1, "SEQUENCE")) RewriteSequence(pieces);
  if (pieces.IsAnyWord(1, {"SESSION", "SYSTEM"})) throw Unimplemented("ALTER " + UpperCase(pieces.Text(1)));
}

}  // namespace

void RewriteDdl(PieceList& pieces) {
  if (pieces.IsWord(0, "CREATE")) return RewriteCreate(pieces);
  if (pieces.IsWord(0, "DROP")) return RewriteDrop(pieces);
  if (pieces.IsWord(0, "ALTER")) return RewriteAlter(pieces);
  if (pieces.IsWord(0, "RENAME")) return pieces.Replace(0, "RENAME TABLE");
  if (pieces.AreWords(0, {"COMMENT", "ON"})) return RewriteCommentOn(pieces);
  if (pieces.AreWords(0, {"LOCK", "TABLE"})) throw Unimplemented("LOCK TABLE");
  if (pieces.AreWords(0, {"EXPLAIN", "PLAN"})) throw Unimplemented("EXPLAIN PLAN");
  if (pieces.IsWord(0, "MERGE")) throw Unimplemented("MERGE");
}

}  // namespace ocimaria::sql

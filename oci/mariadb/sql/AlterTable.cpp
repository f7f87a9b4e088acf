// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/DdlRewrite.h"
#include "oci/mariadb/sql/StorageOptions.h"
#include "oci/mariadb/sql/TableDefinition.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// ADD (a NUMBER, b DATE): further constraints go inside the parentheses.
void RewriteAddedList(PieceList& pieces, std::size_t open) {
  const std::size_t close = pieces.ClosingOf(open);
  TableDefinition definition(pieces);
  for (const Range& element : SplitAtCommas(pieces, open, close)) definition.RewriteElement(element);
  pieces.InsertBefore(close, definition.FinishColumns(", "));
}

void RewriteAdd(PieceList& pieces, std::size_t i) {
  if (pieces.IsSymbol(i + 1, "(")) return RewriteAddedList(pieces, i + 1);
  TableDefinition definition(pieces);
  definition.RewriteElement({i + 1, pieces.Size()});
  pieces.InsertAfter(pieces.Size() - 1, definition.FinishColumns(", ADD "));
}

// DROP (a, b) is DROP a, DROP b to the server.
void RewriteDropList(PieceList& pieces, std::size_t open) {
  const std::size_t close = pieces.ClosingOf(open);
  pieces.Remove(open, open + 1);
  for (const Range& name : SplitAtCommas(pieces, open, close)) {
    if (name.begin > open + 1) pieces.InsertBefore(name.begin, "DROP ");
  }
  pieces.Remove(close, close + 1);
}

void RemoveTail(PieceList& pieces, std::size_t i) {
  while (pieces.IsAnyWord(i, {"CASCADE", "CONSTRAINTS", "KEEP", "DROP", "INDEX"})) {
    pieces.Remove(i, i + 1);
    ++i;
  }
}

// The dictionary views name a primary key after its table; the server knows it as the primary key alone.
void RewriteDropConstraint(PieceList& pieces, std::size_t name, std::string_view table) {
  if (DictionaryName(pieces, name) == "PK_" + std::string(table)) {
    pieces.Replace(name - 1, "PRIMARY");
    pieces.Replace(name, "KEY");
  }
  RemoveTail(pieces, name + 1);
}

void RewriteDrop(PieceList& pieces, std::size_t i, std::string_view table) {
  if (pieces.IsSymbol(i + 1, "(")) {
    RewriteDropList(pieces, i + 1);
  } else if (pieces.IsWord(i + 1, "CONSTRAINT")) {
    RewriteDropConstraint(pieces, i + 2, table);
  } else if (pieces.IsWord(i + 1, "UNIQUE")) {
    throw Unimplemented("DROP UNIQUE by columns; drop the constraint by its name");
  } else {
    RemoveTail(pieces, i + 3);
  }
}

}  // namespace

void RewriteAlterTable(PieceList& pieces) {
  constexpr std::size_t kName = 2;
  std::size_t i = EndOfName(pieces, kName);
  if (i == kName) throw OraError(903);
  const std::string table = DictionaryName(pieces, i - 1);
  if (pieces.IsWord(i, "ADD")) return RewriteAdd(pieces, i);
  if (pieces.IsWord(i, "DROP")) return RewriteDrop(pieces, i, table);
  if (pieces.IsWord(i, "MODIFY")) throw Unimplemented("ALTER TABLE MODIFY");
  for (std::size_t behind = SkipStorageOption(pieces, i); behind != i;
       behind = SkipStorageOption(pieces, i)) {
    pieces.Remove(i, behind);
    i = behind;
  }
}

}  // namespace ocimaria::sql

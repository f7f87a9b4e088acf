// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/DdlRewrite.h"
#include "oci/mariadb/sql/StorageOptions.h"
#include "oci/mariadb/sql/TableDefinition.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

bool IsOneName(const Range& element) { return element.Size() == 1; }

void RewriteElements(PieceList& pieces, std::size_t open, std::size_t close) {
  const auto elements = SplitAtCommas(pieces, open, close);
  if (pieces.IsWord(close + 1, "AS") && std::ranges::all_of(elements, IsOneName)) {
    throw Unimplemented(
        "CREATE TABLE with new column names for AS SELECT; give the columns their names in the query");
  }
  TableDefinition definition(pieces);
  for (const Range& element : elements) definition.RewriteElement(element);
  pieces.InsertBefore(close, definition.FinishColumns(", "));
}

}  // namespace

void RewriteCreateTable(PieceList& pieces) {
  constexpr std::size_t kName = 2;
  std::size_t i = EndOfName(pieces, kName);
  if (i == kName) throw OraError(903);
  if (pieces.IsSymbol(i, "(")) {
    const std::size_t close = pieces.ClosingOf(i);
    if (close == i + 1) throw OraError(904, {""});
    RewriteElements(pieces, i, close);
    i = close + 1;
  }
  // A query and the partitions are left to the server.
  while (i < pieces.Size() && !pieces.IsAnyWord(i, {"AS", "PARTITION"})) {
    const std::size_t behind = SkipStorageOption(pieces, i);
    if (behind == i) throw OraError(922);
    pieces.Remove(i, behind);
    i = behind;
  }
}

}  // namespace ocimaria::sql

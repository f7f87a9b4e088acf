// SPDX-License-Identifier: Apache-2.0
// The table that a statement changes, by its text.
#pragma once

#include <cstddef>
#include <string>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Of an INSERT, UPDATE, DELETE, MERGE, TRUNCATE, or a CREATE, ALTER or DROP of a table: its name without the
// schema, upper case unless quoted. Empty for anything else.
std::string TargetTable(const PieceList& pieces);

// The name that begins at `i`, schema and points included: where it ends. `i` itself when there is no name.
std::size_t EndOfName(const PieceList& pieces, std::size_t i);

// A name as the dictionary has it: upper case, or as written between its quotation marks.
std::string DictionaryName(const PieceList& pieces, std::size_t i);

}  // namespace ocimaria::sql

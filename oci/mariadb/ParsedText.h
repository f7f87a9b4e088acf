// SPDX-License-Identifier: Apache-2.0
// A statement's text and what the library works out from it alone, before any server sees it. Texts that are
// likely to come again (queries, and what takes its values through binds) are worked out once for the process
// and shared; no DDL concerns that. Immutable once made: any thread.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/DateMask.h"
#include "oci/mariadb/sql/Rewrite.h"

namespace ocimaria {

struct ParsedText {
  sql::Rewritten sql;                                       // as the server gets it
  std::vector<std::shared_ptr<const sql::DateMask>> masks;  // by placeholder; null: bound as it is
  bool is_plain_insert = false;  // INSERT … VALUES and no query inside: what the server takes in bulk
};

// Throws OraError, as sql::Rewrite.
std::shared_ptr<const ParsedText> Parse(std::string_view oracle_text);

}  // namespace ocimaria

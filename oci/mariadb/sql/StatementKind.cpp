// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/StatementKind.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace ocimaria::sql {
namespace {

struct Verb {
  std::string_view word;
  ub2 type;
  bool is_ddl;
};

constexpr ub2 kExplain = 15;

constexpr auto kVerbs = std::to_array<Verb>({
    {"SELECT", OCI_STMT_SELECT, false},  {"WITH", OCI_STMT_SELECT, false},
    {"UPDATE", OCI_STMT_UPDATE, false},  {"DELETE", OCI_STMT_DELETE, false},
    {"INSERT", OCI_STMT_INSERT, false},  {"CREATE", OCI_STMT_CREATE, true},
    {"DROP", OCI_STMT_DROP, true},       {"ALTER", OCI_STMT_ALTER, true},
    {"BEGIN", OCI_STMT_BEGIN, false},    {"DECLARE", OCI_STMT_DECLARE, false},
    {"CALL", OCI_STMT_CALL, false},      {"EXPLAIN", kExplain, false},
    {"MERGE", OCI_STMT_MERGE, false},    {"ROLLBACK", OCI_STMT_ROLLBACK, false},
    {"COMMIT", OCI_STMT_COMMIT, false},  {"TRUNCATE", OCI_STMT_UNKNOWN, true},
    {"RENAME", OCI_STMT_UNKNOWN, true},  {"GRANT", OCI_STMT_UNKNOWN, true},
    {"REVOKE", OCI_STMT_UNKNOWN, true},  {"COMMENT", OCI_STMT_UNKNOWN, true},
    {"ANALYZE", OCI_STMT_UNKNOWN, true},
});

// Opening parentheses of a query and the labels of a block stand before the verb.
std::size_t SkipToVerb(const PieceList& pieces) {
  std::size_t i = 0;
  for (;;) {
    if (pieces.IsSymbol(i, "(")) {
      ++i;
    } else if (pieces.IsSymbol(i, "<<") && pieces.IsSymbol(i + 2, ">>")) {
      i += 3;
    } else {
      return i;
    }
  }
}

bool CreatesStoredProgram(const PieceList& pieces, std::size_t i) {
  if (pieces.AreWords(i, {"OR", "REPLACE"})) i += 2;
  return pieces.IsAnyWord(i, {"PROCEDURE", "FUNCTION", "TRIGGER", "PACKAGE"});
}

}  // namespace

StatementKind ClassifyStatement(const PieceList& pieces) {
  StatementKind kind;
  const std::size_t at = SkipToVerb(pieces);
  const auto verb = std::ranges::find_if(kVerbs, [&](const Verb& v) { return pieces.IsWord(at, v.word); });
  if (verb == kVerbs.end()) return kind;
  kind.type = verb->type;
  kind.is_ddl = verb->is_ddl;
  kind.is_block = kind.type == OCI_STMT_BEGIN || kind.type == OCI_STMT_DECLARE;
  kind.is_stored_program = kind.type == OCI_STMT_CREATE && CreatesStoredProgram(pieces, at + 1);
  return kind;
}

}  // namespace ocimaria::sql

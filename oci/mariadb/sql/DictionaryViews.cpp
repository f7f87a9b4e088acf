// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DictionaryViews.h"

#include <optional>
#include <vector>

#include "oci/mariadb/sql/DictionaryQueries.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

// Words that may follow a table and are no alias of it.
bool EndsTable(const PieceList& pieces, std::size_t i) {
  return pieces.IsAnyWord(
      i, {"WHERE",  "GROUP", "ORDER", "HAVING",  "UNION", "MINUS", "INTERSECT", "CONNECT", "START",
          "FOR",    "JOIN",  "INNER", "LEFT",    "RIGHT", "FULL",  "CROSS",     "ON",      "USING",
          "OFFSET", "FETCH", "LOOP",  "NATURAL", "INTO",  "SET",   "WITH",      "LIMIT",   "RETURNING"});
}

bool HasAlias(const PieceList& pieces, std::size_t i) { return pieces.IsName(i) && !EndsTable(pieces, i); }

// Follows the FROM lists of a statement, those of subqueries included.
class FromLists {
 public:
  // The piece at `i` stands where a table may.
  bool IsTablePlace(const PieceList& pieces, std::size_t i) {
    const bool is_place = m_expects_table;
    m_expects_table = false;
    if (pieces.IsSymbol(i, "(")) {
      m_outer.push_back(m_in_from);
      m_expects_table = is_place;  // FROM (t JOIN u)
    } else if (pieces.IsSymbol(i, ")") && !m_outer.empty()) {
      m_in_from = m_outer.back();
      m_outer.pop_back();
    } else if (pieces.IsAnyWord(i, {"FROM", "JOIN"})) {
      m_in_from = m_expects_table = true;
    } else if (pieces.IsSymbol(i, ",")) {
      m_expects_table = m_in_from;
    } else if (pieces.IsAnyWord(i, {"SELECT", "WHERE", "GROUP", "ORDER", "HAVING", "SET", "VALUES"}) ||
               pieces.IsSymbol(i, ";")) {
      m_in_from = false;
    }
    return is_place;
  }

 private:
  std::vector<bool> m_outer;
  bool m_in_from = false;
  bool m_expects_table = false;
};

// DUAL stands for itself unless something is asked of it that the server's does not have.
bool IsDualAsTable(const PieceList& pieces, std::size_t i) {
  if (!pieces.IsWord(i, "DUAL")) return false;
  return HasAlias(pieces, i + 1) || (i >= 2 && pieces.IsSymbol(i - 2, "*")) ||
         (i >= 2 && pieces.IsWord(i - 2, "DUMMY"));
}

std::optional<std::string> QueryFor(const PieceList& pieces, std::size_t i) {
  if (pieces.Kind(i) != TokenKind::kWord || pieces.IsSymbol(i + 1, ".") || pieces.IsSymbol(i + 1, "(")) {
    return std::nullopt;
  }
  if (IsDualAsTable(pieces, i)) return "SELECT 'X' DUMMY FROM DUAL";
  return DictionaryQuery(UpperCase(pieces.Text(i)));
}

void ReplaceTable(PieceList& pieces, std::size_t i, const std::string& query) {
  std::string table = "(" + query + ")";
  if (!HasAlias(pieces, i + 1)) table += " \"" + UpperCase(pieces.Text(i)) + "\"";
  pieces.Replace(i, std::move(table));
}

}  // namespace

void RewriteDictionaryViews(PieceList& pieces) {
  if (!pieces.Mentions({NotedWord::kFrom, NotedWord::kJoin})) return;
  FromLists lists;
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    if (!lists.IsTablePlace(pieces, i)) continue;
    const bool has_owner = pieces.IsWord(i, "SYS") && pieces.IsSymbol(i + 1, ".");
    const std::size_t view = has_owner ? i + 2 : i;
    const auto query = QueryFor(pieces, view);
    if (!query) continue;
    ReplaceTable(pieces, view, *query);
    if (has_owner) pieces.Remove(i, i + 2);
  }
}

}  // namespace ocimaria::sql

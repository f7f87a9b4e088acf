// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/TableDefinition.h"

#include <algorithm>
#include <set>

#include "oci/mariadb/sql/ErrorMap.h"
#include "oci/mariadb/sql/StorageOptions.h"
#include "oci/mariadb/sql/StorageType.h"
#include "oci/mariadb/sql/TargetTable.h"
#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// The server's limit with room for its own bytes.
constexpr std::size_t kMostRowBytes = 65000;
constexpr std::size_t kMostColumns = 1000;

bool IsConstraint(const PieceList& pieces, std::size_t i) {
  return pieces.IsWord(i, "CONSTRAINT") || pieces.AreWords(i, {"PRIMARY", "KEY"}) ||
         pieces.AreWords(i, {"FOREIGN", "KEY"}) ||
         (pieces.IsAnyWord(i, {"UNIQUE", "CHECK"}) && pieces.IsSymbol(i + 1, "("));
}

// Behind DEFAULT and its expression, which ends where the next part of the column begins.
std::size_t SkipDefault(const PieceList& pieces, std::size_t i, std::size_t end) {
  if (pieces.AreWords(i, {"DEFAULT", "ON", "NULL"})) throw Unimplemented("DEFAULT ON NULL");
  for (std::size_t at = i + 1; at < end; ++at) {
    if (pieces.IsSymbol(at, "(")) at = pieces.ClosingOf(at);
    if (pieces.IsAnyWord(
            at, {"CONSTRAINT", "NOT", "PRIMARY", "UNIQUE", "CHECK", "REFERENCES", "ENABLE", "DISABLE"})) {
      return at;
    }
  }
  return end;
}

// Behind REFERENCES table (columns) ON DELETE ….
std::size_t SkipReferences(const PieceList& pieces, std::size_t i) {
  std::size_t at = EndOfName(pieces, i + 1);
  if (pieces.IsSymbol(at, "(")) at = pieces.ClosingOf(at) + 1;
  if (pieces.AreWords(at, {"ON", "DELETE", "CASCADE"})) return at + 3;
  if (pieces.AreWords(at, {"ON", "DELETE", "SET", "NULL"})) return at + 4;
  return at;
}

}  // namespace

void TableDefinition::RewriteElement(Range element) {
  if (element.Size() == 0) throw OraError(904, {""});
  if (IsConstraint(m_pieces, element.begin)) {
    RewriteConstraint(element);
  } else {
    RewriteColumn(element);
  }
}

void TableDefinition::RewriteConstraint(Range element) {
  for (std::size_t i = element.begin; i < element.end; ++i) {
    if (m_pieces.IsSymbol(i, "(") && m_pieces.IsAnyWord(i - 1, {"KEY", "UNIQUE"})) ReadKeyColumns(i);
  }
  RemoveConstraintStates(m_pieces, element.begin, element.end);
}

void TableDefinition::ReadKeyColumns(std::size_t open) {
  for (const Range& name : SplitAtCommas(m_pieces, open, m_pieces.ClosingOf(open))) {
    m_key_columns.push_back(DictionaryName(m_pieces, name.begin));
  }
}

void TableDefinition::RewriteColumn(Range element) {
  if (!m_pieces.IsName(element.begin)) throw OraError(904, {m_pieces.Text(element.begin)});
  if (element.Size() == 1) throw OraError(2263);
  if (m_columns.size() == kMostColumns) throw OraError(1792);
  const ParsedType parsed = ParseOracleType(m_pieces, element.begin + 1);
  Column column{.name = DictionaryName(m_pieces, element.begin),
                .spelling = std::string(m_pieces.Text(element.begin)),
                .type = parsed.type,
                .type_at = element.begin + 1};
  m_pieces.Remove(column.type_at, parsed.end);
  for (std::size_t i = parsed.end; i < element.end;) i = RewriteColumnPart(i, element.end, column);
  ReplaceType(column, StorageType(column.type));
  // The server takes the comment of a generated column behind its expression only.
  if (column.is_generated) {
    m_pieces.InsertAfter(element.end - 1,
                         " COMMENT " + QuoteLiteral(ColumnComment(column.type, column.name)));
  }
  m_columns.push_back(std::move(column));
}

void TableDefinition::ReplaceType(const Column& column, const std::string& storage) {
  std::string text = storage;
  if (!column.is_generated) text += " COMMENT " + QuoteLiteral(ColumnComment(column.type, column.name));
  m_pieces.Replace(column.type_at, std::move(text));
}

// Rewrites what begins at `i`, a constraint, a default or a state, and returns where the next part begins.
std::size_t TableDefinition::RewriteColumnPart(std::size_t i, std::size_t end, Column& column) {
  if (m_pieces.IsWord(i, "CONSTRAINT")) return RewriteNamedConstraint(i, column);
  if (m_pieces.IsWord(i, "DEFAULT")) return SkipDefault(m_pieces, i, end);
  if (m_pieces.AreWords(i, {"AS", "IDENTITY"})) throw Unimplemented("an identity column");
  if (m_pieces.IsWord(i, "AS")) column.is_generated = column.stays_in_row = true;
  if (m_pieces.AreWords(i, {"PRIMARY", "KEY"}) || m_pieces.IsWord(i, "UNIQUE")) column.stays_in_row = true;
  if (m_pieces.IsSymbol(i, "(")) return m_pieces.ClosingOf(i) + 1;
  const std::size_t behind = SkipConstraintState(m_pieces, i, end);
  if (behind == i) return i + 1;
  m_pieces.Remove(i, behind);
  return behind;
}

// The server names no constraint of a column: the name of NOT NULL and of a primary key is left out, any
// other constraint goes behind the columns with its name.
std::size_t TableDefinition::RewriteNamedConstraint(std::size_t i, const Column& column) {
  const std::size_t what = i + 2;
  const std::string name = "CONSTRAINT " + std::string(m_pieces.Text(i + 1)) + " ";
  std::size_t behind = what;
  if (m_pieces.IsWord(what, "UNIQUE")) {
    behind = what + 1;
    m_additions.push_back(name + "UNIQUE (" + column.spelling + ")");
    m_key_columns.push_back(column.name);
  } else if (m_pieces.IsWord(what, "CHECK") && m_pieces.IsSymbol(what + 1, "(")) {
    behind = m_pieces.ClosingOf(what + 1) + 1;
    m_additions.push_back(name + m_pieces.Join(what, behind));
  } else if (m_pieces.IsWord(what, "REFERENCES")) {
    behind = SkipReferences(m_pieces, what);
    m_additions.push_back(name + "FOREIGN KEY (" + column.spelling + ") " + m_pieces.Join(what, behind));
    m_key_columns.push_back(column.name);
  } else if (!m_pieces.AreWords(what, {"NOT", "NULL"}) && !m_pieces.IsWord(what, "NULL") &&
             !m_pieces.AreWords(what, {"PRIMARY", "KEY"})) {
    throw OraError(922);
  }
  m_pieces.Remove(i, behind);
  return behind;
}

// The columns that may leave the row, longest first.
std::vector<TableDefinition::Column*> TableDefinition::MovableColumns() {
  const std::set<std::string> keys(m_key_columns.begin(), m_key_columns.end());
  std::vector<Column*> movable;
  for (Column& column : m_columns) {
    if (CanBeOutOfRow(column.type) && !column.stays_in_row && !keys.contains(column.name)) {
      movable.push_back(&column);
    }
  }
  std::ranges::stable_sort(movable, std::ranges::greater{},
                           [](const Column* column) { return column->type.length; });
  return movable;
}

void TableDefinition::MoveOutOfRow(const Column& column) {
  ReplaceType(column, OutOfRowStorageType(column.type));
  m_additions.push_back("CONSTRAINT \"" + std::string(kLengthCheckPrefix) + column.name +
                        "\" CHECK (CHAR_LENGTH(" + column.spelling +
                        ") <= " + std::to_string(column.type.length) + ")");
}

void TableDefinition::ShortenRow() {
  std::size_t bytes = 0;
  for (const Column& column : m_columns) bytes += RowBytes(column.type);
  if (bytes <= kMostRowBytes) return;
  for (const Column* column : MovableColumns()) {
    if (bytes <= kMostRowBytes) break;
    bytes = bytes - RowBytes(column->type) + kOutOfRowBytes;
    MoveOutOfRow(*column);
  }
}

std::string TableDefinition::FinishColumns(std::string_view separator) {
  ShortenRow();
  std::string text;
  for (const std::string& addition : m_additions) text.append(separator).append(addition);
  return text;
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// The columns and constraints in a CREATE TABLE or ALTER TABLE … ADD: types are replaced by what stores them,
// the declared type becomes the column's comment, and what the server writes otherwise is put right.
//
// The server limits the columns of a row to 65,535 bytes together. Where the declared columns pass it, the
// longest texts that no key needs are kept outside the row, as text columns under a check of their length. (A
// copy by CREATE TABLE … AS SELECT keeps the column and loses the check.)
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

class TableDefinition {
 public:
  explicit TableDefinition(PieceList& pieces) : m_pieces(pieces) {}

  // One element of the list: a column or a constraint. Throws OraError: ORA-00904 for a column without a
  // name, ORA-02263 for one without a type, what ParseOracleType throws, ORA-03001 for what cannot be had.
  void RewriteElement(Range element);

  // What is to be added to the elements: constraints that their columns cannot name themselves, and checks of
  // length, the separator before each. Call it when all elements are through.
  std::string FinishColumns(std::string_view separator);

 private:
  struct Column {
    std::string name;      // as the dictionary has it
    std::string spelling;  // as written
    OracleType type;
    std::size_t type_at;  // the piece that holds the type's replacement
    bool is_generated = false;
    bool stays_in_row = false;
  };

  void RewriteColumn(Range element);
  void RewriteConstraint(Range element);
  std::size_t RewriteColumnPart(std::size_t i, std::size_t end, Column& column);
  std::size_t RewriteNamedConstraint(std::size_t i, const Column& column);
  void ReadKeyColumns(std::size_t open);
  void MoveOutOfRow(const Column& column);
  void ShortenRow();
  void ReplaceType(const Column& column, const std::string& storage);
  std::vector<Column*> MovableColumns();

  PieceList& m_pieces;
  std::vector<Column> m_columns;
  std::vector<std::string> m_key_columns;
  std::vector<std::string> m_additions;
};

}  // namespace ocimaria::sql

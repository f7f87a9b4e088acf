// SPDX-License-Identifier: Apache-2.0
// The rows of an executed query, held by the client, on their way to the caller's defines. Needs no round
// trip. One thread at a time; lives no longer than the prepared statement behind it.
#pragma once

#include <mysql.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "oci/mariadb/Define.h"
#include "oci/mariadb/OutputValue.h"
#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

class ResultRows {
 public:
  explicit ResultRows(PreparedStatement& statement);  // stores the result
  ~ResultRows();
  ResultRows(const ResultRows&) = delete;
  ResultRows& operator=(const ResultRows&) = delete;

  std::uint64_t Count() { return m_statement.StoredRows(); }
  void PadTo(std::size_t column, std::size_t characters);  // with blanks
  bool Next();                                             // false behind the last row
  bool AtEnd() const { return m_at_end; }

  // The current row's value of a column, from 0. Text stays valid until Next.
  FetchedValue Value(std::size_t column) const;
  std::size_t ColumnCount() const { return m_cells.size(); }

 private:
  struct Cell {
    enum_field_types wire = MYSQL_TYPE_STRING;
    bool is_decimal = false;
    unsigned fraction_digits = 0;
    bool is_unsigned = false;
    std::uint64_t number = 0;
    MYSQL_TIME time{};
    std::vector<char> text;
    unsigned long length = 0;
    my_bool is_null = 0;
    std::size_t pad_to = 0;  // characters
  };
  static Cell CellFor(const MYSQL_FIELD& field);
  static MYSQL_BIND BindFor(Cell& cell);
  static void Pad(Cell& cell);

  PreparedStatement& m_statement;
  std::vector<Cell> m_cells;
  std::vector<MYSQL_BIND> m_binds;
  bool m_at_end = false;
};

}  // namespace ocimaria

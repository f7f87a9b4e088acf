// SPDX-License-Identifier: Apache-2.0
// Rows of an array execute, converted and ready to be sent. A batch holds less than eight megabytes, half of
// the smallest packet limit that servers come with, or one row. One thread at a time.
#pragma once

#include <optional>
#include <vector>

#include "oci/mariadb/Errors.h"
#include "oci/mariadb/ParameterColumn.h"

namespace ocimaria {

class ParameterBatch {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{8} * 1024 * 1024;

  explicit ParameterBatch(std::vector<ParameterColumn> columns) : m_columns(std::move(columns)) {}

  // Converts elements from `first` up to, not including, `end`, or as many as a batch holds, or up to one
  // that cannot be converted; that one is then the Problem. Gives the element behind the last one taken.
  ub4 Fill(ub4 first, ub4 end);
  const std::optional<RowError>& Problem() const { return m_problem; }

  ub4 FirstElement() const { return m_first; }
  ub4 Rows() const { return m_rows; }
  std::size_t Bytes() const { return m_bytes; }  // at most, on the wire

  // Binds for `execute`, valid until the next call: an array from a row on, or one row.
  MYSQL_BIND* Array(ub4 row);
  MYSQL_BIND* Single(ub4 row);

 private:
  std::size_t AppendRow(ub4 element);

  std::vector<ParameterColumn> m_columns;
  std::vector<MYSQL_BIND> m_binds;
  std::optional<RowError> m_problem;
  ub4 m_first = 0;
  ub4 m_rows = 0;
  std::size_t m_bytes = 0;
};

}  // namespace ocimaria

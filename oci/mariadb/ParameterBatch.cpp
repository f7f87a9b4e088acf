// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ParameterBatch.h"

#include <algorithm>

namespace ocimaria {

ub4 ParameterBatch::Fill(ub4 first, ub4 end) {
  constexpr ub4 kRoom = 1000;  // a caller may claim any number of rows
  for (ParameterColumn& column : m_columns) {
    column.Clear();
    column.Reserve(std::min(end - first, kRoom));
  }
  m_problem.reset();
  m_first = first;
  m_rows = 0;
  m_bytes = 0;
  for (ub4 element = first; element < end; ++element) {
    std::size_t row_bytes = 0;
    try {
      row_bytes = AppendRow(element);
    } catch (const OraError& error) {
      for (ParameterColumn& column : m_columns) column.Resize(m_rows);
      m_problem = RowError{element, error};
      return element;
    }
    if (m_bytes + row_bytes >= kMostBytes &&
        m_rows > 0) {  // the row that crossed the limit belongs to the next batch
      for (ParameterColumn& column : m_columns) column.Resize(m_rows);
      return element;
    }
    ++m_rows;
    m_bytes += row_bytes;
  }
  return end;
}

std::size_t ParameterBatch::AppendRow(ub4 element) {
  std::size_t bytes = 0;
  for (ParameterColumn& column : m_columns) bytes += column.Append(element);
  return bytes;
}

MYSQL_BIND* ParameterBatch::Array(ub4 row) {
  m_binds.clear();
  m_binds.reserve(m_columns.size());
  for (ParameterColumn& column : m_columns) m_binds.push_back(column.ArrayBind(row));
  return m_binds.data();
}

MYSQL_BIND* ParameterBatch::Single(ub4 row) {
  m_binds.clear();
  m_binds.reserve(m_columns.size());
  for (ParameterColumn& column : m_columns) m_binds.push_back(column.SingleBind(row));
  return m_binds.data();
}

}  // namespace ocimaria

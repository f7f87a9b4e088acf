// SPDX-License-Identifier: Apache-2.0
#include "bench/bare/Rows.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

namespace bare {
namespace {

enum_field_types WireOf(enum_field_types type) {
  switch (type) {
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
      return MYSQL_TYPE_DOUBLE;
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
      return MYSQL_TYPE_DATETIME;
    default:
      return MYSQL_TYPE_STRING;
  }
}

MYSQL_TIME TimeOf(const char* text) {
  MYSQL_TIME time{};
  time.time_type = MYSQL_TIMESTAMP_DATETIME;
  std::sscanf(text, "%u-%u-%u %u:%u:%u", &time.year, &time.month, &time.day, &time.hour, &time.minute,
              &time.second);
  return time;
}

}  // namespace

Rows::Rows(const std::vector<enum_field_types>& types, const std::string& file) {
  for (const enum_field_types type : types) m_columns.push_back({WireOf(type), {}, {}, {}, {}, {}});
  ReadFile(file);
  for (Column& column : m_columns)
    for (const MYSQL_TIME& time : column.times) column.pointers.push_back(&time);
}

void Rows::ReadFile(const std::string& file) {
  std::ostringstream content;
  content << std::ifstream(file).rdbuf();
  m_text = content.str();
  for (char* at = m_text.data(); at < m_text.data() + m_text.size(); ++m_count)
    for (size_t i = 0; i < m_columns.size(); ++i) {
      const size_t length = std::strcspn(at, i + 1 < m_columns.size() ? "\t\n" : "\n");
      if (at[length] == '\0' || (at[length] == '\n') != (i + 1 == m_columns.size())) {
        std::cerr << file << ": row " << m_count + 1 << " does not have " << m_columns.size() << " values\n";
        std::_Exit(1);
      }
      at[length] = '\0';
      Append(m_columns[i], at, length);
      at += length + 1;
    }
}

void Rows::Append(Column& column, char* value, size_t length) {
  const bool is_null = std::string_view(value, length) == "\\N";
  column.indicators.push_back(is_null ? STMT_INDICATOR_NULL : STMT_INDICATOR_NONE);
  if (column.wire == MYSQL_TYPE_DOUBLE) {
    column.numbers.push_back(is_null ? 0 : std::strtod(value, nullptr));
  } else if (column.wire == MYSQL_TYPE_DATETIME) {
    column.times.push_back(is_null ? MYSQL_TIME{} : TimeOf(value));
  } else {
    column.pointers.push_back(value);
    column.lengths.push_back(length);
  }
}

MYSQL_BIND Rows::BindOf(Column& column, size_t first) {
  MYSQL_BIND bind{};
  bind.buffer_type = column.wire;
  bind.u.indicator = column.indicators.data() + first;
  bind.length = column.lengths.empty() ? nullptr : column.lengths.data() + first;
  bind.buffer = column.wire == MYSQL_TYPE_DOUBLE ? static_cast<void*>(column.numbers.data() + first)
                                                 : static_cast<void*>(column.pointers.data() + first);
  return bind;
}

MYSQL_BIND* Rows::Binds(size_t first) {
  m_binds.clear();
  for (Column& column : m_columns) m_binds.push_back(BindOf(column, first));
  return m_binds.data();
}

}  // namespace bare

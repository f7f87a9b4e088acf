// SPDX-License-Identifier: Apache-2.0
// The rows of a file of tab-separated values, converted to the arrays that the client library sends: numbers
// as doubles, dates as MYSQL_TIME, text as it is. Immutable but for the binds that it lends.
#pragma once

#include <mysql.h>

#include <string>
#include <vector>

namespace bare {

class Rows {
 public:
  // One type a column, as the server tells them. Ends the process when the file does not suit them.
  Rows(const std::vector<enum_field_types>& types, const std::string& file);

  size_t Count() const { return m_count; }
  size_t Columns() const { return m_columns.size(); }
  // For the rows from `first` on; valid until the next call.
  MYSQL_BIND* Binds(size_t first);

 private:
  struct Column {
    enum_field_types wire;
    std::vector<char> indicators;
    std::vector<double> numbers;
    std::vector<MYSQL_TIME> times;
    std::vector<const void*> pointers;  // into the file's text, or to the times
    std::vector<unsigned long> lengths;
  };
  void ReadFile(const std::string& file);
  void Append(Column& column, char* value, size_t length);
  static MYSQL_BIND BindOf(Column& column, size_t first);

  std::string m_text;
  std::vector<Column> m_columns;
  std::vector<MYSQL_BIND> m_binds;
  size_t m_count = 0;
};

}  // namespace bare

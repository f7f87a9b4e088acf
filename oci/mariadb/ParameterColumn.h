// SPDX-License-Identifier: Apache-2.0
// The values of one placeholder, converted from a caller's array to what the client library sends. Text that
// needs no conversion stays in the caller's array, which must not change until the statement has run.
// One thread at a time.
#pragma once

#include <mysql.h>
#include <oci.h>

#include <cstdint>
#include <forward_list>
#include <string>
#include <vector>

#include "oci/mariadb/Bind.h"
#include "oci/mariadb/sql/DateMask.h"

namespace ocimaria {

struct InputType;

class ParameterColumn {
 public:
  // Whether values of an external type and size can be bound.
  static bool Takes(ub2 type, std::size_t size);

  // `mask` is that of the date function around the placeholder, or null. Both must outlive the column.
  ParameterColumn(const BindHandle& bind, const sql::DateMask* mask);

  // Converts one element and keeps it as the next row. Gives the bytes it takes on the wire. Throws OraError
  // for a value that cannot be sent: nothing is kept then.
  std::size_t Append(ub4 element);
  void Reserve(std::size_t rows);  // makes room at once for as many
  void Resize(std::size_t rows);   // drops rows from the end
  void Clear() { Resize(0); }

  // For the rows from `first` on, as an array or as one value.
  MYSQL_BIND ArrayBind(std::size_t first);
  MYSQL_BIND SingleBind(std::size_t row);

 private:
  std::size_t AppendNull();
  std::size_t AppendNumber(ub4 element);
  std::size_t AppendText(const char* data, std::size_t length);
  std::size_t AppendOwnedText(std::string text);
  std::size_t AppendTime(const MYSQL_TIME& time);
  std::size_t AppendMasked(ub4 element);
  std::string_view Text(ub4 element) const;

  const BindHandle& m_bind;
  const sql::DateMask* const m_mask;
  const InputType& m_input;
  enum_field_types m_wire;  // what m_values or the pointers hold

  std::vector<char> m_indicators;        // one a row: null or not
  std::vector<std::uint64_t> m_numbers;  // eight bytes a row: integers and doubles
  std::vector<MYSQL_TIME> m_times;
  std::vector<const void*> m_pointers;  // text, and times once the rows are complete
  std::vector<unsigned long> m_lengths;
  std::forward_list<std::string> m_owned;  // text that had to be made
};

}  // namespace ocimaria

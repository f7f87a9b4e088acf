// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ResultRows.h"

#include <algorithm>
#include <cstring>

namespace ocimaria {
namespace {

enum_field_types WireOf(enum_field_types type) {
  switch (type) {
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_YEAR:
      return MYSQL_TYPE_LONGLONG;
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

}  // namespace

ResultRows::ResultRows(PreparedStatement& statement) : m_statement(statement) {
  m_statement.StoreResult();
  m_cells.reserve(m_statement.FieldCount());
  for (unsigned i = 0; i < m_statement.FieldCount(); ++i) m_cells.push_back(CellFor(m_statement.Fields()[i]));
  for (Cell& cell : m_cells) m_binds.push_back(BindFor(cell));
}

ResultRows::~ResultRows() { m_statement.FreeResult(); }

ResultRows::Cell ResultRows::CellFor(const MYSQL_FIELD& field) {
  Cell cell;
  cell.wire = WireOf(field.type);
  // A four-byte number comes as text: as a double it would show digits that it does not have.
  cell.is_decimal = field.type == MYSQL_TYPE_NEWDECIMAL || field.type == MYSQL_TYPE_DECIMAL ||
                    field.type == MYSQL_TYPE_FLOAT;
  cell.is_unsigned = (field.flags & UNSIGNED_FLAG) != 0;
  cell.fraction_digits = field.decimals <= 6 ? field.decimals : 0;
  if (cell.wire == MYSQL_TYPE_STRING) cell.text.resize(field.max_length + 1);
  return cell;
}

MYSQL_BIND ResultRows::BindFor(Cell& cell) {
  MYSQL_BIND bind{};
  bind.buffer_type = cell.wire;
  bind.is_null = &cell.is_null;
  bind.length = &cell.length;
  bind.is_unsigned = cell.is_unsigned ? 1 : 0;
  if (cell.wire == MYSQL_TYPE_STRING) {
    bind.buffer = cell.text.data();
    bind.buffer_length = cell.text.size();
  } else if (cell.wire == MYSQL_TYPE_DATETIME) {
    bind.buffer = &cell.time;
    bind.buffer_length = sizeof cell.time;
  } else {
    bind.buffer = &cell.number;
    bind.buffer_length = sizeof cell.number;
  }
  return bind;
}

void ResultRows::PadTo(std::size_t column, std::size_t characters) {
  Cell& cell = m_cells[column];
  if (cell.wire != MYSQL_TYPE_STRING) return;
  cell.pad_to = characters;
  cell.text.resize(cell.text.size() + characters);  // room behind the longest value
  m_binds[column].buffer = cell.text.data();
}

// Counts characters, not bytes: of each, the bytes after its first begin with 10.
void ResultRows::Pad(Cell& cell) {
  const auto begins = [](char byte) { return (byte & 0xC0) != 0x80; };
  const auto text = cell.text.begin();
  const auto end = text + static_cast<std::ptrdiff_t>(cell.length);
  const auto characters = static_cast<std::size_t>(std::count_if(text, end, begins));
  if (cell.is_null || cell.length == 0 || characters >= cell.pad_to) return;
  std::fill_n(end, cell.pad_to - characters, ' ');
  cell.length += cell.pad_to - characters;
}

bool ResultRows::Next() {
  if (!m_at_end) m_at_end = !m_statement.Fetch(m_binds.data());
  if (!m_at_end)
    for (Cell& cell : m_cells)
      if (cell.pad_to > 0) Pad(cell);
  return !m_at_end;
}

FetchedValue ResultRows::Value(std::size_t column) const {
  const Cell& cell = m_cells[column];
  if (cell.is_null) return std::monostate{};
  if (cell.wire == MYSQL_TYPE_DATETIME) return DateValue{cell.time, cell.fraction_digits};
  if (cell.wire == MYSQL_TYPE_DOUBLE) {
    double number;
    std::memcpy(&number, &cell.number, sizeof number);
    return number;
  }
  if (cell.wire == MYSQL_TYPE_LONGLONG) {
    if (cell.is_unsigned) return cell.number;
    return static_cast<std::int64_t>(cell.number);
  }
  const std::string_view text(cell.text.data(), cell.length);
  if (text.empty()) return std::monostate{};  // Oracle knows no other empty text than NULL
  if (cell.is_decimal) return DecimalValue{text};
  return text;
}

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/NaturalType.h"

#include <algorithm>
#include <limits>

namespace ocimaria {
namespace {

constexpr unsigned kBinaryCharset = 63;
constexpr unsigned kBytesPerCharacter = 4;  // of the connection's utf8mb4
constexpr ub2 kLobSize = 4000;              // what an implicit describe gives for a large object
constexpr ub2 kNumberSize = 22;
constexpr ub1 kImplicitCharset = 1;

ub2 Narrow(unsigned long value) {
  return static_cast<ub2>(std::min<unsigned long>(value, std::numeric_limits<ub2>::max()));
}

sql::TypeDescription Number(sb2 precision, sb1 scale) {
  return {.data_type = SQLT_NUM, .data_size = kNumberSize, .precision = precision, .scale = scale};
}

sql::TypeDescription Text(ub2 type, unsigned long bytes) {
  return {.data_type = type,
          .data_size = Narrow(bytes),
          .char_used = 1,
          .char_size = Narrow(bytes / kBytesPerCharacter),
          .charset_form = kImplicitCharset};
}

// A column's own digits; an expression is a NUMBER of any size.
sql::TypeDescription Integer(const MYSQL_FIELD& field, sb2 digits) {
  return field.org_table_length == 0 ? Number(0, sql::kNoScale) : Number(digits, 0);
}

sql::TypeDescription Decimal(const MYSQL_FIELD& field) {
  if (field.org_table_length == 0) return Number(0, sql::kNoScale);
  const unsigned long point = field.decimals > 0;
  const unsigned long sign = (field.flags & UNSIGNED_FLAG) == 0;
  return Number(static_cast<sb2>(field.length - point - sign), static_cast<sb1>(field.decimals));
}

sql::TypeDescription DateOrTimestamp(unsigned fraction_digits) {
  if (fraction_digits == 0 || fraction_digits > 6) return {.data_type = SQLT_DAT, .data_size = 7};
  const ub1 digits = static_cast<ub1>(fraction_digits);
  return {
      .data_type = SQLT_TIMESTAMP, .data_size = 11, .scale = static_cast<sb1>(digits), .fsprecision = digits};
}

sql::TypeDescription String(const MYSQL_FIELD& field) {
  if (field.charsetnr == kBinaryCharset) return {.data_type = SQLT_BIN, .data_size = Narrow(field.length)};
  return Text(field.type == MYSQL_TYPE_STRING ? SQLT_AFC : SQLT_CHR, field.length);
}

}  // namespace

sql::TypeDescription NaturalType(const MYSQL_FIELD& field) {
  switch (field.type) {
    case MYSQL_TYPE_TINY:
      return Integer(field, 3);
    case MYSQL_TYPE_SHORT:
      return Integer(field, 5);
    case MYSQL_TYPE_INT24:
      return Integer(field, 8);
    case MYSQL_TYPE_LONG:
      return Integer(field, 10);
    case MYSQL_TYPE_LONGLONG:
      return Integer(field, 20);
    case MYSQL_TYPE_YEAR:
      return Integer(field, 4);
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
      return Number(0, sql::kNoScale);
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
      return Decimal(field);
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_DATETIME:
      return DateOrTimestamp(field.decimals);
    case MYSQL_TYPE_TIMESTAMP:
      return {.data_type = SQLT_TIMESTAMP,
              .data_size = 11,
              .scale = static_cast<sb1>(field.decimals),
              .fsprecision = static_cast<ub1>(field.decimals)};
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_GEOMETRY:
      if (field.charsetnr == kBinaryCharset) return {.data_type = SQLT_BLOB, .data_size = kLobSize};
      return {.data_type = SQLT_CLOB, .data_size = kLobSize, .charset_form = kImplicitCharset};
    case MYSQL_TYPE_BIT:
      return {.data_type = SQLT_BIN, .data_size = Narrow((field.length + 7) / 8)};
    default:
      return String(field);
  }
}

}  // namespace ocimaria

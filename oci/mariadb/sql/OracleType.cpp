// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/OracleType.h"

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

constexpr std::string_view kCommentPrefix = "ora:";
constexpr std::string_view kNameStart = " \"";

std::string Sized(std::string_view name, int size) {
  return std::string(name) + "(" + std::to_string(size) + ")";
}

std::string NumberText(const OracleType& type) {
  if (type.scale == kNoScale) return "NUMBER";
  const std::string digits = type.any_precision ? "*" : std::to_string(type.precision);
  if (type.scale == 0 && !type.any_precision) return "NUMBER(" + digits + ")";
  return "NUMBER(" + digits + "," + std::to_string(type.scale) + ")";
}

std::string TextText(std::string_view name, const OracleType& type) {
  const bool says_char = type.counts_characters && name.front() != 'N';
  return std::string(name) + "(" + std::to_string(type.length) + (says_char ? " CHAR)" : ")");
}

TypeDescription DescribeNumber(const OracleType& type) {
  const bool has_digits = type.family == TypeFamily::kNumber && type.any_precision;
  return {.data_type = SQLT_NUM,
          .data_size = 22,
          .precision = static_cast<sb2>(has_digits ? 38 : type.precision),
          .scale = static_cast<sb1>(type.scale)};
}

TypeDescription DescribeText(ub2 data_type, const OracleType& type, int bytes_per_character) {
  const bool is_national = type.family == TypeFamily::kNvarchar2 || type.family == TypeFamily::kNchar;
  const int bytes = type.counts_characters ? type.length * bytes_per_character : type.length;
  return {.data_type = data_type,
          .data_size = static_cast<ub2>(bytes),
          .char_used = type.counts_characters,
          .char_size = static_cast<ub2>(type.length),
          .charset_form = static_cast<ub1>(is_national ? 2 : 1)};
}

TypeDescription DescribeTimestamp(ub2 data_type, ub2 data_size, const OracleType& type) {
  return {.data_type = data_type,
          .data_size = data_size,
          .scale = static_cast<sb1>(type.scale),
          .fsprecision = static_cast<ub1>(type.scale)};
}

TypeDescription DescribeInterval(ub2 data_type, ub2 data_size, const OracleType& type) {
  return {.data_type = data_type,
          .data_size = data_size,
          .precision = static_cast<sb2>(type.precision),
          .scale = static_cast<sb1>(type.scale),
          .fsprecision = static_cast<ub1>(type.scale),
          .lfprecision = static_cast<ub1>(type.precision)};
}

TypeDescription DescribePlain(ub2 data_type, ub2 data_size) {
  return {.data_type = data_type, .data_size = data_size};
}

TypeDescription DescribeLob(ub2 data_type, ub1 charset_form) {
  return {.data_type = data_type, .data_size = 4000, .charset_form = charset_form};
}

}  // namespace

std::string TypeText(const OracleType& type) {
  switch (type.family) {
    case TypeFamily::kNumber:
      return NumberText(type);
    case TypeFamily::kFloat:
      return Sized("FLOAT", type.precision);
    case TypeFamily::kBinaryFloat:
      return "BINARY_FLOAT";
    case TypeFamily::kBinaryDouble:
      return "BINARY_DOUBLE";
    case TypeFamily::kVarchar2:
      return TextText("VARCHAR2", type);
    case TypeFamily::kNvarchar2:
      return TextText("NVARCHAR2", type);
    case TypeFamily::kChar:
      return TextText("CHAR", type);
    case TypeFamily::kNchar:
      return TextText("NCHAR", type);
    case TypeFamily::kDate:
      return "DATE";
    case TypeFamily::kTimestamp:
      return Sized("TIMESTAMP", type.scale);
    case TypeFamily::kTimestampTz:
      return Sized("TIMESTAMP", type.scale) + " WITH TIME ZONE";
    case TypeFamily::kTimestampLtz:
      return Sized("TIMESTAMP", type.scale) + " WITH LOCAL TIME ZONE";
    case TypeFamily::kIntervalYm:
      return Sized("INTERVAL YEAR", type.precision) + " TO MONTH";
    case TypeFamily::kIntervalDs:
      return Sized("INTERVAL DAY", type.precision) + Sized(" TO SECOND", type.scale);
    case TypeFamily::kRaw:
      return Sized("RAW", type.length);
    case TypeFamily::kLong:
      return "LONG";
    case TypeFamily::kLongRaw:
      return "LONG RAW";
    case TypeFamily::kClob:
      return "CLOB";
    case TypeFamily::kNclob:
      return "NCLOB";
    case TypeFamily::kBlob:
      return "BLOB";
    case TypeFamily::kBfile:
      return "BFILE";
    case TypeFamily::kRowid:
      return "ROWID";
  }
  return {};
}

std::string ColumnComment(const OracleType& type, std::string_view name) {
  std::string comment = std::string(kCommentPrefix) + TypeText(type);
  if (!EqualsUpper(name, name)) comment.append(kNameStart).append(name).append("\"");
  return comment;
}

std::optional<OracleType> FromColumnComment(std::string_view comment) {
  if (!comment.starts_with(kCommentPrefix)) return std::nullopt;
  comment = comment.substr(0, comment.find(kNameStart));
  try {
    return ParseOracleType(comment.substr(kCommentPrefix.size()));
  } catch (const OraError&) {
    return std::nullopt;
  }
}

std::string_view NameInColumnComment(std::string_view comment) {
  const auto start = comment.find(kNameStart);
  if (start == comment.npos || !comment.starts_with(kCommentPrefix) || !comment.ends_with('"')) return {};
  comment.remove_prefix(start + kNameStart.size());
  return comment.substr(0, comment.find('"'));
}

TypeDescription Describe(const OracleType& type, int bytes_per_character) {
  switch (type.family) {
    case TypeFamily::kNumber:
    case TypeFamily::kFloat:
      return DescribeNumber(type);
    case TypeFamily::kBinaryFloat:
      return DescribePlain(SQLT_IBFLOAT, 4);
    case TypeFamily::kBinaryDouble:
      return DescribePlain(SQLT_IBDOUBLE, 8);
    case TypeFamily::kVarchar2:
    case TypeFamily::kNvarchar2:
      return DescribeText(SQLT_CHR, type, bytes_per_character);
    case TypeFamily::kChar:
    case TypeFamily::kNchar:
      return DescribeText(SQLT_AFC, type, bytes_per_character);
    case TypeFamily::kDate:
      return DescribePlain(SQLT_DAT, 7);
    case TypeFamily::kTimestamp:
      return DescribeTimestamp(SQLT_TIMESTAMP, 11, type);
    case TypeFamily::kTimestampTz:
      return DescribeTimestamp(SQLT_TIMESTAMP_TZ, 13, type);
    case TypeFamily::kTimestampLtz:
      return DescribeTimestamp(SQLT_TIMESTAMP_LTZ, 11, type);
    case TypeFamily::kIntervalYm:
      return DescribeInterval(SQLT_INTERVAL_YM, 5, type);
    case TypeFamily::kIntervalDs:
      return DescribeInterval(SQLT_INTERVAL_DS, 11, type);
    case TypeFamily::kRaw:
      return DescribePlain(SQLT_BIN, static_cast<ub2>(type.length));
    case TypeFamily::kLong:
      return DescribePlain(SQLT_LNG, 0);
    case TypeFamily::kLongRaw:
      return DescribePlain(SQLT_LBI, 0);
    case TypeFamily::kClob:
      return DescribeLob(SQLT_CLOB, 1);
    case TypeFamily::kNclob:
      return DescribeLob(SQLT_CLOB, 2);
    case TypeFamily::kBlob:
      return DescribeLob(SQLT_BLOB, 0);
    case TypeFamily::kBfile:
      return DescribePlain(SQLT_BFILE, 530);
    case TypeFamily::kRowid:
      return DescribePlain(SQLT_RDD, 18);
  }
  return {};
}

}  // namespace ocimaria::sql

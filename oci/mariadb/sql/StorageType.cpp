// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/StorageType.h"

#include <algorithm>

#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

constexpr int kMostCharLength = 255;
constexpr int kMostDecimalDigits = 65;
constexpr int kMostDecimalScale = 38;
constexpr int kMostFraction = 6;
constexpr std::size_t kBytesPerCharacter = 4;
constexpr std::string_view kPadCollation = " COLLATE utf8mb4_bin";

std::string Sized(std::string_view name, int size) {
  return std::string(name) + "(" + std::to_string(size) + ")";
}

std::string Decimal(int digits, int scale) {
  return "decimal(" + std::to_string(digits) + "," + std::to_string(scale) + ")";
}

std::string NumberStorage(const OracleType& type) {
  if (type.scale == kNoScale) return "double";
  const int digits = type.any_precision ? 38 : type.precision;
  if (type.scale > kMostDecimalScale) return "double";
  if (type.scale >= 0) return Decimal(std::max(digits, type.scale), type.scale);
  return digits - type.scale <= kMostDecimalDigits ? Decimal(digits - type.scale, 0) : "double";
}

std::string DateTime(int fraction) {
  return fraction > 0 ? Sized("datetime", std::min(fraction, kMostFraction)) : "datetime";
}

bool IsPadded(const OracleType& type) {
  return type.family == TypeFamily::kChar || type.family == TypeFamily::kNchar;
}

}  // namespace

std::string StorageType(const OracleType& type) {
  switch (type.family) {
    case TypeFamily::kNumber:
      return NumberStorage(type);
    case TypeFamily::kFloat:
    case TypeFamily::kBinaryDouble:
      return "double";
    case TypeFamily::kBinaryFloat:
      return "float";
    case TypeFamily::kVarchar2:
    case TypeFamily::kNvarchar2:
      return Sized("varchar", type.length);
    case TypeFamily::kChar:
    case TypeFamily::kNchar:
      return Sized(type.length <= kMostCharLength ? "char" : "varchar", type.length).append(kPadCollation);
    case TypeFamily::kDate:
      return "datetime";
    case TypeFamily::kTimestamp:
    case TypeFamily::kTimestampTz:
    case TypeFamily::kTimestampLtz:
      return DateTime(type.scale);
    case TypeFamily::kIntervalYm:
    case TypeFamily::kIntervalDs:
      return "varchar(32)";
    case TypeFamily::kRaw:
      return Sized("varbinary", type.length);
    case TypeFamily::kLong:
    case TypeFamily::kClob:
    case TypeFamily::kNclob:
      return "longtext";
    case TypeFamily::kLongRaw:
    case TypeFamily::kBlob:
      return "longblob";
    case TypeFamily::kBfile:
      return "varchar(530)";
    case TypeFamily::kRowid:
      return "varchar(18)";
  }
  return {};
}

bool CanBeOutOfRow(const OracleType& type) {
  return type.family == TypeFamily::kVarchar2 || type.family == TypeFamily::kNvarchar2 || IsPadded(type);
}

std::string OutOfRowStorageType(const OracleType& type) {
  return IsPadded(type) ? std::string("text").append(kPadCollation) : "text";
}

std::size_t RowBytes(const OracleType& type) {
  constexpr std::size_t kLengthBytes = 2;
  constexpr std::size_t kMostNumberBytes = 32;
  switch (type.family) {
    case TypeFamily::kVarchar2:
    case TypeFamily::kNvarchar2:
    case TypeFamily::kChar:
    case TypeFamily::kNchar:
      return static_cast<std::size_t>(type.length) * kBytesPerCharacter + kLengthBytes;
    case TypeFamily::kRaw:
      return static_cast<std::size_t>(type.length) + kLengthBytes;
    case TypeFamily::kIntervalYm:
    case TypeFamily::kIntervalDs:
      return 32 * kBytesPerCharacter + kLengthBytes;
    case TypeFamily::kBfile:
      return 530 * kBytesPerCharacter + kLengthBytes;
    case TypeFamily::kRowid:
      return 18 * kBytesPerCharacter + kLengthBytes;
    default:
      return kMostNumberBytes;
  }
}

std::string CastType(const OracleType& type) {
  switch (type.family) {
    case TypeFamily::kNumber:
    case TypeFamily::kFloat:
    case TypeFamily::kBinaryDouble:
    case TypeFamily::kBinaryFloat:
    case TypeFamily::kDate:
    case TypeFamily::kTimestamp:
      return StorageType(type);
    case TypeFamily::kVarchar2:
    case TypeFamily::kNvarchar2:
    case TypeFamily::kChar:
    case TypeFamily::kNchar:
      return Sized("char", type.length);
    case TypeFamily::kRaw:
      return Sized("binary", type.length);
    default:
      throw Unimplemented("CAST to " + TypeText(type));
  }
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// A declared Oracle column type: read from a column definition, described as the call interface describes it,
// and stored in the column type of the server that holds its values. The declared type stays with its column
// as the column's comment, "ora:" and the type in its plain form, as in 'ora:NUMBER(7,-2)': it survives a
// restart and CREATE TABLE … AS SELECT, and describing reads it back. Values: any thread.
//
// What the server holds otherwise than Oracle:
// - NUMBER without precision and FLOAT are kept to 15 digits (double); NUMBER(p,s) is exact.
// - NUMBER(p,s) with s < 0 takes digits right of the rounding place; with s > p it takes up to s digits.
// - Lengths count characters, VARCHAR2(n BYTE) included.
// - TIMESTAMP keeps six digits of a second, and no time zone.
// - CHAR(n) above 255 is a varchar: whoever fetches it pads it with blanks.
#pragma once

#include <oci.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

enum class TypeFamily {
  kNumber,
  kFloat,
  kBinaryFloat,
  kBinaryDouble,
  kVarchar2,
  kNvarchar2,
  kChar,
  kNchar,
  kDate,
  kTimestamp,
  kTimestampTz,
  kTimestampLtz,
  kIntervalYm,
  kIntervalDs,
  kRaw,
  kLong,
  kLongRaw,
  kClob,
  kNclob,
  kBlob,
  kBfile,
  kRowid,
};

inline constexpr int kNoScale = -127;  // of NUMBER without a precision and of FLOAT

struct OracleType {
  TypeFamily family = TypeFamily::kNumber;
  int precision = 0;  // NUMBER: digits, 0 without; FLOAT: bits; INTERVAL: digits of the leading field
  bool any_precision = false;      // NUMBER(*,s), INTEGER: described with 38 digits
  int scale = kNoScale;            // NUMBER: scale; TIMESTAMP, INTERVAL: digits of the second
  int length = 0;                  // texts: characters or bytes; RAW: bytes
  bool counts_characters = false;  // VARCHAR2(n CHAR), CHAR(n CHAR) and the national types

  bool operator==(const OracleType&) const = default;
};

// What an implicit describe reports.
struct TypeDescription {
  ub2 data_type = 0;  // SQLT_*
  ub2 data_size = 0;  // bytes
  sb2 precision = 0;
  sb1 scale = 0;
  ub1 char_used = 0;
  ub2 char_size = 0;  // 0 for what is no text
  ub1 charset_form = 0;
  ub1 fsprecision = 0;
  ub1 lfprecision = 0;
};

// A type and where it ends among the pieces.
struct ParsedType {
  OracleType type;
  std::size_t end = 0;
};

// Reads the type that begins at `begin`. Throws OraError: ORA-00902 for no type, ORA-00906 and ORA-00907 for
// missing parentheses, ORA-00910, ORA-01723, ORA-01727, ORA-01728, ORA-30088 for numbers out of range.
ParsedType ParseOracleType(const PieceList& pieces, std::size_t begin);

// A text that is a type and nothing else; throws as above.
OracleType ParseOracleType(std::string_view text);

// The plain form: NUMBER(7,-2), VARCHAR2(20 CHAR), TIMESTAMP(6) WITH TIME ZONE, INTERVAL DAY(2) TO SECOND(6)
// …
std::string TypeText(const OracleType& type);

// `name`, the column's own, is kept behind the type unless it is upper case: ora:NUMBER(7,-2) "Mixed". The
// server does not tell a name that was declared in quotes from any other.
std::string ColumnComment(const OracleType& type, std::string_view name = {});
std::optional<OracleType> FromColumnComment(std::string_view comment);  // none: the comment holds no type
std::string_view NameInColumnComment(std::string_view comment);         // empty: it holds no name

// `bytes_per_character`: of the client's character set, at most.
TypeDescription Describe(const OracleType& type, int bytes_per_character = 4);

}  // namespace ocimaria::sql

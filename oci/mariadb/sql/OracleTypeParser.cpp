// SPDX-License-Identifier: Apache-2.0
// Reads declared types: one small function for each way to write one.
#include <array>
#include <charconv>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/OracleType.h"

namespace ocimaria::sql {
namespace {

constexpr int kMostDigits = 38;
constexpr int kMostBits = 126;
constexpr int kMostVarchar2 = 4000;
constexpr int kMostChar = 2000;
constexpr int kMostRaw = 2000;
constexpr int kNationalShare = 2;  // a national character takes two bytes of a length limit
constexpr int kMostFraction = 9;

class TypeParser {
 public:
  TypeParser(const PieceList& pieces, std::size_t begin) : m_pieces(pieces), m_at(begin) {}

  ParsedType Parse() {
    if (const auto type = ParseNumeric()) return {*type, m_at};
    if (const auto type = ParseText()) return {*type, m_at};
    if (const auto type = ParseTime()) return {*type, m_at};
    if (const auto type = ParsePlain()) return {*type, m_at};
    throw OraError(902);
  }

 private:
  bool Take(std::initializer_list<std::string_view> words) {
    if (!m_pieces.AreWords(m_at, words)) return false;
    m_at += words.size();
    return true;
  }
  bool TakeAny(std::initializer_list<std::string_view> words) {
    if (!m_pieces.IsAnyWord(m_at, words)) return false;
    ++m_at;
    return true;
  }
  bool TakeSymbol(std::string_view symbol) {
    if (!m_pieces.IsSymbol(m_at, symbol)) return false;
    ++m_at;
    return true;
  }
  void Close() {
    if (!TakeSymbol(")")) throw OraError(907);
  }

  // A whole number with an optional sign, between the limits; otherwise `error`.
  int TakeNumber(int lowest, int highest, int error) {
    const bool is_negative = TakeSymbol("-");
    if (!is_negative) TakeSymbol("+");
    const auto text = m_pieces.Text(m_at);
    int value = 0;
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (m_pieces.Kind(m_at) != TokenKind::kNumber || status != std::errc() ||
        end != text.data() + text.size()) {
      throw OraError(error);
    }
    ++m_at;
    if (is_negative) value = -value;
    if (value < lowest || value > highest) throw OraError(error);
    return value;
  }

  std::optional<OracleType> ParseNumeric() {
    if (TakeAny({"NUMBER"})) return NumberArguments({});
    if (TakeAny({"DECIMAL", "NUMERIC", "DEC"})) return NumberArguments(WholeNumber());
    if (TakeAny({"INTEGER", "INT", "SMALLINT"})) return WholeNumber();
    if (TakeAny({"FLOAT"})) return FloatArgument();
    if (TakeAny({"REAL"})) return OracleType{.family = TypeFamily::kFloat, .precision = 63};
    if (Take({"DOUBLE", "PRECISION"}))
      return OracleType{.family = TypeFamily::kFloat, .precision = kMostBits};
    if (TakeAny({"BINARY_FLOAT"})) return OracleType{.family = TypeFamily::kBinaryFloat, .scale = 0};
    if (TakeAny({"BINARY_DOUBLE"})) return OracleType{.family = TypeFamily::kBinaryDouble, .scale = 0};
    return std::nullopt;
  }

  static OracleType WholeNumber() { return {.any_precision = true, .scale = 0}; }

  OracleType NumberArguments(OracleType without) {
    if (!TakeSymbol("(")) return without;
    OracleType type;
    type.any_precision = TakeSymbol("*");
    if (!type.any_precision) type.precision = TakeNumber(1, kMostDigits, 1727);
    if (TakeSymbol(",")) {
      type.scale = TakeNumber(-84, 127, 1728);
    } else if (type.any_precision) {
      type.any_precision = false;  // NUMBER(*) is NUMBER
    } else {
      type.scale = 0;
    }
    Close();
    return type;
  }

  OracleType FloatArgument() {
    OracleType type{.family = TypeFamily::kFloat, .precision = kMostBits};
    if (!TakeSymbol("(")) return type;
    type.precision = TakeNumber(1, kMostBits, 1727);
    Close();
    return type;
  }

  std::optional<OracleType> ParseText() {
    const bool is_national = Take({"NATIONAL"});
    if (!is_national && TakeAny({"VARCHAR2", "VARCHAR"})) return Varying(TypeFamily::kVarchar2);
    if (!is_national && TakeAny({"NVARCHAR2"})) return Varying(TypeFamily::kNvarchar2);
    const bool is_nchar = !is_national && TakeAny({"NCHAR"});
    if (!is_nchar && !TakeAny({"CHAR", "CHARACTER"})) {
      if (is_national) throw OraError(902);
      return std::nullopt;
    }
    const bool national = is_national || is_nchar;
    if (TakeAny({"VARYING"})) return Varying(national ? TypeFamily::kNvarchar2 : TypeFamily::kVarchar2);
    return Fixed(national ? TypeFamily::kNchar : TypeFamily::kChar);
  }

  OracleType Varying(TypeFamily family) {
    if (!TakeSymbol("(")) throw OraError(906);
    const bool is_national = family == TypeFamily::kNvarchar2;
    return TextArguments(family, is_national ? kMostVarchar2 / kNationalShare : kMostVarchar2);
  }

  OracleType Fixed(TypeFamily family) {
    const bool is_national = family == TypeFamily::kNchar;
    if (TakeSymbol("(")) return TextArguments(family, is_national ? kMostChar / kNationalShare : kMostChar);
    return {.family = family, .scale = 0, .length = 1, .counts_characters = is_national};
  }

  OracleType TextArguments(TypeFamily family, int longest) {
    OracleType type{.family = family, .scale = 0};
    type.length = TakeLength(longest);
    type.counts_characters = family == TypeFamily::kNvarchar2 || family == TypeFamily::kNchar;
    if (!type.counts_characters) {
      type.counts_characters = TakeAny({"CHAR"});
      if (!type.counts_characters) TakeAny({"BYTE"});
    }
    Close();
    return type;
  }

  int TakeLength(int longest) {
    const int length = TakeNumber(0, longest, 910);
    if (length == 0) throw OraError(1723);
    return length;
  }

  std::optional<OracleType> ParseTime() {
    if (TakeAny({"DATE"})) return OracleType{.family = TypeFamily::kDate, .scale = 0};
    if (TakeAny({"TIMESTAMP"})) return Timestamp();
    if (Take({"INTERVAL", "YEAR"})) return IntervalYearToMonth();
    if (Take({"INTERVAL", "DAY"})) return IntervalDayToSecond();
    return std::nullopt;
  }

  int TakeDigits(int without) {
    if (!TakeSymbol("(")) return without;
    const int digits = TakeNumber(0, kMostFraction, 30088);
    Close();
    return digits;
  }

  OracleType Timestamp() {
    OracleType type{.family = TypeFamily::kTimestamp, .scale = TakeDigits(6)};
    if (Take({"WITH", "TIME", "ZONE"})) type.family = TypeFamily::kTimestampTz;
    if (Take({"WITH", "LOCAL", "TIME", "ZONE"})) type.family = TypeFamily::kTimestampLtz;
    return type;
  }

  OracleType IntervalYearToMonth() {
    OracleType type{.family = TypeFamily::kIntervalYm, .precision = TakeDigits(2), .scale = 0};
    if (!Take({"TO", "MONTH"})) throw OraError(905);
    return type;
  }

  OracleType IntervalDayToSecond() {
    OracleType type{.family = TypeFamily::kIntervalDs, .precision = TakeDigits(2)};
    if (!Take({"TO", "SECOND"})) throw OraError(905);
    type.scale = TakeDigits(6);
    return type;
  }

  std::optional<OracleType> ParsePlain() {
    if (Take({"LONG", "RAW"})) return OracleType{.family = TypeFamily::kLongRaw, .scale = 0};
    if (TakeAny({"LONG"})) return OracleType{.family = TypeFamily::kLong, .scale = 0};
    if (TakeAny({"RAW"})) return Raw();
    struct Named {
      std::string_view word;
      TypeFamily family;
    };
    static constexpr auto kNamed = std::to_array<Named>({{"CLOB", TypeFamily::kClob},
                                                         {"NCLOB", TypeFamily::kNclob},
                                                         {"BLOB", TypeFamily::kBlob},
                                                         {"BFILE", TypeFamily::kBfile},
                                                         {"ROWID", TypeFamily::kRowid}});
    for (const Named& named : kNamed) {
      if (TakeAny({named.word})) return OracleType{.family = named.family, .scale = 0};
    }
    return std::nullopt;
  }

  OracleType Raw() {
    if (!TakeSymbol("(")) throw OraError(906);
    OracleType type{.family = TypeFamily::kRaw, .scale = 0, .length = TakeLength(kMostRaw)};
    Close();
    return type;
  }

  const PieceList& m_pieces;
  std::size_t m_at;
};

}  // namespace

ParsedType ParseOracleType(const PieceList& pieces, std::size_t begin) {
  return TypeParser(pieces, begin).Parse();
}

OracleType ParseOracleType(std::string_view text) {
  const PieceList pieces(text);
  const ParsedType parsed = ParseOracleType(pieces, 0);
  if (parsed.end != pieces.Size()) throw OraError(902);
  return parsed.type;
}

}  // namespace ocimaria::sql

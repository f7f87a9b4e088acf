// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Functions.h"

#include <array>
#include <charconv>

#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/StorageType.h"
#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// The text becomes part of the statement, so nothing but a number may stand in it.
bool IsNumberText(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || !(IsDigit(text.front()) || text.front() == '.')) return false;
  double number = 0;
  return std::from_chars(text.data(), text.data() + text.size(), number).ptr == text.data() + text.size();
}

// TO_NUMBER('12.5') is 12.5; of anything else the server makes the number.
void RewriteToNumber(PieceList& pieces, std::size_t i) {
  const Call call = ParseCall(pieces, i);
  if (call.arguments.empty()) throw OraError(938);
  if (call.arguments.size() > 1) throw Unimplemented("TO_NUMBER with a format");
  const Range value = call.arguments.front();
  if (value.Size() == 1 && pieces.Kind(value.begin) == TokenKind::kString) {
    const std::string text = StringValue(pieces.Text(value.begin));
    if (!text.empty() && !IsNumberText(text)) throw OraError(1722);
    pieces.Remove(i, call.close + 1);
    pieces.Replace(i, text.empty() ? "NULL" : "(" + text + ")");
    return;
  }
  pieces.Replace(i, "CAST");
  pieces.InsertBefore(call.close, " AS DOUBLE");
}

struct DateUnit {
  std::string_view unit;    // as TRUNC names it
  std::string_view format;  // what keeps the parts down to it
};

constexpr auto kDateUnits = std::to_array<DateUnit>({
    {"YYYY", "%Y-01-01"},
    {"YEAR", "%Y-01-01"},
    {"YY", "%Y-01-01"},
    {"MM", "%Y-%m-01"},
    {"MON", "%Y-%m-01"},
    {"MONTH", "%Y-%m-01"},
    {"DD", "%Y-%m-%d"},
    {"DDD", "%Y-%m-%d"},
    {"J", "%Y-%m-%d"},
    {"HH24", "%Y-%m-%d %H:00"},
    {"HH", "%Y-%m-%d %H:00"},
    {"MI", "%Y-%m-%d %H:%i"},
});

void TruncateDate(PieceList& pieces, const Call& call, std::string_view format) {
  const Range value = call.arguments.front();
  pieces.Replace(call.name, "CAST");
  pieces.InsertBefore(value.begin, "DATE_FORMAT(");
  pieces.Remove(value.end, call.close);
  pieces.InsertBefore(call.close, ", " + QuoteLiteral(format) + ") AS DATETIME");
}

void TruncateDateTo(PieceList& pieces, const Call& call, const std::string& unit) {
  for (const DateUnit& known : kDateUnits) {
    if (EqualsUpper(unit, known.unit)) return TruncateDate(pieces, call, known.format);
  }
  throw Unimplemented("TRUNC to " + unit);
}

bool IsDateExpression(const PieceList& pieces, std::size_t i) {
  return pieces.IsAnyWord(i, {"SYSDATE", "SYSTIMESTAMP", "CURRENT_DATE", "CURRENT_TIMESTAMP",
                              "LOCALTIMESTAMP", "TO_DATE", "TO_TIMESTAMP", "ADD_MONTHS", "LAST_DAY"}) ||
         (pieces.IsAnyWord(i, {"DATE", "TIMESTAMP"}) && pieces.Kind(i + 1) == TokenKind::kString);
}

bool IsNumberLiteral(const PieceList& pieces, const Range& range) {
  const bool is_signed = pieces.IsSymbol(range.begin, "-") || pieces.IsSymbol(range.begin, "+");
  return range.Size() == (is_signed ? 2u : 1u) && pieces.Kind(range.end - 1) == TokenKind::kNumber;
}

// TRUNC means one thing for a date and another for a number; only the text tells here.
void RewriteTrunc(PieceList& pieces, std::size_t i) {
  const Call call = ParseCall(pieces, i);
  if (call.arguments.empty()) throw OraError(938);
  if (call.arguments.size() > 2) throw OraError(939);
  const Range value = call.arguments.front();
  if (call.arguments.size() == 2) {
    const Range second = call.arguments.back();
    if (second.Size() != 1 || pieces.Kind(second.begin) != TokenKind::kString) {
      return pieces.Replace(i, "TRUNCATE");
    }
    return TruncateDateTo(pieces, call, StringValue(pieces.Text(second.begin)));
  }
  if (IsDateExpression(pieces, value.begin)) return TruncateDateTo(pieces, call, "DD");
  if (!IsNumberLiteral(pieces, value)) {
    throw Unimplemented("TRUNC of one argument; write TRUNC(x, 0) for a number or TRUNC(x, 'DD') for a date");
  }
  pieces.Replace(i, "TRUNCATE");
  pieces.InsertBefore(call.close, ", 0");
}

// CAST(x AS VARCHAR2(10)): the type is replaced.
void RewriteCast(PieceList& pieces, std::size_t i) {
  const std::size_t close = pieces.ClosingOf(i + 1);
  for (std::size_t as = i + 2; as < close; ++as) {
    if (pieces.IsSymbol(as, "(")) as = pieces.ClosingOf(as);
    if (!pieces.IsWord(as, "AS")) continue;
    const ParsedType parsed = ParseOracleType(pieces, as + 1);
    if (parsed.end != close) throw OraError(907);
    const std::string type = CastType(parsed.type);
    if (UpperCase(pieces.Join(as + 1, close)) == UpperCase(type)) return;
    pieces.Remove(as + 1, close);
    return pieces.Replace(as + 1, type);
  }
  throw OraError(905);
}

// A number added to a date counts days. The server would add it to the digits of the date.
void RewriteDayArithmetic(PieceList& pieces, std::size_t i) {
  if (!pieces.IsSymbol(i, "+") && !pieces.IsSymbol(i, "-")) return;
  if (pieces.IsWord(i + 1, "INTERVAL")) return;
  const auto text = pieces.Text(i + 1);
  const bool is_whole =
      pieces.Kind(i + 1) == TokenKind::kNumber && text.find_first_not_of("0123456789") == text.npos;
  if (!is_whole || pieces.IsSymbol(i + 2, "/") || pieces.IsSymbol(i + 2, "*")) {
    throw Unimplemented(
        "date arithmetic other than whole days; write INTERVAL '…' DAY, HOUR, MINUTE or SECOND");
  }
  pieces.Replace(i + 1, "INTERVAL " + std::string(text) + " DAY");
}

void RewriteSysTimestamp(PieceList& pieces, std::size_t i) {
  pieces.Replace(i, pieces.IsSymbol(i + 1, "(") ? "SYSDATE" : "SYSDATE(6)");
}

bool IsUser(const PieceList& pieces, std::size_t i) {
  return pieces.IsWord(i, "USER") && !pieces.IsSymbol(i + 1, "(") && !pieces.IsSymbol(i + 1, ".") &&
         !(i > 0 && pieces.IsAnyWord(i - 1, {"CREATE", "ALTER", "DROP", "AS"}));
}

}  // namespace

void RewriteFunctions(PieceList& pieces) {
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    if (pieces.Noted(i) == NotedWord::kNone || (i > 0 && pieces.IsSymbol(i - 1, "."))) continue;
    if (pieces.IsAnyWord(i, {"SYSDATE", "SYSTIMESTAMP", "CURRENT_DATE"})) RewriteDayArithmetic(pieces, i + 1);
    if (pieces.IsWord(i, "SYSTIMESTAMP")) RewriteSysTimestamp(pieces, i);
    if (pieces.IsWord(i, "CURRENT_DATE")) pieces.Replace(i, "SYSDATE");
    if (IsUser(pieces, i)) pieces.Replace(i, "UPPER(DATABASE())");
    if (!IsCallOf(pieces, i)) continue;
    if (pieces.IsAnyWord(i, {"TO_DATE", "TO_TIMESTAMP", "ADD_MONTHS", "LAST_DAY"})) {
      RewriteDayArithmetic(pieces, pieces.ClosingOf(i + 1) + 1);
    }
    if (pieces.IsWord(i, "TO_NUMBER")) RewriteToNumber(pieces, i);
    if (pieces.IsWord(i, "TRUNC")) RewriteTrunc(pieces, i);
    if (pieces.IsWord(i, "CAST")) RewriteCast(pieces, i);
  }
}

}  // namespace ocimaria::sql

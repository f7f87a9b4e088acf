// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DateFunctions.h"

#include <memory>
#include <string>
#include <utility>

#include "oci/mariadb/sql/Call.h"
#include "oci/mariadb/sql/DateMask.h"
#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

// What a session reads a date by when a call names no mask.
constexpr std::string_view kDefaultDateMask = "DD-MON-RR";
constexpr std::string_view kDefaultTimestampMask = "DD-MON-RR HH.MI.SSXFF AM";

std::string MaskOf(const PieceList& pieces, const Call& call, bool is_timestamp) {
  if (call.arguments.size() == 1) return std::string(is_timestamp ? kDefaultTimestampMask : kDefaultDateMask);
  const Range mask = call.arguments[1];
  if (mask.Size() != 1 || pieces.Kind(mask.begin) != TokenKind::kString) {
    throw Unimplemented(UpperCase(pieces.Text(call.name)) + " with a format that is no literal");
  }
  return StringValue(pieces.Text(mask.begin));
}

void RewriteLiteral(PieceList& pieces, const Call& call, const std::string& text, const DateMask& mask) {
  // Oracle's empty text is NULL.
  std::string literal = text.empty() ? "NULL" : "TIMESTAMP'" + mask.ToCanonical(text) + "'";
  pieces.Remove(call.name, call.close + 1);
  pieces.Replace(call.name, std::move(literal));
}

// The mask of a text. Statements name the same few over and over, so the last one is kept.
std::shared_ptr<const DateMask> Compiled(const std::string& text) {
  thread_local std::pair<std::string, std::shared_ptr<const DateMask>> last;
  if (!last.second || last.first != text) last = {text, std::make_shared<const DateMask>(text)};
  return last.second;
}

void RewriteCall(PieceList& pieces, const Call& call, bool is_timestamp) {
  const std::string mask_text = MaskOf(pieces, call, is_timestamp);
  const auto compiled = Compiled(mask_text);
  const DateMask& mask = *compiled;
  // Oracle's DATE has no fraction to read.
  if (!is_timestamp && mask.HasFraction()) throw OraError(1821);

  const Range value = call.arguments.front();
  const TokenKind kind = value.Size() == 1 ? pieces.Kind(value.begin) : TokenKind::kSymbol;
  if (kind == TokenKind::kPlaceholder) {
    pieces.Remove(call.name, value.begin);
    pieces.Remove(value.end, call.close + 1);
    pieces.SetDateMask(value.begin, mask_text);
  } else if (kind == TokenKind::kString) {
    RewriteLiteral(pieces, call, StringValue(pieces.Text(value.begin)), mask);
  } else if (kind == TokenKind::kNumber) {
    RewriteLiteral(pieces, call, std::string(pieces.Text(value.begin)), mask);
  } else {
    pieces.Replace(call.name, "STR_TO_DATE");
    pieces.Remove(value.end, call.close);
    pieces.InsertBefore(call.close, ", " + QuoteLiteral(mask.ToServerFormat()));
  }
}

}  // namespace

void RewriteDateFunctions(PieceList& pieces) {
  if (!pieces.Mentions({NotedWord::kToDate, NotedWord::kToTimestamp})) return;
  for (std::size_t i = 0; i < pieces.Size(); ++i) {
    const bool is_timestamp = pieces.Noted(i) == NotedWord::kToTimestamp;
    if (!is_timestamp && pieces.Noted(i) != NotedWord::kToDate) continue;
    if (!IsCallOf(pieces, i)) continue;
    const Call call = ParseCall(pieces, i);
    if (call.arguments.empty()) throw OraError(938);
    if (call.arguments.size() > 2) throw OraError(939);
    RewriteCall(pieces, call, is_timestamp);
  }
}

}  // namespace ocimaria::sql

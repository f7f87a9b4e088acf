// SPDX-License-Identifier: Apache-2.0
// Any text as an SQL statement.
#include <cstdint>
#include <optional>

#include "Require.h"
#include "SqlText.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/Rewrite.h"

namespace fuzz {
namespace {

using namespace ocimaria::sql;

// Nothing where the statement is refused.
std::optional<Rewritten> TryRewrite(std::string_view sql) {
  try {
    return Rewrite(sql);
  } catch (const ocimaria::OraError& error) {
    Require(error.Code() > 0 && !error.Text().empty(), "a refusal has a number and a text");
    return std::nullopt;
  }
}

bool AreEqual(const Rewritten& left, const Rewritten& right) {
  const auto same = [](const Placeholder& a, const Placeholder& b) {
    return a.name == b.name && a.date_mask == b.date_mask;
  };
  return left.text == right.text && left.type == right.type && left.target_table == right.target_table &&
         std::ranges::equal(left.placeholders, right.placeholders, same);
}

void RequireEveryPlaceholder(const TokenList& source, const TokenList& text, const Rewritten& rewritten) {
  Require(rewritten.placeholders.size() == CountOf(source, TokenKind::kPlaceholder),
          "every placeholder of the statement is listed");
  if (rewritten.is_ddl) return;  // refused when it is executed
  Require(rewritten.placeholders.size() == CountOf(text, "?"), "every placeholder has its question mark");
  Require(CountOf(text, TokenKind::kPlaceholder) == 0, "no placeholder is left in the text");
}

// Literals are read, and then left out, by these calls only; of definitions parts are left out with their
// literals.
void RequireTheSameTexts(const TokenList& source, const TokenList& text, const Rewritten& rewritten) {
  if (rewritten.is_ddl || HasAnyWord(source, {"TO_DATE", "TO_TIMESTAMP", "TO_NUMBER", "TRUNC"})) return;
  if (!HasAnyWord(source, {"EXECUTE"}))
    Require(IsWithin(StringsOf(source), StringsOf(text)), "string literals are kept");
  if (!HasAnyWord(source, {"CAST", "DECLARE"}))
    Require(IsWithin(CommentsOf(source), CommentsOf(text)), "comments are kept");
}

void RequirePlainText(const TokenList& source, const Rewritten& rewritten) {
  if (!IsPlain(source)) return;
  Require(rewritten.text == PlainText(source), "what needs no change comes out as it stands");
  if (!rewritten.placeholders.empty()) return;
  const auto again = TryRewrite(rewritten.text);
  Require(again && again->text == rewritten.text, "a plain statement is rewritten once and for all");
}

// Of the literals in the text the rewriter's own are the comments of columns.
void RequireTypesInComments(const TokenList& source, const TokenList& text) {
  if (CountOf(source, TokenKind::kString) > 0) return;
  for (std::size_t i = 1; i < text.tokens.size(); ++i) {
    const Token& token = text.tokens[i];
    if (token.kind == TokenKind::kString && text.tokens[i - 1].text == "COMMENT")
      Require(FromColumnComment(StringValue(token.text)).has_value(), "the comment of a column is its type");
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fuzz;
  const std::string sql(reinterpret_cast<const char*>(data), size);
  const ub2 type = StatementType(sql);
  const auto rewritten = TryRewrite(sql);
  const auto again = TryRewrite(std::string(sql));
  Require(rewritten.has_value() == again.has_value(), "a statement is accepted or refused every time");
  if (!rewritten) return 0;
  Require(AreEqual(*rewritten, *again), "rewriting gives the same every time");
  Require(rewritten->type == type, "the type of a statement is told by its words");
  Require(rewritten->text.size() <= kMostGrowth * (sql.size() + 1), "a statement grows within its bound");

  const TokenList source = Tokenize(sql);
  const TokenList text = Tokenize(rewritten->text);
  RequirePlainText(source, *rewritten);
  RequireTypesInComments(source, text);
  const bool is_stored_program = rewritten->type == OCI_STMT_CREATE &&
                                 HasAnyWord(source, {"PROCEDURE", "FUNCTION", "TRIGGER", "PACKAGE"});
  if (is_stored_program) return 0;
  RequireEveryPlaceholder(source, text, *rewritten);
  RequireTheSameTexts(source, text, *rewritten);
  return 0;
}

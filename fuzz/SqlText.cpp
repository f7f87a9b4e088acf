// SPDX-License-Identifier: Apache-2.0
#include "SqlText.h"

#include <algorithm>

#include "oci/mariadb/sql/TextCase.h"

namespace fuzz {
namespace {

using namespace ocimaria::sql;

// Pieces of a gap: comments, each whole, and the white space between them.
std::vector<std::string_view> PartsOf(std::string_view gap) {
  std::vector<std::string_view> parts;
  while (!gap.empty()) {
    std::size_t end = gap.find_first_not_of(" \t\n\v\f\r");
    if (gap.starts_with("--")) end = gap.find('\n');
    if (gap.starts_with("/*")) end = gap.find("*/", 2) + 2;
    parts.push_back(gap.substr(0, end));
    gap.remove_prefix(parts.back().size());
  }
  return parts;
}

bool IsComment(std::string_view part) { return part.starts_with("--") || part.starts_with("/*"); }

// The server wants a blank behind "--", and would run what stands in "/*!" and "/*M!".
std::string PlainGap(std::string_view gap) {
  std::string plain;
  for (const auto part : PartsOf(gap)) {
    const bool joined = part.starts_with("--") && part.size() > 2 && !IsSpace(part[2]);
    const bool runs = part.starts_with("/*!") || part.starts_with("/*M!");
    plain += joined || runs ? std::string(part.substr(0, 2)) + " " + std::string(part.substr(2)) : part;
  }
  return plain;
}

std::string PlainToken(const Token& token) {
  const bool has_hash = token.text.find('#') != token.text.npos;
  if (token.kind == TokenKind::kPlaceholder) return "?";
  if (token.kind == TokenKind::kString && token.text.front() != '\'')
    return QuoteLiteral(StringValue(token.text));
  if (token.kind == TokenKind::kWord && has_hash) return '"' + UpperCase(token.text) + '"';
  return token.text == "^=" ? "!=" : std::string(token.text);
}

bool IsRewrittenWord(const Token& token) {
  if (token.kind != TokenKind::kWord) return false;
  const std::string word = UpperCase(token.text);
  constexpr std::string_view kRewritten[] = {
      "ADD_MONTHS", "CAST",         "CURRENT_DATE", "CURRVAL",      "DECLARE",   "DUAL",
      "EXECUTE",    "LAST_DAY",     "NEXTVAL",      "SYSDATE",      "TO_NUMBER", "TRUNC",
      "TO_DATE",    "TO_TIMESTAMP", "USER",         "SYSTIMESTAMP", "V$VERSION"};
  return std::ranges::find(kRewritten, word) != std::end(kRewritten) || word.starts_with("USER_") ||
         word.starts_with("ALL_");
}

bool BeginsWith(const TokenList& list, std::initializer_list<std::string_view> upper) {
  return !list.tokens.empty() && std::ranges::any_of(upper, [&](std::string_view word) {
    return EqualsUpper(list.tokens.front().text, word);
  });
}

}  // namespace

std::size_t CountOf(const TokenList& list, TokenKind kind) {
  return static_cast<std::size_t>(std::ranges::count(list.tokens, kind, &Token::kind));
}

std::size_t CountOf(const TokenList& list, std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count(list.tokens, text, &Token::text));
}

bool HasAnyWord(const TokenList& list, std::initializer_list<std::string_view> upper) {
  return std::ranges::any_of(list.tokens, [&](const Token& token) {
    return std::ranges::any_of(upper, [&](std::string_view word) { return EqualsUpper(token.text, word); });
  });
}

std::vector<std::string> StringsOf(const TokenList& list) {
  std::vector<std::string> strings;
  for (const Token& token : list.tokens) {
    if (token.kind == TokenKind::kString) strings.push_back(StringValue(token.text));
  }
  return strings;
}

std::vector<std::string> CommentsOf(const TokenList& list) {
  std::vector<std::string> comments;
  const auto add = [&](std::string_view gap) {
    const std::string plain = PlainGap(gap);
    for (const auto part : PartsOf(plain)) {
      if (IsComment(part)) comments.emplace_back(part);
    }
  };
  for (const Token& token : list.tokens) add(token.gap);
  add(list.tail);
  return comments;
}

bool IsWithin(const std::vector<std::string>& parts, const std::vector<std::string>& whole) {
  auto at = whole.begin();
  for (const std::string& part : parts) {
    at = std::find(at, whole.end(), part);
    if (at == whole.end()) return false;
    ++at;
  }
  return true;
}

bool IsPlain(const TokenList& list) {
  if (BeginsWith(list, {"CREATE", "ALTER", "DROP", "RENAME", "COMMENT"})) return false;
  if (std::ranges::any_of(list.tokens, IsRewrittenWord)) return false;
  return !BeginsWith(list, {"SELECT"}) ||
         std::ranges::all_of(list.tokens, [](const Token& token) { return PlainToken(token) == token.text; });
}

std::string PlainText(const TokenList& list) {
  std::string text;
  for (const Token& token : list.tokens) {
    const std::string plain = PlainToken(token);
    // Quoted names that touch would be one to the server.
    const bool touches = token.gap.empty() && plain.starts_with('"') && text.ends_with('"');
    text += (touches ? " " : PlainGap(token.gap)) + plain;
  }
  return text + PlainGap(list.tail);
}

}  // namespace fuzz

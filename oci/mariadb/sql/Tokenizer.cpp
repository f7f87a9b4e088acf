// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Tokenizer.h"

#include <algorithm>
#include <array>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

constexpr bool StartsWord(char c) { return IsLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 128; }

// What a character may be part of, as bits.
enum : std::uint8_t { kStartsWord = 1, kWordPart = 2, kBlank = 4, kEndsPair = 8 };

constexpr std::uint8_t PartsOf(char c) {
  std::uint8_t parts = IsSpace(c) ? kBlank : 0;
  if (StartsWord(c)) parts |= kStartsWord | kWordPart;
  if (IsDigit(c) || c == '$' || c == '#') parts |= kWordPart;
  if (std::string_view("=|>.*<").find(c) != std::string_view::npos) parts |= kEndsPair;
  return parts;
}

constexpr std::array<std::uint8_t, 256> kParts = [] {
  std::array<std::uint8_t, 256> parts{};
  for (int c = 0; c < 256; ++c) parts[static_cast<std::size_t>(c)] = PartsOf(static_cast<char>(c));
  return parts;
}();

constexpr bool IsPart(char c, std::uint8_t part) {
  return (kParts[static_cast<unsigned char>(c)] & part) != 0;
}
constexpr bool IsWordStart(char c) { return IsPart(c, kStartsWord); }
constexpr bool IsWordPart(char c) { return IsPart(c, kWordPart); }

// As objects, so that a loop over them needs no call.
constexpr auto kIsWordPart = [](char c) { return IsWordPart(c); };
constexpr auto kIsDigit = [](char c) { return IsDigit(c); };

// The bracket that closes a q'..' literal; any other character closes itself.
constexpr char ClosingBracket(char opening) {
  switch (opening) {
    case '[':
      return ']';
    case '{':
      return '}';
    case '(':
      return ')';
    case '<':
      return '>';
    default:
      return opening;
  }
}

// How long the prefix of a string literal is (N, Q, NQ) and whether it has brackets of its own.
struct StringPrefix {
  std::size_t length = 0;
  bool has_brackets = false;
};

constexpr StringPrefix PrefixOf(std::string_view text) {
  StringPrefix prefix;
  if (prefix.length < text.size() && ToUpper(text[prefix.length]) == 'N') ++prefix.length;
  if (prefix.length < text.size() && ToUpper(text[prefix.length]) == 'Q') {
    ++prefix.length;
    prefix.has_brackets = true;
  }
  return prefix;
}

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : m_sql(sql) {}

  TokenList Scan() {
    constexpr std::size_t kBytesPerToken = 8;  // about, as the workload's texts have them
    TokenList list;
    list.tokens.reserve(m_sql.size() / kBytesPerToken + 1);
    for (;;) {
      const std::size_t gap_begin = m_at;
      SkipGap();
      const auto gap = m_sql.substr(gap_begin, m_at - gap_begin);
      if (m_at == m_sql.size()) {
        list.tail = gap;
        return list;
      }
      const std::size_t begin = m_at;
      const TokenKind kind = ScanToken();
      const auto text = m_sql.substr(begin, m_at - begin);
      const NotedWord noted = kind == TokenKind::kWord ? NotedWordOf(text) : NotedWord::kNone;
      list.noted.Add(noted);
      list.tokens.push_back({kind, noted, gap, text});
    }
  }

 private:
  char Peek(std::size_t ahead = 0) const { return m_at + ahead < m_sql.size() ? m_sql[m_at + ahead] : '\0'; }

  void SkipGap() {
    for (;;) {
      if (IsPart(Peek(), kBlank)) {
        ++m_at;
      } else if (Peek() == '-' && Peek(1) == '-') {
        m_at = std::min(m_sql.find('\n', m_at), m_sql.size());
      } else if (Peek() == '/' && Peek(1) == '*') {
        SkipPast(m_sql.find("*/", m_at + 2), 2, 1742);
      } else {
        return;
      }
    }
  }

  void SkipPast(std::size_t closing, std::size_t length, int error) {
    if (closing == m_sql.npos) throw OraError(error);
    m_at = closing + length;
  }

  TokenKind ScanToken() {
    if (Peek() == '\'') return ScanString({});
    if (IsWordStart(Peek())) return ScanWordOrString();
    if (Peek() == '"') return ScanQuotedName(TokenKind::kQuotedName);
    if (IsDigit(Peek()) || (Peek() == '.' && IsDigit(Peek(1)))) return ScanNumber();
    if (Peek() == ':' && Peek(1) != '=') return ScanPlaceholder();
    return ScanSymbol();
  }

  template <class Part>
  TokenKind ScanWhile(TokenKind kind, Part part) {
    while (m_at < m_sql.size() && part(m_sql[m_at])) ++m_at;
    return kind;
  }

  TokenKind ScanWordOrString() {
    const auto prefix = PrefixOf(m_sql.substr(m_at, 2));
    if (prefix.length > 0 && Peek(prefix.length) == '\'') return ScanString(prefix);
    return ScanWhile(TokenKind::kWord, kIsWordPart);
  }

  TokenKind ScanString(StringPrefix prefix) {
    m_at += prefix.length + 1;
    if (prefix.has_brackets) {
      if (m_at == m_sql.size()) throw OraError(1756);
      const char closing[] = {ClosingBracket(m_sql[m_at]), '\''};
      SkipPast(m_sql.find(std::string_view(closing, 2), m_at + 1), 2, 1756);
      return TokenKind::kString;
    }
    do {
      SkipPast(m_sql.find('\'', m_at), 1, 1756);
    } while (Peek() == '\'' && ++m_at);
    return TokenKind::kString;
  }

  TokenKind ScanQuotedName(TokenKind kind) {
    if (Peek(1) == '"') throw OraError(1741);
    SkipPast(m_sql.find('"', m_at + 1), 1, 1740);
    return kind;
  }

  TokenKind ScanNumber() {
    ScanWhile(TokenKind::kNumber, kIsDigit);
    // Two points are the range of a loop, as in 1..3.
    if (Peek() == '.' && Peek(1) != '.') {
      ++m_at;
      ScanWhile(TokenKind::kNumber, kIsDigit);
    }
    const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 1 : 0;
    if (ToUpper(Peek()) == 'E' && IsDigit(Peek(1 + sign))) {
      m_at += 1 + sign;
      ScanWhile(TokenKind::kNumber, kIsDigit);
    }
    return TokenKind::kNumber;
  }

  TokenKind ScanPlaceholder() {
    ++m_at;
    if (Peek() == '"') return ScanQuotedName(TokenKind::kPlaceholder);
    if (!IsWordStart(Peek()) && !IsDigit(Peek())) throw OraError(1745);
    return ScanWhile(TokenKind::kPlaceholder, kIsWordPart);
  }

  TokenKind ScanSymbol() {
    static constexpr std::array<std::string_view, 12> kPairs{
        ":=", "||", "<=", ">=", "<>", "!=", "^=", "=>", "..", "**", "<<", ">>"};
    const bool may_pair = IsPart(Peek(1), kEndsPair);  // hardly any mark is followed by one
    m_at += may_pair && std::ranges::find(kPairs, m_sql.substr(m_at, 2)) != kPairs.end() ? 2 : 1;
    return TokenKind::kSymbol;
  }

  std::string_view m_sql;
  std::size_t m_at = 0;
};

}  // namespace

TokenList Tokenize(std::string_view sql) { return Scanner(sql).Scan(); }

std::string StringValue(std::string_view literal) {
  const auto prefix = PrefixOf(literal);
  literal.remove_prefix(prefix.length + 1);
  literal.remove_suffix(1);
  if (prefix.has_brackets) return std::string(literal.substr(1, literal.size() - 2));
  if (literal.find('\'') == literal.npos) return std::string(literal);
  std::string value;
  for (std::size_t i = 0; i < literal.size(); ++i) {
    value += literal[i];
    if (literal[i] == '\'') ++i;
  }
  return value;
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// A statement while it is rewritten: its tokens, each of which may be replaced or removed, and the text that
// comes of them. What no pass touches comes out as it was written. It points into the source text, which must
// outlive it; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/TextCase.h"
#include "oci/mariadb/sql/Tokenizer.h"

namespace ocimaria::sql {

class PieceList {
 public:
  explicit PieceList(std::string_view sql);

  std::size_t Size() const { return m_tokens.size(); }

  // As written; an empty text and kSymbol beyond the last token, so that looking ahead needs no check.
  TokenKind Kind(std::size_t i) const { return i < m_tokens.size() ? m_tokens[i].kind : TokenKind::kSymbol; }
  std::string_view Text(std::size_t i) const {
    return i < m_tokens.size() ? m_tokens[i].text : std::string_view();
  }
  NotedWord Noted(std::size_t i) const { return m_tokens[i].noted; }  // REQUIRES i < Size()

  // Whether any of these words stands anywhere.
  bool Mentions(NotedWords words) const { return m_noted.HasAnyOf(words); }

  // Unquoted words and marks, letter case ignored; the words are given in upper case.
  bool IsWord(std::size_t i, std::string_view upper) const {
    return Kind(i) == TokenKind::kWord && EqualsUpper(m_tokens[i].text, upper);
  }
  bool IsAnyWord(std::size_t i, std::initializer_list<std::string_view> upper) const {
    if (Kind(i) != TokenKind::kWord) return false;
    for (const std::string_view word : upper)
      if (EqualsUpper(m_tokens[i].text, word)) return true;
    return false;
  }
  bool IsSymbol(std::size_t i, std::string_view symbol) const {
    if (Kind(i) != TokenKind::kSymbol || i >= m_tokens.size()) return false;
    const std::string_view text = m_tokens[i].text;
    return text.front() == symbol.front() && text == symbol;
  }
  bool IsName(std::size_t i) const;  // a word or a quoted name

  // The words from i on, in this order.
  bool AreWords(std::size_t i, std::initializer_list<std::string_view> upper) const;

  // The index of the ")" that closes the "(" at `open`. Throws ORA-00907 when there is none.
  std::size_t ClosingOf(std::size_t open) const;

  void Replace(std::size_t i, std::string text);
  void Remove(std::size_t begin, std::size_t end);  // [begin, end), with the gaps before the second and later
  // Directly before or behind the piece, each behind what was inserted there already.
  void InsertBefore(std::size_t i, std::string_view text);
  void InsertAfter(std::size_t i, std::string_view text);
  bool IsRemoved(std::size_t i) const { return m_pieces[i].removed; }

  bool IsChanged(std::size_t begin, std::size_t end) const;  // anything in [begin, end)

  // The mask by which the placeholder's bound text is to be converted.
  void SetDateMask(std::size_t i, std::string mask);
  std::string_view DateMask(std::size_t i) const;

  // The text as it now stands.
  std::string Join() const;
  std::string Join(std::size_t begin, std::size_t end) const;  // without the gap before `begin`

 private:
  // What was done to a token. Most are left as they are.
  struct Piece {
    std::uint32_t closing = 0;  // of a "(": its ")"; 0: none
    std::uint32_t change = 0;   // its number in m_changes, from 1; 0: none
    bool removed = false;
    bool gap_removed = false;
  };
  struct Change {
    std::string_view text;           // what comes out
    std::string_view before, after;  // inserted
    std::string_view date_mask;
  };

  std::string_view Keep(std::string text) { return m_kept.emplace_front(std::move(text)); }
  void MatchParentheses();
  const Change* FindChange(std::size_t i) const;  // null: none
  Change& ChangeOf(std::size_t i);                // made at first use
  bool IsAsWritten(std::size_t i, bool behind) const;
  void Append(std::size_t i, bool with_gap, std::string& text) const;

  std::vector<Token> m_tokens;
  NotedWords m_noted;
  std::string_view m_tail;
  std::vector<Piece> m_pieces;  // one for each token
  std::vector<Change> m_changes;
  std::forward_list<std::string> m_kept;  // the texts that pieces were given; never moved
};

}  // namespace ocimaria::sql

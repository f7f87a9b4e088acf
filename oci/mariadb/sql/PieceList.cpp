// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/PieceList.h"

#include <algorithm>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {

PieceList::PieceList(std::string_view sql) {
  const TokenList list = Tokenize(sql);
  m_pieces.reserve(list.tokens.size());
  for (const Token& token : list.tokens) m_pieces.push_back({token, token.text, {}, {}, {}});
  m_tail = list.tail;
  MatchParentheses();
}

void PieceList::MatchParentheses() {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < Size(); ++i) {
    if (IsSymbol(i, "(")) open.push_back(i);
    if (!IsSymbol(i, ")") || open.empty()) continue;
    m_pieces[open.back()].closing = i;
    open.pop_back();
  }
}

bool PieceList::IsName(std::size_t i) const {
  return Kind(i) == TokenKind::kWord || Kind(i) == TokenKind::kQuotedName;
}

bool PieceList::AreWords(std::size_t i, std::initializer_list<std::string_view> upper) const {
  return std::ranges::all_of(upper, [&](std::string_view word) { return IsWord(i++, word); });
}

std::size_t PieceList::ClosingOf(std::size_t open) const {
  if (m_pieces[open].closing == 0) throw OraError(907);
  return m_pieces[open].closing;
}

void PieceList::Replace(std::size_t i, std::string text) {
  m_pieces[i].text = Keep(std::move(text));
  m_pieces[i].removed = false;
}

void PieceList::Remove(std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    m_pieces[i].removed = true;
    m_pieces[i].gap_removed = i > begin;
  }
}

void PieceList::InsertBefore(std::size_t i, std::string_view text) {
  m_pieces[i].before = Keep(std::string(m_pieces[i].before).append(text));
}

void PieceList::InsertAfter(std::size_t i, std::string_view text) {
  m_pieces[i].after = Keep(std::string(m_pieces[i].after).append(text));
}

bool PieceList::IsChanged(std::size_t begin, std::size_t end) const {
  const auto first = m_pieces.begin();
  return std::any_of(first + static_cast<std::ptrdiff_t>(begin), first + static_cast<std::ptrdiff_t>(end),
                     [](const Piece& piece) {
                       return piece.removed || !piece.before.empty() || !piece.after.empty() ||
                              piece.text != piece.token.text;
                     });
}

void PieceList::SetDateMask(std::size_t i, std::string mask) {
  m_pieces[i].date_mask = Keep(std::move(mask));
}

namespace {

// Two literals or two quoted names that touch would be read as one, with a quote in it.
void Append(std::string& text, std::string_view part) {
  const bool is_quoted = part.starts_with('\'') || part.starts_with('"');
  if (is_quoted && text.ends_with(part.front())) text += ' ';
  text += part;
}

// Comments that MariaDB reads otherwise than Oracle are put right: "--x" needs a blank there, and "/*!" and
// "/*M!" would be run.
void AppendComments(std::string& text, std::string_view gap) {
  while (!gap.empty()) {
    std::size_t length = 1;
    if (gap.starts_with("--")) {
      length = std::min(gap.find('\n'), gap.size());
      text += length > 2 && !IsSpace(gap[2]) ? "-- " : "--";
      text += gap.substr(2, length - 2);
    } else if (gap.starts_with("/*")) {
      length = gap.find("*/", 2) + 2;
      const auto body = gap.substr(2, length - 2);
      text += body.starts_with('!') || body.starts_with("M!") ? "/* " : "/*";
      text += body;
    } else {
      text += gap.front();
    }
    gap.remove_prefix(length);
  }
}

void AppendGap(std::string& text, std::string_view gap) {
  if (gap.size() < 2)  // no comment is as short
    text += gap;
  else
    AppendComments(text, gap);
}

}  // namespace

std::string PieceList::Join() const {
  std::string text = Join(0, Size());
  AppendGap(text, m_tail);
  return text;
}

std::string PieceList::Join(std::size_t begin, std::size_t end) const {
  std::string text;
  for (std::size_t i = begin; i < end; ++i) {
    const Piece& piece = m_pieces[i];
    if ((i > begin || begin == 0) && !piece.gap_removed) AppendGap(text, piece.token.gap);
    Append(text, piece.before);
    if (!piece.removed) Append(text, piece.text);
    Append(text, piece.after);
  }
  return text;
}

}  // namespace ocimaria::sql

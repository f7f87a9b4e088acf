// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/PieceList.h"

#include <algorithm>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {

PieceList::PieceList(std::string_view sql) {
  TokenList list = Tokenize(sql);
  m_tokens = std::move(list.tokens);
  m_noted = list.noted;
  m_tail = list.tail;
  m_pieces.resize(m_tokens.size());
  MatchParentheses();
}

void PieceList::MatchParentheses() {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < Size(); ++i) {
    if (Kind(i) != TokenKind::kSymbol) continue;
    if (IsSymbol(i, "(")) open.push_back(i);
    if (!IsSymbol(i, ")") || open.empty()) continue;
    m_pieces[open.back()].closing = static_cast<std::uint32_t>(i);
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

const PieceList::Change* PieceList::FindChange(std::size_t i) const {
  return m_pieces[i].change == 0 ? nullptr : &m_changes[m_pieces[i].change - 1];
}

PieceList::Change& PieceList::ChangeOf(std::size_t i) {
  if (m_pieces[i].change == 0) {
    m_changes.push_back({m_tokens[i].text, {}, {}, {}});
    m_pieces[i].change = static_cast<std::uint32_t>(m_changes.size());
  }
  return m_changes[m_pieces[i].change - 1];
}

void PieceList::Replace(std::size_t i, std::string text) {
  ChangeOf(i).text = Keep(std::move(text));
  m_pieces[i].removed = false;
}

void PieceList::Remove(std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    m_pieces[i].removed = true;
    m_pieces[i].gap_removed = i > begin;
  }
}

void PieceList::InsertBefore(std::size_t i, std::string_view text) {
  Change& change = ChangeOf(i);
  change.before = Keep(std::string(change.before).append(text));
}

void PieceList::InsertAfter(std::size_t i, std::string_view text) {
  Change& change = ChangeOf(i);
  change.after = Keep(std::string(change.after).append(text));
}

bool PieceList::IsChanged(std::size_t begin, std::size_t end) const {
  for (std::size_t i = begin; i < end; ++i) {
    const Change* change = FindChange(i);
    if (m_pieces[i].removed) return true;
    if (change && (!change->before.empty() || !change->after.empty() || change->text != m_tokens[i].text))
      return true;
  }
  return false;
}

void PieceList::SetDateMask(std::size_t i, std::string mask) {
  ChangeOf(i).date_mask = Keep(std::move(mask));
}

std::string_view PieceList::DateMask(std::size_t i) const {
  const Change* change = FindChange(i);
  return change ? change->date_mask : std::string_view();
}

namespace {

// Two literals or two quoted names that touch would be read as one, with a quote in it.
void AppendPart(std::string& text, std::string_view part) {
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

bool MayHoldComment(std::string_view gap) { return gap.size() > 1 && gap.find_first_of("-/") != gap.npos; }

void AppendGap(std::string& text, std::string_view gap) {
  if (MayHoldComment(gap))
    AppendComments(text, gap);
  else
    text += gap;
}

}  // namespace

std::string PieceList::Join() const {
  std::string text = Join(0, Size());
  AppendGap(text, m_tail);
  return text;
}

// Comes out as it stands in the source, gap and all; `behind` tells whether what stands there before it has
// come out before it, too.
bool PieceList::IsAsWritten(std::size_t i, bool behind) const {
  const Piece& piece = m_pieces[i];
  const Token& token = m_tokens[i];
  if (piece.change != 0 || piece.removed || piece.gap_removed) return false;
  if (!token.gap.empty()) return !MayHoldComment(token.gap);
  const char first = token.text.front();
  return (first != '"' && first != '\'') || (behind && *(token.text.data() - 1) != first);
}

void PieceList::Append(std::size_t i, bool with_gap, std::string& text) const {
  const Piece& piece = m_pieces[i];
  const Change* change = FindChange(i);
  if (with_gap && !piece.gap_removed) AppendGap(text, m_tokens[i].gap);
  if (change) AppendPart(text, change->before);
  if (!piece.removed) AppendPart(text, change ? change->text : m_tokens[i].text);
  if (change) AppendPart(text, change->after);
}

// What is as it was written is copied in as long stretches as possible.
std::string PieceList::Join(std::size_t begin, std::size_t end) const {
  std::string text;
  if (begin == end) return text;
  const char* const source_end = m_tokens[end - 1].text.data() + m_tokens[end - 1].text.size();
  text.reserve(static_cast<std::size_t>(source_end - m_tokens[begin].text.data()));
  for (std::size_t i = begin; i < end;) {
    const bool with_gap = i > begin || begin == 0;
    std::size_t behind = i;
    while (with_gap && behind < end && IsAsWritten(behind, behind > i)) ++behind;
    if (behind == i) {
      Append(i++, with_gap, text);
      continue;
    }
    const Token& last = m_tokens[behind - 1];
    text.append(m_tokens[i].gap.data(), last.text.data() + last.text.size());
    i = behind;
  }
  return text;
}

}  // namespace ocimaria::sql

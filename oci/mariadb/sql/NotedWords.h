// SPDX-License-Identifier: Apache-2.0
// The words that a pass over a whole statement looks for. The tokenizer notes them once, so that a pass skips
// a statement, or a token, that holds none of its own. A word that a pass looks for at a fixed place only
// (the verb, what follows a noted word) need not be here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {

enum class NotedWord : std::uint8_t {
  kNone,
  kAddMonths,
  kCast,
  kConnect,
  kCurrentDate,
  kFor,
  kFrom,
  kJoin,
  kLastDay,
  kNextval,
  kNowait,
  kNulls,
  kSysdate,
  kSystimestamp,
  kToDate,
  kToNumber,
  kToTimestamp,
  kTrunc,
  kUser,
};

// A set of them.
class NotedWords {
 public:
  constexpr NotedWords() = default;
  constexpr NotedWords(std::initializer_list<NotedWord> words) {
    for (const NotedWord word : words) Add(word);
  }
  constexpr void Add(NotedWord word) { m_bits |= std::uint32_t{1} << static_cast<unsigned>(word); }
  constexpr bool HasAnyOf(NotedWords other) const { return (m_bits & other.m_bits) != 0; }
  constexpr bool Has(NotedWord word) const { return HasAnyOf({word}); }

 private:
  std::uint32_t m_bits = 0;
};

namespace noted {

struct Spelt {
  std::string_view text;
  NotedWord word = NotedWord::kNone;
};

inline constexpr auto kSpellings = std::to_array<Spelt>({
    {"ADD_MONTHS", NotedWord::kAddMonths},
    {"CAST", NotedWord::kCast},
    {"CONNECT", NotedWord::kConnect},
    {"CURRENT_DATE", NotedWord::kCurrentDate},
    {"FOR", NotedWord::kFor},
    {"FROM", NotedWord::kFrom},
    {"JOIN", NotedWord::kJoin},
    {"LAST_DAY", NotedWord::kLastDay},
    {"NEXTVAL", NotedWord::kNextval},
    {"NOWAIT", NotedWord::kNowait},
    {"NULLS", NotedWord::kNulls},
    {"SYSDATE", NotedWord::kSysdate},
    {"SYSTIMESTAMP", NotedWord::kSystimestamp},
    {"TO_DATE", NotedWord::kToDate},
    {"TO_NUMBER", NotedWord::kToNumber},
    {"TO_TIMESTAMP", NotedWord::kToTimestamp},
    {"TRUNC", NotedWord::kTrunc},
    {"USER", NotedWord::kUser},
});

// Tells all of them apart; the table below would not compile otherwise.
constexpr std::size_t PlaceOf(std::string_view text) {
  const auto first = static_cast<unsigned char>(ToUpper(text.front()));
  const auto last = static_cast<unsigned char>(ToUpper(text.back()));
  return (text.size() + first + std::size_t{8} * last) % 64;
}

consteval std::array<Spelt, 64> Placed() {
  std::array<Spelt, 64> places{};
  for (const Spelt& spelt : kSpellings) {
    Spelt& place = places[PlaceOf(spelt.text)];
    if (place.word != NotedWord::kNone) throw "two words at one place";
    place = spelt;
  }
  return places;
}

inline constexpr std::array<Spelt, 64> kPlaces = Placed();

}  // namespace noted

// REQUIRES: the text is not empty. Letter case is ignored.
constexpr NotedWord NotedWordOf(std::string_view text) {
  const noted::Spelt& candidate = noted::kPlaces[noted::PlaceOf(text)];
  return EqualsUpper(text, candidate.text) ? candidate.word : NotedWord::kNone;
}

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/NotedWords.h"

#include <gtest/gtest.h>

#include <string>

#include "oci/mariadb/sql/Tokenizer.h"

namespace ocimaria::sql {
namespace {

TEST(NotedWords, AreKnownInAnyLetterCase) {
  for (const noted::Spelt& spelt : noted::kSpellings) {
    std::string lower(spelt.text);
    for (char& c : lower)
      if (IsLetter(c)) c = static_cast<char>(c - 'A' + 'a');
    EXPECT_EQ(NotedWordOf(spelt.text), spelt.word) << spelt.text;
    EXPECT_EQ(NotedWordOf(lower), spelt.word) << lower;
    EXPECT_NE(spelt.word, NotedWord::kNone) << spelt.text;
  }
}

TEST(NotedWords, AreKnownByAllTheirLetters) {
  for (const std::string_view word : {"TO_DAT", "TO_DATES", "TO_DUTE", "FORM", "FR", "F", "USER1", "SELECT"})
    EXPECT_EQ(NotedWordOf(word), NotedWord::kNone) << word;
}

TEST(NotedWords, OfATextAreThoseThatStandThereAsWords) {
  const NotedWords words = Tokenize("select trunc(a) from t where b = 'nowait' and \"USER\" = :cast").noted;
  EXPECT_TRUE(words.Has(NotedWord::kTrunc));
  EXPECT_TRUE(words.Has(NotedWord::kFrom));
  EXPECT_FALSE(words.HasAnyOf({NotedWord::kNowait, NotedWord::kUser, NotedWord::kCast, NotedWord::kFor}));
}

}  // namespace
}  // namespace ocimaria::sql

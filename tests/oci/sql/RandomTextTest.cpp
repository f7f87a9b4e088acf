// SPDX-License-Identifier: Apache-2.0
// Texts that nobody would write, the same ones in every run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>

#include "OraErrorOf.h"
#include "oci/mariadb/sql/DateMask.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/Rewrite.h"
#include "oci/mariadb/sql/Tokenizer.h"

namespace ocimaria::sql {
namespace {

constexpr int kTexts = 5000;

constexpr std::string_view kFragments[] = {"SELECT",
                                           "INSERT",
                                           "INTO",
                                           "UPDATE",
                                           "CREATE",
                                           "TABLE",
                                           "ALTER",
                                           "ADD",
                                           "DROP",
                                           "SEQUENCE",
                                           "INDEX",
                                           "ON",
                                           "BEGIN",
                                           "END",
                                           "DECLARE",
                                           "EXECUTE",
                                           "IMMEDIATE",
                                           "FROM",
                                           "WHERE",
                                           "AS",
                                           "IS",
                                           "COMMENT",
                                           "USER_TABLES",
                                           "USER",
                                           "DUAL",
                                           "TO_DATE",
                                           "TO_NUMBER",
                                           "TRUNC",
                                           "CAST",
                                           "SYSDATE",
                                           "NUMBER",
                                           "VARCHAR2",
                                           "TIMESTAMP",
                                           "INTERVAL",
                                           "DAY",
                                           "TO",
                                           "SECOND",
                                           "LONG",
                                           "RAW",
                                           "PRIMARY",
                                           "KEY",
                                           "UNIQUE",
                                           "CHECK",
                                           "CONSTRAINT",
                                           "REFERENCES",
                                           "DEFAULT",
                                           "NOT",
                                           "NULL",
                                           "USING",
                                           "ENABLE",
                                           "MAXVALUE",
                                           "STORAGE",
                                           "TABLESPACE",
                                           "RENAME",
                                           "T",
                                           "A#B",
                                           "\"Q\"",
                                           "'x'",
                                           "'YYYY-MM-DD'",
                                           "'2024-01-02'",
                                           "q'[it's]'",
                                           "N'y'",
                                           "1",
                                           "2.5e3",
                                           "99999999999999999999",
                                           ":X",
                                           ":1",
                                           "(",
                                           "(",
                                           ")",
                                           ")",
                                           ",",
                                           ",",
                                           ".",
                                           ";",
                                           "=",
                                           ":=",
                                           "||",
                                           "+",
                                           "-",
                                           "*",
                                           "/",
                                           "^=",
                                           "%",
                                           "--c\n",
                                           "/*c*/",
                                           "/*!c*/",
                                           " ",
                                           "<<",
                                           ">>"};

std::string RandomText(std::mt19937& random, int fragments) {
  std::string text;
  for (int i = 0; i < fragments; ++i) {
    text += kFragments[random() % std::size(kFragments)];
    text += " ";
  }
  return text;
}

std::size_t CountQuestionMarks(const std::string& sql) {
  const auto tokens = Tokenize(sql).tokens;
  return static_cast<std::size_t>(std::ranges::count(tokens, "?", &Token::text));
}

TEST(RandomText, IsRewrittenOrRefusedWithAnOracleError) {
  std::mt19937 random(42);
  int accepted = 0;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = RandomText(random, 1 + static_cast<int>(random() % 24));
    SCOPED_TRACE(text);
    OraErrorOf([&] {
      const Rewritten rewritten = Rewrite(text);
      EXPECT_EQ(CountQuestionMarks(rewritten.text), rewritten.placeholders.size());
      EXPECT_EQ(rewritten.type, StatementType(text));
      ++accepted;
    });
  }
  EXPECT_GT(accepted, kTexts / 20);
}

TEST(RandomText, OfAnyBytesIsRewrittenOrRefused) {
  std::mt19937 random(43);
  for (int i = 0; i < kTexts; ++i) {
    std::string text = i % 2 == 0 ? "SELECT " : "";
    for (std::size_t n = random() % 30; n > 0; --n) text += static_cast<char>(random());
    EXPECT_NO_FATAL_FAILURE(OraErrorOf([&] { Rewrite(text); }));
  }
}

TEST(RandomText, IsATypeThatComesBackAsItWasOrNone) {
  std::mt19937 random(44);
  int accepted = 0;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = RandomText(random, 1 + static_cast<int>(random() % 6));
    OraErrorOf([&] {
      const OracleType type = ParseOracleType(text);
      EXPECT_EQ(ParseOracleType(TypeText(type)), type) << text;
      ++accepted;
    });
  }
  EXPECT_GT(accepted, kTexts / 200);
}

TEST(RandomText, IsADateInItsOneFormOrNone) {
  constexpr std::string_view kMasks[] = {
      "YYYY/MM/DD HH24:MI:SS", "DD-MON-RR", "YYYYMMDDHH24MISS", "J", "DDD YYYY", "HH:MI:SS.FF AM"};
  constexpr std::string_view kCharacters = "0123456789/-: .JANFEBPM";
  std::mt19937 random(45);
  for (int i = 0; i < kTexts; ++i) {
    std::string text;
    for (std::size_t n = random() % 24; n > 0; --n) text += kCharacters[random() % kCharacters.size()];
    const std::string_view mask = kMasks[random() % std::size(kMasks)];
    OraErrorOf([&] {
      const std::string date = DateMask(mask).ToCanonical(text);
      const bool has_fraction = mask.find("FF") != mask.npos;
      EXPECT_EQ(date.size(), has_fraction ? 26u : 19u) << text << " by " << mask;
      EXPECT_EQ(
          DateMask(has_fraction ? "YYYY-MM-DD HH24:MI:SS.FF6" : "YYYY-MM-DD HH24:MI:SS").ToCanonical(date),
          date);
    });
  }
}

// What DateMask makes of a text: the date, or the number of the refusal.
std::string Outcome(const DateMask& mask, const std::string& text) {
  std::string outcome;
  const int error = OraErrorOf([&] { outcome = mask.ToCanonical(text); });
  return error != 0 ? std::to_string(error) : outcome;
}

// Numbers up to two beyond their range, and perhaps another character somewhere.
std::string AlmostADate(std::mt19937& random) {
  constexpr std::string_view kCharacters = "0123456789/-: .JZ\t";
  const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  char text[32];
  std::snprintf(text, sizeof text, "%04u/%02u/%02u %02u:%02u:%02u", below(3) * 2000, below(15), below(34),
                below(26), below(62), below(62));
  if (below(4) == 0) text[below(19)] = kCharacters[below(kCharacters.size())];
  return text;
}

TEST(RandomText, IsReadByThePlainMaskAsElementByElement) {
  const DateMask at_once("YYYY/MM/DD HH24:MI:SS");
  const DateMask one_by_one("FMYYYY/MM/DD HH24:MI:SS");  // FM has no meaning when reading
  std::mt19937 random(46);
  int accepted = 0;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = AlmostADate(random);
    const std::string outcome = Outcome(at_once, text);
    ASSERT_EQ(outcome, Outcome(one_by_one, text)) << text;
    if (outcome.size() == 19) ++accepted;
  }
  EXPECT_GT(accepted, kTexts / 10);
  EXPECT_LT(accepted, kTexts * 9 / 10);
}

}  // namespace
}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Tokenizer.h"

#include <gmock/gmock.h>

#include "OraErrorOf.h"

namespace ocimaria::sql {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Texts(std::string_view sql) {
  std::vector<std::string> texts;
  for (const Token& token : Tokenize(sql).tokens) texts.emplace_back(token.text);
  return texts;
}

std::vector<TokenKind> Kinds(std::string_view sql) {
  std::vector<TokenKind> kinds;
  for (const Token& token : Tokenize(sql).tokens) kinds.push_back(token.kind);
  return kinds;
}

TEST(Tokenizer, CutsWordsNumbersAndMarks) {
  EXPECT_THAT(Texts("select a.b,1.5e-3 from t where x>=:ID"),
              ElementsAre("select", "a", ".", "b", ",", "1.5e-3", "from", "t", "where", "x", ">=", ":ID"));
}

TEST(Tokenizer, KeepsEveryCharacterInTokensAndGaps) {
  const std::string sql = " /* a */ select 'x''y' , \"N a\" -- end\n from t  -- last";
  std::string joined;
  const TokenList list = Tokenize(sql);
  for (const Token& token : list.tokens) joined.append(token.gap).append(token.text);
  EXPECT_EQ(joined.append(list.tail), sql);
}

TEST(Tokenizer, TakesCommentsAndHintsForGaps) {
  EXPECT_THAT(Texts("select/*+ FIRST_ROWS */1--:x 'open\n/* ; \" */from dual"),
              ElementsAre("select", "1", "from", "dual"));
}

TEST(Tokenizer, TakesADoubledQuoteForOneOfTheText) {
  EXPECT_THAT(Texts("'a''b''' 'c'"), ElementsAre("'a''b'''", "'c'"));
  EXPECT_EQ(StringValue("'a''b'''"), "a'b'");
}

TEST(Tokenizer, ReadsQLiteralsWithEachKindOfBracket) {
  EXPECT_EQ(StringValue("q'[it's]'"), "it's");
  EXPECT_EQ(StringValue("Q'{a}b}'"), "a}b");
  EXPECT_EQ(StringValue("nq'(x)'"), "x");
  EXPECT_EQ(StringValue("q'!a''b!'"), "a''b");
  EXPECT_THAT(Texts("q'<a'b>',q'[]'"), ElementsAre("q'<a'b>'", ",", "q'[]'"));
}

TEST(Tokenizer, ReadsNationalLiterals) {
  EXPECT_THAT(Kinds("N'abc'"), ElementsAre(TokenKind::kString));
  EXPECT_EQ(StringValue("N'abc'"), "abc");
}

TEST(Tokenizer, TellsAnAssignmentFromAPlaceholder) {
  EXPECT_THAT(Texts("v:=:x"), ElementsAre("v", ":=", ":x"));
  EXPECT_THAT(Kinds(":1 :\"Mixed Case\""), ElementsAre(TokenKind::kPlaceholder, TokenKind::kPlaceholder));
}

TEST(Tokenizer, LeavesColonsInTextsNamesAndCommentsAlone) {
  EXPECT_THAT(Kinds("'HH24:MI' \":x\" /* :y */"), ElementsAre(TokenKind::kString, TokenKind::kQuotedName));
}

TEST(Tokenizer, ReadsTheRangeOfALoopAsTwoNumbers) {
  EXPECT_THAT(Texts("for i in 1..3 loop"), ElementsAre("for", "i", "in", "1", "..", "3", "loop"));
}

TEST(Tokenizer, TakesDollarAndHashIntoNames) {
  EXPECT_THAT(Texts("v$version sys#t"), ElementsAre("v$version", "sys#t"));
}

TEST(Tokenizer, FindsNothingInBlankText) {
  EXPECT_THAT(Texts(""), IsEmpty());
  EXPECT_THAT(Texts(" \n\t--x"), IsEmpty());
}

TEST(Tokenizer, RefusesOpenQuotesNamesAndComments) {
  EXPECT_EQ(OraErrorOf([] { Tokenize("select 'abc"); }), 1756);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select 'abc''"); }), 1756);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select q'[abc]"); }), 1756);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select q'"); }), 1756);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select \"abc"); }), 1740);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select \"\""); }), 1741);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select /* abc"); }), 1742);
}

TEST(Tokenizer, RefusesAColonWithoutAName) {
  EXPECT_EQ(OraErrorOf([] { Tokenize("select : from dual"); }), 1745);
  EXPECT_EQ(OraErrorOf([] { Tokenize("select :"); }), 1745);
}

}  // namespace
}  // namespace ocimaria::sql

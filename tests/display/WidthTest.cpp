// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/Width.h"

#include <gtest/gtest.h>

#include "lkbench/display/Spans.h"

namespace lkbench {
namespace {

TEST(Width, WideCharactersTakeTwoColumnsAndCombiningOnesNone) {
  EXPECT_EQ(DisplayWidth(""), 0u);
  EXPECT_EQ(DisplayWidth("abc"), 3u);
  EXPECT_EQ(DisplayWidth("p\u00e9"), 2u);
  EXPECT_EQ(DisplayWidth("pe\u0301"), 2u);
  EXPECT_EQ(DisplayWidth("\u8ca0\u8377"), 4u);
}

TEST(Width, AByteThatIsNoTextTakesOneColumn) { EXPECT_EQ(DisplayWidth("a\xff\xc3"), 3u); }

TEST(Width, ACutLeavesCharactersWhole) {
  EXPECT_EQ(CutToWidth("abc", 2), "ab");
  EXPECT_EQ(CutToWidth("abc", 3), "abc");
  EXPECT_EQ(CutToWidth("\u8ca0\u8377", 3), "\u8ca0");
  EXPECT_EQ(CutToWidth("pe\u0301x", 2), "pe\u0301");
  EXPECT_EQ(CutToWidth("abc", 0), "");
}

TEST(Width, WordsThatDoNotFitGoToAnIndentedLine) {
  EXPECT_EQ(Folded("one two three", 13), "one two three");
  EXPECT_EQ(Folded("one two three", 12), "one two\n  three");
  EXPECT_EQ(Folded("one two three", 7), "one two\n  three");
  EXPECT_EQ(Folded("one two three four", 7), "one two\n  three\n  four");
  EXPECT_EQ(Folded("first\none two", 5), "first\none\n  two");
}

TEST(Width, AWordThatIsTooLongKeepsItsLine) {
  EXPECT_EQ(Folded("/a/long/path", 5), "/a/long/path");
  EXPECT_EQ(Folded("see /a/long/path x", 6), "see\n  /a/long/path\n  x");
}

TEST(Width, ALaidOutLineIsNotFolded) { EXPECT_EQ(Folded("one  two three", 5), "one  two three"); }

TEST(Spans, APieceOfTheHighestRankIsLeftOutFirst) {
  const std::vector<Piece> pieces = {{"time"}, {"mean", 1}, {"p99", 2}, {"end"}};
  EXPECT_EQ(TextOf(Fitted(pieces, 20)), "time  mean  p99  end");
  EXPECT_EQ(TextOf(Fitted(pieces, 19)), "time  mean  end");
  EXPECT_EQ(TextOf(Fitted(pieces, 14)), "time  end");
  EXPECT_EQ(TextOf(Fitted(pieces, 7)), "time  e");
}

TEST(Spans, OnlyWhatIsBadIsPainted) {
  const Spans spans = {{"a "}, {"b", Tone::kBad}};
  EXPECT_EQ(TextOf(spans), "a b");
  EXPECT_EQ(TextOf(spans, true), "a \x1b[31mb\x1b[0m");
  EXPECT_EQ(TextOf(CutToWidth(spans, 2), true), "a \x1b[31m\x1b[0m");
}

}  // namespace
}  // namespace lkbench

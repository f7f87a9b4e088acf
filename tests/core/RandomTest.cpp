// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <set>
#include <string>

#include "core/Random.h"

namespace {

// How often each value of nLow..nHigh comes in as many draws; the bounds allow for 5 standard deviations.
template <class Draw>
void ExpectUniform(long nLow, long nHigh, Draw draw) {
  constexpr int kDrawsPerValue = 2500;
  std::map<long, int> counts;
  const long nValues = nHigh - nLow + 1;
  for (long i = 0; i < nValues * kDrawsPerValue; ++i) ++counts[draw()];
  EXPECT_EQ(counts.size(), static_cast<size_t>(nValues));
  EXPECT_EQ(counts.begin()->first, nLow);
  EXPECT_EQ(counts.rbegin()->first, nHigh);
  for (const auto& [nValue, nCount] : counts) EXPECT_NEAR(nCount, kDrawsPerValue, 250) << nValue;
}

constexpr double kSecond = 1.0 / 86400.0;

}  // namespace

TEST(Random, IntsAreUniformWithBothBounds) {
  CRandom random;
  random.Seed(17);
  ExpectUniform(1, 100, [&random] { return random.GetRandomInt(1, 100); });
  ExpectUniform(-3, 3, [&random] { return random.GetRandom(-3, 3); });
}

TEST(Random, RepeatsForASeedAndDiffersForAnother) {
  CRandom first;
  CRandom second;
  CRandom other;
  first.Seed(4);
  second.Seed(4);
  other.Seed(5);
  int nEqual = 0;
  for (int i = 0; i < 100; ++i) {
    const int nDraw = first.GetRandomInt(1, 1000000);
    EXPECT_EQ(second.GetRandomInt(1, 1000000), nDraw);
    nEqual += other.GetRandomInt(1, 1000000) == nDraw ? 1 : 0;
  }
  EXPECT_LT(nEqual, 3);
}

TEST(Random, SeedMayBeNegative) {
  CRandom first;
  CRandom second;
  first.Seed(-1);
  second.Seed(INT_MIN);
  EXPECT_NE(first.GetRandom(LONG_MIN, LONG_MAX), second.GetRandom(LONG_MIN, LONG_MAX));
}

TEST(Random, BoundsMayBeEqualOrReversed) {
  CRandom random;
  EXPECT_EQ(random.GetRandomInt(5, 5), 5);
  ExpectUniform(1, 4, [&random] { return random.GetRandomInt(4, 1); });
}

TEST(Random, BoundsMaySpanTheWholeRange) {
  CRandom random;
  random.Seed(1);
  constexpr int kDraws = 10000;
  int nNegative = 0;
  int nOdd = 0;
  for (int i = 0; i < kDraws; ++i) {
    const long nDraw = random.GetRandom(LONG_MIN, LONG_MAX);
    nNegative += nDraw < 0 ? 1 : 0;
    nOdd += static_cast<int>(nDraw & 1);
  }
  EXPECT_NEAR(nNegative, kDraws / 2, 250);
  EXPECT_NEAR(nOdd, kDraws / 2, 250);
  EXPECT_EQ(random.GetRandom(LONG_MAX, LONG_MAX), LONG_MAX);
  EXPECT_EQ(random.GetRandom(LONG_MIN, LONG_MIN), LONG_MIN);
}

TEST(Random, IntBoundsMaySpanTheWholeRange) {
  CRandom random;
  bool bNegative = false;
  bool bPositive = false;
  for (int i = 0; i < 100; ++i) {
    const int nDraw = random.GetRandomInt(INT_MIN, INT_MAX);
    bNegative |= nDraw < 0;
    bPositive |= nDraw > 0;
  }
  EXPECT_TRUE(bNegative && bPositive);
}

TEST(RandGen, LongsAreUniformWithBothBounds) {
  CRandGen generator;
  generator.SetSeed(2);
  ExpectUniform(1, 100, [&generator] { return generator.UnifInt(1, 100); });
  ExpectUniform(1, 2, [&generator] { return generator.UnifInt(2, 1); });
}

TEST(RandGen, RealsFillTheRangeWithoutItsUpperBound) {
  CRandGen generator;
  generator.SetSeed(3);
  double fSum = 0.0;
  for (int i = 0; i < 10000; ++i) {
    const double fDraw = generator.UnifReal(1.0, 9999.99);
    ASSERT_GE(fDraw, 1.0);
    ASSERT_LT(fDraw, 9999.99);
    fSum += fDraw;
  }
  EXPECT_NEAR(fSum / 10000, 5000.5, 150.0);  // 5 standard deviations
}

TEST(RandGen, RealsOfNeighbouringBoundsStayBelowTheUpper) {
  CRandGen generator;
  const double fHigh = 1.0000000000000002;
  for (int i = 0; i < 100; ++i) EXPECT_LT(generator.UnifReal(1.0, fHigh), fHigh);
  EXPECT_EQ(generator.UnifReal(2.0, 2.0), 2.0);
}

TEST(RandGen, TextLengthsAreUniformWithBothBounds) {
  CRandGen generator;
  generator.SetSeed(4);
  std::string text;
  ExpectUniform(1, 12, [&generator, &text] {
    const int nLength = generator.MakeAlphaString(1, 12, text);
    EXPECT_EQ(text.size(), static_cast<size_t>(nLength));
    return static_cast<long>(nLength);
  });
}

TEST(RandGen, TextHoldsEveryLetterEquallyOftenAtEveryPlace) {
  CRandGen generator;
  generator.SetSeed(5);
  std::string text;
  constexpr int kTexts = 20000;
  constexpr size_t kLength = 25;
  std::map<char, int> letters;
  std::map<char, int> tenths;  // at places 0, 10 and 20, where a new draw starts
  for (int i = 0; i < kTexts; ++i) {
    generator.MakeAlphaString(kLength, kLength, text);
    for (size_t nPlace = 0; nPlace < kLength; ++nPlace) {
      ++letters[text[nPlace]];
      if (nPlace % 10 == 0) ++tenths[text[nPlace]];
    }
  }
  EXPECT_EQ(letters.size(), 52u);
  for (const auto& [letter, nCount] : letters) {
    EXPECT_TRUE((letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z')) << letter;
    EXPECT_NEAR(nCount, kTexts * 25 / 52, 490) << letter;
    EXPECT_NEAR(tenths[letter], kTexts * 3 / 52, 170) << letter;
  }
}

TEST(RandGen, TextBoundsMayBeReversedOrNegative) {
  CRandGen generator;
  std::string text = "before";
  EXPECT_EQ(generator.MakeAlphaString(-5, -1, text), 0);
  EXPECT_EQ(text, "");
  ExpectUniform(0, 1, [&] { return static_cast<long>(generator.MakeAlphaString(1, 0, text)); });
}

TEST(RandGen, DatesCoverBothEndsToTheSecond) {
  CRandGen generator;
  generator.SetSeed(6);
  const lkDateTime start(1999, 12, 31, 23, 59, 58);
  const lkDateTime end(2000, 1, 1, 0, 0, 1);
  std::set<std::string> texts;
  lkDateTime date;
  for (int i = 0; i < 200; ++i) {
    generator.GenerateDate(start, end, date);
    texts.insert(date.Format("%Y-%m-%d %H:%M:%S"));
  }
  EXPECT_EQ(texts, (std::set<std::string>{"1999-12-31 23:59:58", "1999-12-31 23:59:59", "2000-01-01 00:00:00",
                                          "2000-01-01 00:00:01"}));
}

TEST(RandGen, DatesStayWithinFiveCenturies) {
  CRandGen generator;
  generator.SetSeed(7);
  const double fStart = lkDateTime(1950, 1, 1, 0, 0, 0);
  const double fEnd = lkDateTime(2500, 12, 30, 12, 12, 12);
  double fSum = 0.0;
  lkDateTime date;
  for (int i = 0; i < 10000; ++i) {
    generator.GenerateDate(fStart, fEnd, date);
    ASSERT_GE(date, fStart - kSecond / 2);
    ASSERT_LE(date, fEnd + kSecond / 2);
    fSum += date;
  }
  EXPECT_NEAR(fSum / 10000, (fStart + fEnd) / 2, (fEnd - fStart) / 60);
}

TEST(UniqueRandom, IsUniformFrom1ToTheBound) {
  CUniqueRandom random;
  random.Seed(8);
  ExpectUniform(1, 10, [&random] { return static_cast<long>(random.GetRandom(10)); });
  EXPECT_EQ(random.GetRandom(1), 1u);
  EXPECT_EQ(random.GetRandom(0), 0u);
}

TEST(UniqueRandom, TakesTheLargestBound) {
  CUniqueRandom random;
  bool bUpperHalf = false;
  for (int i = 0; i < 100; ++i) {
    const unsigned int nDraw = random.GetRandom(UINT_MAX);
    EXPECT_GE(nDraw, 1u);
    bUpperHalf |= nDraw > UINT_MAX / 2;
  }
  EXPECT_TRUE(bUpperHalf);
}

// Its name says otherwise: of ten draws in 1..10 all are different once in 2,756 times.
TEST(UniqueRandom, DrawsTheSameValueMoreThanOnce) {
  CUniqueRandom random;
  random.Seed(10);
  int nRoundsWithARepetition = 0;
  for (int nRound = 0; nRound < 100; ++nRound) {
    std::set<unsigned int> values;
    for (int i = 0; i < 10; ++i) values.insert(random.GetRandom(10));
    nRoundsWithARepetition += values.size() < 10 ? 1 : 0;
  }
  EXPECT_GT(nRoundsWithARepetition, 90);
}

TEST(UniqueRandom, RepeatsForASeed) {
  CUniqueRandom first;
  CUniqueRandom second;
  first.Seed(9);
  second.Seed(9);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(first.GetRandom(1000), second.GetRandom(1000));
}

// SPDX-License-Identifier: Apache-2.0
// Bounded draws at the ends of their ranges, and very many draws without one that is out of bounds: a
// million of each kind, or LK_DRAWS.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Statistics.h"
#include "core/Random.h"

namespace {

using statistics::BoundedDraws;

// Draws from the ranges in turn; the number of values that are out of their range, and the first of them.
template <class Value, class Draw>
void ExpectInside(const std::vector<std::pair<Value, Value>>& ranges, Draw draw) {
  const long nRounds = BoundedDraws() / static_cast<long>(ranges.size()) + 1;
  for (const auto& [low, high] : ranges) {
    long nOutside = 0;
    Value first{};
    for (long i = 0; i < nRounds; ++i) {
      const Value value = draw(low, high);
      if (value >= low && value <= high) continue;
      if (nOutside++ == 0) first = value;
    }
    EXPECT_EQ(nOutside, 0) << first << " is not in " << low << ".." << high;
  }
}

const std::vector<std::pair<int, int>> kIntRanges = {{1, 1},
                                                     {1, 2},
                                                     {1, 100},
                                                     {-1, 1},
                                                     {INT_MAX, INT_MAX},
                                                     {INT_MIN, 0},
                                                     {INT_MIN, INT_MIN + 1},
                                                     {INT_MAX - 1, INT_MAX},
                                                     {INT_MIN, INT_MAX},
                                                     {1, INT_MAX}};

const std::vector<std::pair<long, long>> kLongRanges = {{1, 1},
                                                        {1, 2},
                                                        {1, 100},
                                                        {-1, 1},
                                                        {0, UINT_MAX},
                                                        {LONG_MIN, 0},
                                                        {LONG_MIN, LONG_MIN + 1},
                                                        {LONG_MAX - 1, LONG_MAX},
                                                        {-1, LONG_MAX},
                                                        {LONG_MIN, LONG_MAX}};

// Every value of a short range at either end of the type comes, also with the bounds reversed.
template <class Value, class Draw>
void ExpectBothEnds(Value smallest, Value largest, Draw draw) {
  for (const auto& [low, high] : {std::pair{smallest, smallest + 2}, {largest - 2, largest}}) {
    std::set<Value> seen;
    std::set<Value> seenReversed;
    for (int i = 0; i < 200; ++i) {
      seen.insert(draw(low, high));
      seenReversed.insert(draw(high, low));
    }
    EXPECT_EQ(seen, (std::set<Value>{low, low + 1, high}));
    EXPECT_EQ(seenReversed, seen);
    EXPECT_EQ(draw(low, low), low);
    EXPECT_EQ(draw(high, high), high);
  }
}

}  // namespace

TEST(BoundsOfDraws, ReachBothEndsOfTheirType) {
  CRandom random;
  CRandGen generator;
  ExpectBothEnds<int>(INT_MIN, INT_MAX,
                      [&](int nLow, int nHigh) { return random.GetRandomInt(nLow, nHigh); });
  ExpectBothEnds<long>(LONG_MIN, LONG_MAX,
                       [&](long nLow, long nHigh) { return random.GetRandom(nLow, nHigh); });
  ExpectBothEnds<long>(LONG_MIN, LONG_MAX,
                       [&](long nLow, long nHigh) { return generator.UnifInt(nLow, nHigh); });
}

TEST(BoundsOfDraws, ReversedWholeRangesAreTheWholeRange) {
  CRandom random;
  CRandom same;
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(random.GetRandom(LONG_MAX, LONG_MIN), same.GetRandom(LONG_MIN, LONG_MAX));
    ASSERT_EQ(random.GetRandomInt(INT_MAX, INT_MIN), same.GetRandomInt(INT_MIN, INT_MAX));
  }
}

TEST(BoundsOfDraws, OfReversedRealsAreExchanged) {
  CRandGen generator;
  CRandGen same;
  for (int i = 0; i < 100; ++i) ASSERT_EQ(generator.UnifReal(3.0, -1.0), same.UnifReal(-1.0, 3.0));
}

TEST(BoundsOfDraws, OfRealsMaySpanEveryReal) {
  CRandGen generator;
  int nNegative = 0;
  for (int i = 0; i < 100; ++i) {
    const double fDraw = generator.UnifReal(-DBL_MAX, DBL_MAX);
    ASSERT_TRUE(std::isfinite(fDraw));
    nNegative += fDraw < 0 ? 1 : 0;
  }
  EXPECT_GT(nNegative, 20);
  EXPECT_LT(nNegative, 80);
}

TEST(ManyDraws, OfIntsAreInside) {
  CRandom random;
  random.Seed(301);
  ExpectInside<int>(kIntRanges, [&](int nLow, int nHigh) { return random.GetRandomInt(nLow, nHigh); });
}

TEST(ManyDraws, OfLongsAreInside) {
  CRandom random;
  random.Seed(302);
  ExpectInside<long>(kLongRanges, [&](long nLow, long nHigh) { return random.GetRandom(nLow, nHigh); });
}

TEST(ManyDraws, OfTheGeneratorsLongsAreInside) {
  CRandGen generator;
  generator.SetSeed(303);
  ExpectInside<long>(kLongRanges, [&](long nLow, long nHigh) { return generator.UnifInt(nLow, nHigh); });
}

TEST(ManyDraws, OfRealsAreInsideAndBelowTheUpperBound) {
  CRandGen generator;
  generator.SetSeed(304);
  const std::vector<std::pair<double, double>> ranges = {
      {0.0, 1.0},  {1.0, 9999.99},      {1.0, std::nextafter(1.0, 2.0)},
      {-1.0, 1.0}, {0.0, 2147483647.0}, {-1e-300, 1e-300}};
  ExpectInside<double>(ranges, [&](double fLow, double fHigh) {
    const double fDraw = generator.UnifReal(fLow, fHigh);
    return fDraw == fHigh ? HUGE_VAL : fDraw;
  });
}

TEST(ManyDraws, OfTextsHaveALengthInsideAndNothingButLetters) {
  CRandGen generator;
  generator.SetSeed(305);
  std::string text;
  ExpectInside<int>({{0, 1}, {1, 1}, {1, 4}, {9, 11}, {1, 30}}, [&](int nMin, int nMax) {
    const int nLength = generator.MakeAlphaString(nMin, nMax, text);
    const bool bLetters =
        text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") == std::string::npos;
    return bLetters && static_cast<size_t>(nLength) == text.size() ? nLength : INT_MAX;
  });
}

TEST(ManyDraws, OfDatesAreInsideToTheSecond) {
  CRandGen generator;
  generator.SetSeed(306);
  lkDateTime date;
  // Seconds since the day of the calendar that lkDateTime counts from.
  const long n1950 = 18264L * 86400;
  const long n2500 = 219511L * 86400 + 43932;
  ExpectInside<long>(
      {{n1950, n2500}, {n1950, n1950 + 1}, {n2500 - 1, n2500}, {-1, 1}}, [&](long nStart, long nEnd) {
        generator.GenerateDate(static_cast<double>(nStart) / 86400, static_cast<double>(nEnd) / 86400, date);
        return std::lround(date * 86400);
      });
}

TEST(ManyDraws, OfTheUniqueSourceAreInside) {
  CUniqueRandom random;
  random.Seed(307);
  ExpectInside<unsigned int>({{1, 1}, {1, 2}, {1, 3}, {1, 100}, {1, UINT_MAX}},
                             [&](unsigned int, unsigned int nHigh) { return random.GetRandom(nHigh); });
}

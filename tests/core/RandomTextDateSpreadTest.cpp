// SPDX-License-Identifier: Apache-2.0
// How texts and dates spread: lengths, letters, and every part of a date.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Statistics.h"
#include "core/Random.h"

namespace {

using statistics::HasShares;
using statistics::IsUniform;
using statistics::Tally;

class TextSpread : public testing::Test {
 protected:
  TextSpread() { m_generator.SetSeed(201); }
  // 0 for A to 51 for z; -1 for anything else.
  static long Letter(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    return c >= 'a' && c <= 'z' ? c - 'a' + 26 : -1;
  }

  CRandGen m_generator;
  std::string m_text;
};

TEST_F(TextSpread, LengthsAreUniform) {
  for (const auto& [nMin, nMax] : {std::pair{1, 1000}, {1, 2}, {0, 9}, {7, 11}}) {
    Tally lengths(nMin, nMax);
    for (int i = 0; i < 50000; ++i) {
      m_generator.MakeAlphaString(nMin, nMax, m_text);
      lengths.Add(static_cast<long>(m_text.size()));
    }
    EXPECT_TRUE(IsUniform(lengths)) << nMin << ".." << nMax;
  }
}

TEST_F(TextSpread, EveryPlaceHasEveryLetterEquallyOften) {
  constexpr size_t kPlaces = 25;
  std::vector<Tally> places(kPlaces, Tally(0, 51));
  for (int i = 0; i < 50000; ++i) {
    m_generator.MakeAlphaString(kPlaces, kPlaces, m_text);
    for (size_t nPlace = 0; nPlace < kPlaces; ++nPlace) places[nPlace].Add(Letter(m_text[nPlace]));
  }
  for (size_t nPlace = 0; nPlace < kPlaces; ++nPlace) EXPECT_TRUE(IsUniform(places[nPlace])) << nPlace;
}

TEST_F(TextSpread, TheLettersOfAShortTextDoNotDependOnItsLength) {
  std::vector<Tally> lengths(6, Tally(0, 51));
  for (int i = 0; i < 100000; ++i) {
    m_generator.MakeAlphaString(1, 6, m_text);
    lengths[m_text.size() - 1].Add(Letter(m_text.back()));
  }
  for (size_t nLength = 0; nLength < lengths.size(); ++nLength) EXPECT_TRUE(IsUniform(lengths[nLength]));
}

TEST_F(TextSpread, LettersSideBySideAreIndependent) {
  for (const size_t nPlace : {0U, 8U, 9U, 19U}) {
    Tally pairs(0, 52 * 52 - 1);
    for (int i = 0; i < 50000; ++i) {
      m_generator.MakeAlphaString(21, 21, m_text);
      pairs.Add(52 * Letter(m_text[nPlace]) + Letter(m_text[nPlace + 1]));
    }
    EXPECT_TRUE(IsUniform(pairs)) << nPlace;
  }
}

// The parts of dates drawn between two instants.
class DateSpread : public testing::Test {
 protected:
  DateSpread() { m_generator.SetSeed(202); }

  Tally Draw(const lkDateTime& start, const lkDateTime& end, const char* format, long nLow, long nHigh) {
    Tally tally(nLow, nHigh);
    lkDateTime date;
    for (int i = 0; i < 100000; ++i) {
      m_generator.GenerateDate(start, end, date);
      tally.Add(std::stol(date.Format(format)));
    }
    return tally;
  }

  CRandGen m_generator;
};

// Four whole years, one of them a leap year: 366 + 3 * 365 = 1461 days.
TEST_F(DateSpread, YearsAndMonthsHaveTheSharesOfTheirDays) {
  const lkDateTime start(2000, 1, 1, 0, 0, 0);
  const lkDateTime end(2003, 12, 31, 23, 59, 59);
  EXPECT_TRUE(HasShares(Draw(start, end, "%Y", 2000, 2003), {366, 365, 365, 365}));
  EXPECT_TRUE(
      HasShares(Draw(start, end, "%m", 1, 12), {124, 113, 124, 120, 124, 120, 124, 124, 120, 124, 120, 124}));
  EXPECT_TRUE(HasShares(Draw(start, end, "%d", 1, 31),
                        {48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48,
                         48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 48, 45, 44, 28}));
}

TEST_F(DateSpread, HoursMinutesAndSecondsAreUniform) {
  const lkDateTime start(1950, 1, 1, 0, 0, 0);
  const lkDateTime end(2499, 12, 31, 23, 59, 59);
  EXPECT_TRUE(IsUniform(Draw(start, end, "%H", 0, 23)));
  EXPECT_TRUE(IsUniform(Draw(start, end, "%M", 0, 59)));
  EXPECT_TRUE(IsUniform(Draw(start, end, "%S", 0, 59)));
}

TEST_F(DateSpread, TheFirstAndTheLastSecondAreAsFrequentAsAnyOther) {
  EXPECT_TRUE(
      IsUniform(Draw(lkDateTime(2100, 2, 28, 10, 0, 10), lkDateTime(2100, 2, 28, 10, 0, 39), "%S", 10, 39)));
}

TEST_F(DateSpread, ReversedInstantsAreExchangedAndEqualOnesAreTheDate) {
  EXPECT_TRUE(
      IsUniform(Draw(lkDateTime(2100, 2, 28, 10, 0, 19), lkDateTime(2100, 2, 28, 10, 0, 10), "%S", 10, 19)));
  const lkDateTime only(2500, 12, 30, 12, 12, 12);
  lkDateTime date;
  m_generator.GenerateDate(only, only, date);
  EXPECT_EQ(date.Format("%Y-%m-%d %H:%M:%S"), "2500-12-30 12:12:12");
}

}  // namespace

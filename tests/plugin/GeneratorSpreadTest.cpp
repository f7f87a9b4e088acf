// SPDX-License-Identifier: Apache-2.0
// How the values of the generators spread over many rows: numbers by precision and scale, lengths and letters
// of texts, every part of dates, and NULLs.
#include <memory>
#include <vector>

#include "GeneratorFixture.h"
#include "Statistics.h"

namespace scripted {
namespace {

using statistics::HasShares;
using statistics::IsUniform;
using statistics::IsUniformBetween;
using statistics::Tally;

constexpr int kRows = 100000;

struct NumberRange {
  const char* szName;
  int nPrecision;
  int nScale;
  double fLow;
  double fHigh;
};

class NumberSpread : public Generator, public testing::WithParamInterface<NumberRange> {};

TEST_P(NumberSpread, IsUniformBetweenTheBoundsOfTheColumn) {
  CNumberGenerator generator(GetParam().nPrecision, GetParam().nScale);
  Attach(generator, false);
  std::vector<double> values(kRows);
  for (double& fValue : values) fValue = Number(generator);
  EXPECT_TRUE(IsUniformBetween(values, GetParam().fLow, GetParam().fHigh));
}

INSTANTIATE_TEST_SUITE_P(
    Columns, NumberSpread,
    testing::Values(NumberRange{"P10S2", 10, 2, 0.0, 99999999.0}, NumberRange{"P5S5", 5, 5, 0.0, 0.099999},
                    NumberRange{"P20S0", 20, 0, 0.0, 2147483647.0}, NumberRange{"P3S5", 3, 5, 0.0, 0.000999},
                    NumberRange{"P16S0", 16, 0, 0.0, 2147483647.0},
                    NumberRange{"P15S0", 15, 0, 0.0, 999999999999999.0}, NumberRange{"P1S0", 1, 0, 0.0, 9.0},
                    NumberRange{"P2S1", 2, 1, 0.0, 9.0}, NumberRange{"P5SMinus2", 5, -2, 0.0, 999999.0},
                    NumberRange{"P10S10", 10, 10, 0.0, 0.09999999999},
                    NumberRange{"P12S11", 12, 11, 0.0, 9.0}, NumberRange{"P38S0", 38, 0, 0.0, 2147483647.0},
                    NumberRange{"Real", 63, 129, 1.0, 9999.99},
                    NumberRange{"Float", 126, 129, 1.0, 999999.99},
                    NumberRange{"Int", 0, 129, 1.0, 2147483647.0}),
    [](const auto& range) { return std::string(range.param.szName); });

// The generator of every kind of column, with and without NULLs.
struct ColumnKind {
  const char* szName;
  std::unique_ptr<IDataGenerator> (*Make)();
};

template <class Kind, auto... arguments>
std::unique_ptr<IDataGenerator> Make() {
  return std::make_unique<Kind>(arguments...);
}

class NullSpread : public Generator, public testing::WithParamInterface<ColumnKind> {
 protected:
  bool IsNull() {
    int nLen = 0;
    m_pGenerator->GenerateData(&nLen);
    return nLen == -1;
  }

  std::unique_ptr<IDataGenerator> m_pGenerator = GetParam().Make();
};

TEST_P(NullSpread, FiveRowsOfAHundredAreNullInANullableColumn) {
  Attach(*m_pGenerator, true);
  std::vector<long> counts(2);
  for (int i = 0; i < kRows; ++i) ++counts[IsNull() ? 0 : 1];
  EXPECT_TRUE(HasShares(counts, {5, 95}));
}

TEST_P(NullSpread, ANullSaysNothingAboutTheRowAfterIt) {
  Attach(*m_pGenerator, true);
  std::vector<long> counts(4);
  bool bBefore = IsNull();
  for (int i = 0; i < kRows; ++i) {
    const bool bNow = IsNull();
    ++counts[(bBefore ? 2U : 0U) + (bNow ? 1U : 0U)];
    bBefore = bNow;
  }
  EXPECT_TRUE(HasShares(counts, {95 * 95, 95 * 5, 5 * 95, 5 * 5}));
}

TEST_P(NullSpread, NoRowIsNullInAColumnThatIsNotNullable) {
  Attach(*m_pGenerator, false);
  int nNulls = 0;
  for (int i = 0; i < kRows; ++i) nNulls += IsNull() ? 1 : 0;
  EXPECT_EQ(nNulls, 0);
}

INSTANTIATE_TEST_SUITE_P(Columns, NullSpread,
                         testing::Values(ColumnKind{"Sequence", Make<CSequenceGenerator>},
                                         ColumnKind{"Number", Make<CNumberGenerator, 10, 2>},
                                         ColumnKind{"NumberWithoutADraw", Make<CNumberGenerator, 12, 12>},
                                         ColumnKind{"Int", Make<CNumberGenerator, 0, 129>},
                                         ColumnKind{"Text", Make<CStrGenerator, 20>},
                                         ColumnKind{"Date", Make<CDateGenerator>}),
                         [](const auto& kind) { return std::string(kind.param.szName); });

using TextSpread = Generator;

TEST_F(TextSpread, LengthsAreUniformFromOneToTheColumnsSize) {
  for (const int nSize : {2, 20, 255}) {
    CStrGenerator generator(nSize);
    Attach(generator, false);
    Tally lengths(1, nSize);
    for (int i = 0; i < kRows; ++i) lengths.Add(static_cast<long>(Text(generator).size()));
    EXPECT_TRUE(IsUniform(lengths)) << nSize;
  }
}

TEST_F(TextSpread, EveryLetterIsEquallyFrequentInBothCases) {
  CStrGenerator generator(20);
  Attach(generator, false);
  Tally letters('A', 'z');
  std::vector<double> shares;
  for (char c = 'A'; c <= 'z'; ++c) shares.push_back(c <= 'Z' || c >= 'a' ? 1 : 0);
  for (int i = 0; i < kRows / 10; ++i)
    for (const char c : Text(generator)) letters.Add(c);
  EXPECT_TRUE(HasShares(letters, shares));
}

// Dates from 1950-01-01 00:00:00 to 2500-12-30 12:12:12: 551 years, the last one without its last day and a
// half.
class DateColumnSpread : public Generator {
 protected:
  DateColumnSpread() { Attach(m_generator, false); }

  Tally Draw(size_t nStart, size_t nLength, long nLow, long nHigh, int nRows = kRows) {
    Tally tally(nLow, nHigh);
    for (int i = 0; i < nRows; ++i) tally.Add(std::stol(Text(m_generator).substr(nStart, nLength)));
    return tally;
  }

  static bool IsLeapYear(int nYear) { return (nYear % 4 == 0 && nYear % 100 != 0) || nYear % 400 == 0; }
  static constexpr int kFirstYear = 1950;
  static constexpr int kLastYear = 2500;
  // 2500: 365 days less the 31st of December and the time after 12:12:12 of the 30th.
  static constexpr double kDaysOfLastYear = 363 + 43933.0 / 86400;

  CDateGenerator m_generator;
};

TEST_F(DateColumnSpread, YearsHaveTheSharesOfTheirDays) {
  std::vector<double> shares;
  for (int nYear = kFirstYear; nYear < kLastYear; ++nYear) shares.push_back(IsLeapYear(nYear) ? 366 : 365);
  shares.push_back(kDaysOfLastYear);
  constexpr int kRowsForASingleYear = 5 * kRows;  // enough that one missing year is seen
  EXPECT_TRUE(HasShares(Draw(0, 4, kFirstYear, kLastYear, kRowsForASingleYear), shares));
}

// 551 years with 134 leap years among them (138 multiples of 4 less 2100, 2200, 2300 and 2500).
TEST_F(DateColumnSpread, MonthsHaveTheSharesOfTheirDays) {
  constexpr double k31 = 551 * 31.0;
  constexpr double k30 = 551 * 30.0;
  constexpr double kFebruary = 551 * 28.0 + 134;
  constexpr double kDecember = k31 - 1 - (1 - 43933.0 / 86400);
  EXPECT_TRUE(
      HasShares(Draw(5, 2, 1, 12), {k31, kFebruary, k31, k30, k31, k30, k31, k31, k30, k31, k30, kDecember}));
}

TEST_F(DateColumnSpread, HoursMinutesAndSecondsAreUniform) {
  EXPECT_TRUE(IsUniform(Draw(11, 2, 0, 23)));
  EXPECT_TRUE(IsUniform(Draw(14, 2, 0, 59)));
  EXPECT_TRUE(IsUniform(Draw(17, 2, 0, 59)));
}

}  // namespace
}  // namespace scripted

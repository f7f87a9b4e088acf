// SPDX-License-Identifier: Apache-2.0
// The data generators, with fixed seeds. A "twin" is a second random source with the same seed: it makes the
// draws that the generator is to make, so values and the position of the stream can be compared exactly.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <set>
#include <string>

#include "Benchmarks/CREP_ORA8/DataGenerator.h"
#include "Recorders.h"
#include "core/LKDateTime.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kSeed = 20240229;
constexpr long kNextDrawMax = 1000000000;

class Generator : public testing::Test {
 protected:
  Generator() {
    m_rand.SetSeed(kSeed);
    m_twin.SetSeed(kSeed);
  }
  void Attach(IDataGenerator& generator, bool bAllowNull) {
    generator.SetAllowNull(bAllowNull);
    generator.SetRandGen(&m_rand);
  }
  bool StreamsAreAtTheSamePlace() {
    return m_rand.UnifInt(1, kNextDrawMax) == m_twin.UnifInt(1, kNextDrawMax);
  }

  scripted::AssertRecorder m_asserts;
  CRandGen m_rand;
  CRandGen m_twin;
};

double Number(IDataGenerator& generator) {
  int nLen = 0;
  const void* pValue = generator.GenerateData(&nLen);
  EXPECT_EQ(nLen, 8);
  return *static_cast<const double*>(pValue);
}

std::string Text(IDataGenerator& generator) {
  int nLen = 0;
  const auto* pValue = static_cast<const char*>(generator.GenerateData(&nLen));
  EXPECT_EQ(nLen, static_cast<int>(std::strlen(pValue)));
  return pValue;
}

double PercentOfNulls(IDataGenerator& generator) {
  constexpr int kRows = 20000;
  int nNulls = 0;
  for (int i = 0; i < kRows; ++i) {
    int nLen = 0;
    generator.GenerateData(&nLen);
    if (nLen == -1) ++nNulls;
  }
  return 100.0 * nNulls / kRows;
}

using SequenceGenerator = Generator;
using NumberGenerator = Generator;
using StrGenerator = Generator;
using DateGenerator = Generator;
using NullValues = Generator;

TEST_F(SequenceGenerator, CountsFromOne) {
  CSequenceGenerator generator;
  Attach(generator, false);
  EXPECT_EQ(Number(generator), 1.0);
  EXPECT_EQ(Number(generator), 2.0);
  EXPECT_EQ(Number(generator), 3.0);
}

TEST_F(SequenceGenerator, CountsFromTheStartingRow) {
  CSequenceGenerator generator;
  Attach(generator, false);
  generator.SetStartingRow(751);
  EXPECT_EQ(generator.m_nStartingRow, 751);
  EXPECT_EQ(Number(generator), 751.0);
  EXPECT_EQ(Number(generator), 752.0);
}

TEST_F(SequenceGenerator, AddsItsStep) {
  CSequenceGenerator generator;
  Attach(generator, false);
  generator.SetStep(10);
  EXPECT_EQ(generator.GetStep(), 10);
  EXPECT_EQ(Number(generator), 1.0);
  EXPECT_EQ(Number(generator), 11.0);
}

TEST_F(SequenceGenerator, ANullLeavesTheValueAndThePositionAsTheyAre) {
  CSequenceGenerator generator;
  Attach(generator, true);
  int nLen = 0;
  double fLast = 0;
  for (int i = 0; i < 1000; ++i) {
    const auto* pValue = static_cast<const double*>(generator.GenerateData(&nLen));
    ASSERT_EQ(*pValue, nLen == -1 ? fLast : fLast + 1);
    fLast = *pValue;
  }
  EXPECT_LT(fLast, 1000);
}

TEST_F(SequenceGenerator, GetValueIsTheStorageOfTheLastValue) {
  CSequenceGenerator generator;
  Attach(generator, false);
  EXPECT_EQ(generator.GenerateData(nullptr), generator.GetValue());
  EXPECT_EQ(*static_cast<double*>(generator.GetValue()), 1.0);
}

TEST_F(NumberGenerator, TheTypeFollowsPrecisionAndTheScaleByte) {
  EXPECT_EQ(CNumberGenerator(10, 2).GetTypeCode(), CNumberGenerator::eDecmial);
  EXPECT_EQ(CNumberGenerator(0, 0).GetTypeCode(), CNumberGenerator::eDecmial);
  EXPECT_EQ(CNumberGenerator(5, -2).GetTypeCode(), CNumberGenerator::eDecmial);
  EXPECT_EQ(CNumberGenerator(0, 129).GetTypeCode(), CNumberGenerator::eInt);
  EXPECT_EQ(CNumberGenerator(63, 129).GetTypeCode(), CNumberGenerator::eReal);
  EXPECT_EQ(CNumberGenerator(126, 129).GetTypeCode(), CNumberGenerator::eFloat);
  EXPECT_EQ(CNumberGenerator(1, 129).GetTypeCode(), CNumberGenerator::eFloat);
}

TEST_F(NumberGenerator, TheTypeCodesAreNumberedFromZero) {
  EXPECT_EQ(CNumberGenerator::eDecmial, 0);
  EXPECT_EQ(CNumberGenerator::eFloat, 1);
  EXPECT_EQ(CNumberGenerator::eReal, 2);
  EXPECT_EQ(CNumberGenerator::eInt, 3);
}

struct RealBounds {
  const char* szName;
  int nPrecision;
  int nScale;
  double fLow;
  double fHigh;
};

class BoundsOfNumbers : public Generator, public testing::WithParamInterface<RealBounds> {};

TEST_P(BoundsOfNumbers, OneUniformDrawBetweenThem) {
  const RealBounds& bounds = GetParam();
  CNumberGenerator generator(bounds.nPrecision, bounds.nScale);
  Attach(generator, false);
  double fSmallest = bounds.fHigh;
  double fLargest = bounds.fLow;
  for (int i = 0; i < 2000; ++i) {
    const double fValue = Number(generator);
    ASSERT_EQ(fValue, m_twin.UnifReal(bounds.fLow, bounds.fHigh));
    fSmallest = std::min(fSmallest, fValue);
    fLargest = std::max(fLargest, fValue);
  }
  const double fWidth = bounds.fHigh - bounds.fLow;
  EXPECT_GE(fSmallest, bounds.fLow);
  EXPECT_LE(fLargest, bounds.fHigh);
  EXPECT_LT(fSmallest, bounds.fLow + 0.01 * fWidth);
  EXPECT_GT(fLargest, bounds.fHigh - 0.01 * fWidth);
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

INSTANTIATE_TEST_SUITE_P(
    Number, BoundsOfNumbers,
    testing::Values(RealBounds{"P10S2", 10, 2, 0.0, 99999999.0}, RealBounds{"P5S5", 5, 5, 0.0, 0.099999},
                    RealBounds{"P20S0", 20, 0, 0.0, 2147483647.0}, RealBounds{"P3S5", 3, 5, 0.0, 999 / 1e6},
                    RealBounds{"P16S0", 16, 0, 0.0, 2147483647.0},
                    RealBounds{"P15S0", 15, 0, 0.0, 999999999999999.0}, RealBounds{"P1S0", 1, 0, 0.0, 9.0},
                    RealBounds{"P5SMinus2", 5, -2, 0.0, 999999.0},
                    RealBounds{"P10S10", 10, 10, 0.0, (1e10 - 1) / 1e11},
                    RealBounds{"P12S11", 12, 11, 0.0, 9.0}, RealBounds{"P0SMinus1", 0, -1, 0.0, 2147483647.0},
                    RealBounds{"Real", 63, 129, 1.0, 9999.99}, RealBounds{"Float", 126, 129, 1.0, 999999.99}),
    [](const auto& number) { return std::string(number.param.szName); });

TEST_F(NumberGenerator, AnUnconstrainedNumberIsAnIntegerFromOneToTheLargestInt) {
  CNumberGenerator generator(0, 129);
  Attach(generator, false);
  double fSmallest = 2147483648.0;
  double fLargest = 0;
  for (int i = 0; i < 2000; ++i) {
    const double fValue = Number(generator);
    ASSERT_EQ(fValue, static_cast<double>(m_twin.UnifInt(1, 2147483647)));
    fSmallest = std::min(fSmallest, fValue);
    fLargest = std::max(fLargest, fValue);
  }
  EXPECT_GE(fSmallest, 1.0);
  EXPECT_LT(fSmallest, 2.2e7);
  EXPECT_GT(fLargest, 2.12e9);
  EXPECT_LE(fLargest, 2147483647.0);
}

TEST_F(NumberGenerator, IsZeroWithoutADrawWhenTheScaleIsNotBelowThePrecisionAndOneOfThemIsAboveTen) {
  for (const auto& [nPrecision, nScale] : {std::pair{12, 12}, {11, 11}, {5, 11}, {5, 254}}) {
    CNumberGenerator generator(nPrecision, nScale);
    Attach(generator, false);
    EXPECT_EQ(Number(generator), 0.0) << nPrecision << "," << nScale;
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(NumberGenerator, ValuesAreNotRoundedToTheScale) {
  CNumberGenerator generator(5, 0);
  Attach(generator, false);
  int nFractions = 0;
  for (int i = 0; i < 100; ++i) {
    const double fValue = Number(generator);
    if (fValue != std::floor(fValue)) ++nFractions;
  }
  EXPECT_GT(nFractions, 90);
}

TEST_F(NumberGenerator, ANullLeavesTheValueAsItIs) {
  CNumberGenerator generator(10, 2);
  Attach(generator, true);
  double fLast = 0;
  int nNulls = 0;
  for (int i = 0; i < 1000; ++i) {
    int nLen = 0;
    const auto* pValue = static_cast<const double*>(generator.GenerateData(&nLen));
    if (nLen == -1) {
      ++nNulls;
      ASSERT_EQ(*pValue, fLast);
    }
    fLast = *pValue;
  }
  EXPECT_GT(nNulls, 0);
}

TEST_F(NumberGenerator, AMissingLengthAndAMissingSourceAreReportedAndTheValueIsMade) {
  CNumberGenerator generator(12, 12);  // makes its 0.0 without a draw
  generator.SetAllowNull(false);
  EXPECT_EQ(*static_cast<double*>(generator.GenerateData(nullptr)), 0.0);
  EXPECT_THAT(m_asserts.Texts(),
              ElementsAre("Benchmarks/CREP_ORA8/DataGenerator.cpp:75 GenerateData: poutLen != __null",
                          "Benchmarks/CREP_ORA8/DataGenerator.cpp:76 GenerateData: m_pRandGen != __null"));
}

TEST_F(StrGenerator, MakesOneToSizeLetters) {
  CStrGenerator generator(6);
  Attach(generator, false);
  std::set<size_t> lengths;
  for (int i = 0; i < 2000; ++i) {
    const std::string text = Text(generator);
    lengths.insert(text.size());
    ASSERT_TRUE(std::ranges::all_of(text, [](unsigned char c) { return std::isalpha(c); })) << text;
  }
  EXPECT_THAT(lengths, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(StrGenerator, DrawsTheTextOnly) {
  CStrGenerator generator(40);
  Attach(generator, false);
  for (int i = 0; i < 100; ++i) {
    std::string expected;
    m_twin.MakeAlphaString(1, 40, expected);
    ASSERT_EQ(Text(generator), expected);
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(StrGenerator, OfSizeOneMakesSingleLetters) {
  CStrGenerator generator(1);
  Attach(generator, false);
  for (int i = 0; i < 200; ++i) ASSERT_EQ(Text(generator).size(), 1U);
  EXPECT_THAT(m_asserts.Texts(), IsEmpty());
}

TEST_F(StrGenerator, OfSizeZeroPassesItsAssertionAndAsksForOneToZeroLetters) {
  CStrGenerator generator(0);
  EXPECT_EQ(generator.m_nMaxLength, 1);
  EXPECT_THAT(m_asserts.Texts(), IsEmpty());
  Attach(generator, false);
  int nLongest = 0;
  for (int i = 0; i < 100; ++i) {
    std::string expected;
    nLongest = std::max(nLongest, m_twin.MakeAlphaString(1, 0, expected));
    int nLen = -2;
    generator.GenerateData(&nLen);
    ASSERT_EQ(nLen, 0);  // a letter too many is reported as none
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
  EXPECT_EQ(nLongest, 1);
  EXPECT_EQ(m_asserts.Texts().front(),
            "Benchmarks/CREP_ORA8/DataGenerator.cpp:179 GenerateData: nLen < m_nMaxLength");
}

TEST_F(StrGenerator, OfNegativeSizeIsReportedAndMakesNulls) {
  CStrGenerator generator(-1);
  Attach(generator, false);
  int nLen = 0;
  EXPECT_EQ(generator.GenerateData(&nLen), nullptr);
  EXPECT_EQ(nLen, -1);
  EXPECT_THAT(m_asserts.Texts(),
              ElementsAre("Benchmarks/CREP_ORA8/DataGenerator.cpp:141 CStrGenerator: m_nMaxLength > 0",
                          "Benchmarks/CREP_ORA8/DataGenerator.cpp:168 GenerateData: m_lpValue != __null"));
}

TEST_F(StrGenerator, DecidesOnNullBeforeItLooksForItsBuffer) {
  CStrGenerator generator(-1);
  Attach(generator, true);
  generator.GenerateData(nullptr);
  m_twin.UnifInt(1, 100);
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(StrGenerator, AShorterTextLeavesNothingOfTheOneBeforeIt) {
  CStrGenerator generator(12);
  Attach(generator, false);
  for (int i = 0; i < 200; ++i) {
    const std::string text = Text(generator);
    EXPECT_TRUE(std::all_of(generator.m_lpValue + text.size(), generator.m_lpValue + generator.m_nMaxLength,
                            [](char c) { return c == '\0'; }));
  }
}

TEST_F(StrGenerator, ANullLeavesAnEmptyBuffer) {
  CStrGenerator generator(12);
  Attach(generator, true);
  int nNulls = 0;
  for (int i = 0; i < 1000; ++i) {
    int nLen = 0;
    const void* pValue = generator.GenerateData(&nLen);
    ASSERT_EQ(pValue, generator.GetValue());
    if (nLen != -1) continue;
    ++nNulls;
    ASSERT_STREQ(generator.m_lpValue, "");
  }
  EXPECT_GT(nNulls, 0);
}

TEST_F(StrGenerator, AllocStrReplacesTheBufferByAZeroedOne) {
  CStrGenerator generator(3);
  std::memcpy(generator.m_lpValue, "abc", 4);
  EXPECT_EQ(generator.AllocStr(), 1);
  EXPECT_EQ(std::memcmp(generator.m_lpValue, "\0\0\0\0", 4), 0);
}

TEST_F(DateGenerator, MakesNineteenCharactersFromThe1950sToThe2500s) {
  CDateGenerator generator;
  Attach(generator, false);
  std::string smallest = "9999";
  std::string largest;
  for (int i = 0; i < 5000; ++i) {
    const std::string text = Text(generator);
    ASSERT_EQ(text.size(), 19U);
    smallest = std::min(smallest, text);
    largest = std::max(largest, text);
  }
  EXPECT_GE(smallest, "1950/01/01 00:00:00");
  EXPECT_LT(smallest, "1956");
  EXPECT_GT(largest, "2495");
  EXPECT_LE(largest, "2500/12/30 12:12:12");
}

TEST_F(DateGenerator, DrawsOnlyTheDateWhenNullIsNotAllowed) {
  CDateGenerator generator;
  Attach(generator, false);
  const lkDateTime start(1950, 1, 1, 0, 0, 0);
  const lkDateTime end(2500, 12, 30, 12, 12, 12);
  for (int i = 0; i < 100; ++i) {
    lkDateTime expected;
    m_twin.GenerateDate(start, end, expected);
    ASSERT_EQ(Text(generator), expected.Format("%Y/%m/%d %H:%M:%S"));
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(DateGenerator, DrawsTwiceForNullWhenItIsAllowedAndTheSecondCounts) {
  CDateGenerator generator;
  Attach(generator, true);
  const lkDateTime start(1950, 1, 1, 0, 0, 0);
  const lkDateTime end(2500, 12, 30, 12, 12, 12);
  for (int i = 0; i < 1000; ++i) {
    int nLen = 0;
    const auto* szDate = static_cast<const char*>(generator.GenerateData(&nLen));
    m_twin.UnifInt(1, 100);
    if (m_twin.UnifInt(1, 100) < 6) {
      ASSERT_EQ(nLen, -1);
      ASSERT_STREQ(szDate, "");
    } else {
      lkDateTime expected;
      m_twin.GenerateDate(start, end, expected);
      ASSERT_EQ(nLen, 19);
      ASSERT_STREQ(szDate, expected.Format("%Y/%m/%d %H:%M:%S").c_str());
    }
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(DateGenerator, GetValueIsTheLastText) {
  CDateGenerator generator;
  Attach(generator, false);
  const std::string text = Text(generator);
  EXPECT_STREQ(static_cast<const char*>(generator.GetValue()), text.c_str());
}

TEST_F(NullValues, AreAboutFivePercentOfEveryKindOfNullableColumn) {
  CSequenceGenerator sequence;
  CNumberGenerator number(10, 2);
  CStrGenerator text(20);
  CDateGenerator date;
  for (IDataGenerator* pGenerator :
       std::initializer_list<IDataGenerator*>{&sequence, &number, &text, &date}) {
    Attach(*pGenerator, true);
    EXPECT_NEAR(PercentOfNulls(*pGenerator), 5.0, 0.5);  // three standard deviations of 20,000 draws
  }
}

TEST_F(NullValues, NeverComeFromAColumnThatIsNotNullable) {
  CSequenceGenerator sequence;
  CNumberGenerator number(10, 2);
  CStrGenerator text(20);
  CDateGenerator date;
  for (IDataGenerator* pGenerator :
       std::initializer_list<IDataGenerator*>{&sequence, &number, &text, &date}) {
    Attach(*pGenerator, false);
    EXPECT_EQ(PercentOfNulls(*pGenerator), 0.0);
  }
}

TEST_F(NullValues, OneDrawDecidesAndOnlyOneToFiveOfAHundredAreNull) {
  CNumberGenerator generator(12, 12);  // draws for nothing but NULL
  Attach(generator, true);
  for (int i = 0; i < 2000; ++i) {
    int nLen = 0;
    generator.GenerateData(&nLen);
    ASSERT_EQ(nLen == -1, m_twin.UnifInt(1, 100) <= 5);
  }
}

TEST_F(NullValues, TheBaseHandsOutNoValue) {
  class Plain : public IDataGenerator {
    void* GenerateData(int*) override { return nullptr; }
  } generator;
  EXPECT_EQ(generator.GetValue(), nullptr);
  EXPECT_EQ(generator.m_pRandGen, nullptr);
  EXPECT_EQ(generator.m_nStartingRow, 0);
  generator.SetStartingRow(5);
  EXPECT_EQ(generator.m_nStartingRow, 5);
}

}  // namespace

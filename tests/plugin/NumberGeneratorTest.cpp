// SPDX-License-Identifier: Apache-2.0
// The generator of numbers: its types, bounds and draws.
#include <algorithm>
#include <cmath>
#include <utility>

#include "GeneratorFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;

using NumberGenerator = Generator;

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
    testing::Values(
        RealBounds{"P10S2", 10, 2, 0.0, 99999999.0}, RealBounds{"P5S5", 5, 5, 0.0, 0.099999},
        RealBounds{"P20S0", 20, 0, 0.0, 2147483647.0}, RealBounds{"P3S5", 3, 5, 0.0, 999 / 1e6},
        RealBounds{"P16S0", 16, 0, 0.0, 2147483647.0}, RealBounds{"P15S0", 15, 0, 0.0, 999999999999999.0},
        RealBounds{"P1S0", 1, 0, 0.0, 9.0}, RealBounds{"P2S0", 2, 0, 0.0, 99.0},
        RealBounds{"P4S0", 4, 0, 0.0, 9999.0}, RealBounds{"P7S0", 7, 0, 0.0, 9999999.0},
        RealBounds{"P9S0", 9, 0, 0.0, 999999999.0}, RealBounds{"P12S0", 12, 0, 0.0, 999999999999.0},
        RealBounds{"P13S0", 13, 0, 0.0, 9999999999999.0}, RealBounds{"P14S0", 14, 0, 0.0, 99999999999999.0},
        RealBounds{"PMinus2SMinus2", -2, -2, (1e-2 - 1) / 1e-1, 0.0},
        RealBounds{"P5SMinus2", 5, -2, 0.0, 999999.0}, RealBounds{"P10S10", 10, 10, 0.0, (1e10 - 1) / 1e11},
        RealBounds{"P12S11", 12, 11, 0.0, 9.0}, RealBounds{"P0SMinus1", 0, -1, 0.0, 2147483647.0},
        RealBounds{"Real", 63, 129, 1.0, 9999.99}, RealBounds{"Float", 126, 129, 1.0, 999999.99}),
    [](const auto& number) { return std::string(number.param.szName); });

TEST_F(NumberGenerator, ANumberOfNoDigitsIsZero) {
  CNumberGenerator generator(0, 0);
  Attach(generator, false);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Number(generator), 0.0);
}

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

TEST_F(NumberGenerator, DrawsForNullFirstAndThenTheNumberOfARowThatIsNotNull) {
  CNumberGenerator decimal(10, 2);
  CNumberGenerator integer(0, 129);
  Attach(decimal, true);
  Attach(integer, true);
  double fDecimal = 0;
  double fInteger = 0;
  for (int i = 0; i < 1000; ++i) {
    int nLen = 0;
    const void* pDecimal = decimal.GenerateData(&nLen);
    const bool bNoDecimal = m_twin.UnifInt(1, 100) < 6;
    if (!bNoDecimal) fDecimal = m_twin.UnifReal(0.0, 99999999.0);
    ASSERT_EQ(nLen, bNoDecimal ? -1 : 8);
    ASSERT_EQ(*static_cast<const double*>(pDecimal), fDecimal);

    const void* pInteger = integer.GenerateData(&nLen);
    const bool bNoInteger = m_twin.UnifInt(1, 100) < 6;
    if (!bNoInteger) fInteger = static_cast<double>(m_twin.UnifInt(1, 2147483647));
    ASSERT_EQ(nLen, bNoInteger ? -1 : 8);
    ASSERT_EQ(*static_cast<const double*>(pInteger), fInteger);
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
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

}  // namespace
}  // namespace scripted

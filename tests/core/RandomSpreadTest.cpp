// SPDX-License-Identifier: Apache-2.0
// How the draws of the random sources spread: whole numbers and reals. The seeds are fixed, so a result is
// the same in every run.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "Statistics.h"
#include "core/Random.h"

namespace {

using statistics::HasShares;
using statistics::IsUniform;
using statistics::IsUniformBetween;
using statistics::Tally;

// One way to draw a whole number between two bounds.
struct Kind {
  const char* szName;
  std::function<long(long, long)> draw;
};

void PrintTo(const Kind& kind, std::ostream* pOut) { *pOut << kind.szName; }

template <class Source>
Source Seeded(int nSeed) {
  Source source;
  source.Seed(nSeed);
  return source;
}

Kind RandomIntKind() {
  return {"GetRandomInt", [r = Seeded<CRandom>(101)](long nLow, long nHigh) mutable -> long {
            return r.GetRandomInt(static_cast<int>(nLow), static_cast<int>(nHigh));
          }};
}

Kind RandomLongKind() {
  return {"GetRandom",
          [r = Seeded<CRandom>(102)](long nLow, long nHigh) mutable { return r.GetRandom(nLow, nHigh); }};
}

Kind UnifIntKind() {
  CRandGen generator;
  generator.SetSeed(103);
  return {"UnifInt", [generator](long nLow, long nHigh) mutable { return generator.UnifInt(nLow, nHigh); }};
}

Kind UniqueKind() {
  return {"UniqueRandom", [r = Seeded<CUniqueRandom>(104)](long nLow, long nHigh) mutable {
            return nLow - 1 + static_cast<long>(r.GetRandom(static_cast<unsigned int>(nHigh - nLow + 1)));
          }};
}

class WholeDraws : public testing::TestWithParam<Kind> {};

TEST_P(WholeDraws, AreUniformOverTheirRange) {
  auto draw = GetParam().draw;
  for (const auto& [nLow, nHigh] :
       {std::pair{1L, 2L}, {1L, 3L}, {1L, 7L}, {-3L, 3L}, {1L, 100L}, {0L, 255L}, {1L, 1000L}}) {
    Tally tally(nLow, nHigh);
    for (int i = 0; i < 200000; ++i) tally.Add(draw(nLow, nHigh));
    EXPECT_TRUE(IsUniform(tally)) << nLow << ".." << nHigh;
  }
}

// A remainder of 32 random bits would give the lowest quarter of 2^32 twice the share of the others, a
// product without its rejected part every fourth value.
TEST_P(WholeDraws, HaveNoBiasWhereTheRangeIsThreeQuartersOf32Bits) {
  auto draw = GetParam().draw;
  constexpr long kThird = 1L << 30;
  constexpr long kLow = INT_MIN;
  Tally thirds(0, 2);
  Tally remainders(0, 2);
  for (int i = 0; i < 100000; ++i) {
    const long nDistance = draw(kLow, kLow + 3 * kThird - 1) - kLow;
    thirds.Add(nDistance / kThird);
    remainders.Add(nDistance % 3);
  }
  EXPECT_TRUE(IsUniform(thirds));
  EXPECT_TRUE(IsUniform(remainders));
}

TEST_P(WholeDraws, OneAfterTheOtherAreIndependent) {
  auto draw = GetParam().draw;
  Tally pairs(0, 99);
  long nBefore = draw(0, 9);
  for (int i = 0; i < 200000; ++i) {
    const long nNow = draw(0, 9);
    pairs.Add(10 * nBefore + nNow);
    nBefore = nNow;
  }
  EXPECT_TRUE(IsUniform(pairs));
}

TEST_P(WholeDraws, ChooseAPercentageAsOftenAsItSays) {
  auto draw = GetParam().draw;
  for (const long nPercent : {1L, 5L, 50L, 95L}) {
    std::vector<long> counts(2);
    for (int i = 0; i < 200000; ++i) ++counts[draw(1, 100) <= nPercent ? 0 : 1];
    const auto fPercent = static_cast<double>(nPercent);
    EXPECT_TRUE(HasShares(counts, {fPercent, 100 - fPercent})) << nPercent;
  }
}

INSTANTIATE_TEST_SUITE_P(Random, WholeDraws,
                         testing::Values(RandomIntKind(), RandomLongKind(), UnifIntKind(), UniqueKind()),
                         [](const auto& kind) { return std::string(kind.param.szName); });

// Three quarters of 2^64, for the draws that are that wide.
TEST(WideDraws, HaveNoBiasWhereTheRangeIsThreeQuartersOf64Bits) {
  constexpr auto kThird = static_cast<unsigned long>(1) << 62;
  constexpr long kHigh = (1L << 62) - 1;
  for (const Kind& kind : {RandomLongKind(), UnifIntKind()}) {
    auto draw = kind.draw;
    Tally thirds(0, 2);
    Tally remainders(0, 2);
    for (int i = 0; i < 100000; ++i) {
      const unsigned long nDistance =
          static_cast<unsigned long>(draw(LONG_MIN, kHigh)) - static_cast<unsigned long>(LONG_MIN);
      thirds.Add(static_cast<long>(nDistance / kThird));
      remainders.Add(static_cast<long>(nDistance % 3));
    }
    EXPECT_TRUE(IsUniform(thirds)) << kind.szName;
    EXPECT_TRUE(IsUniform(remainders)) << kind.szName;
  }
}

// Virtual users and tables are seeded with neighbouring numbers: their streams must have nothing in common.
template <class FirstDraw>
void ExpectNeighbouringSeedsIndependent(FirstDraw first) {
  Tally draws(0, 9);
  Tally pairs(0, 99);
  for (int nSeed = 1; nSeed <= 100000; ++nSeed) {
    draws.Add(first(nSeed));
    pairs.Add(10 * first(nSeed) + first(nSeed + 1));
  }
  EXPECT_TRUE(IsUniform(draws));
  EXPECT_TRUE(IsUniform(pairs));
}

TEST(NeighbouringSeeds, GiveIndependentStreams) {
  ExpectNeighbouringSeedsIndependent([](int nSeed) { return Seeded<CRandom>(nSeed).GetRandomInt(0, 9); });
  ExpectNeighbouringSeedsIndependent(
      [](int nSeed) { return static_cast<int>(Seeded<CUniqueRandom>(nSeed).GetRandom(10)) - 1; });
  ExpectNeighbouringSeedsIndependent([](int nSeed) {
    CRandGen generator;
    generator.SetSeed(nSeed);
    return static_cast<int>(generator.UnifInt(0, 9));
  });
}

TEST(RealDraws, AreUniformBetweenTheirBounds) {
  CRandGen generator;
  generator.SetSeed(105);
  for (const auto& [fLow, fHigh] : {std::pair{0.0, 1.0}, {1.0, 9999.99}, {-5.0, 5.0}, {0.0, 2147483647.0}}) {
    std::vector<double> values(100000);
    for (double& fValue : values) fValue = generator.UnifReal(fLow, fHigh);
    EXPECT_TRUE(IsUniformBetween(values, fLow, fHigh)) << fLow << ".." << fHigh;
  }
}

TEST(RealDraws, AreUniformInTheirLowerBitsToo) {
  CRandGen generator;
  generator.SetSeed(106);
  std::vector<double> values(100000);
  for (double& fValue : values) {
    const double fScaled = generator.UnifReal(0.0, 1.0) * 0x1p40;  // leaves 13 of 53 bits
    fValue = fScaled - static_cast<double>(static_cast<long>(fScaled));
  }
  EXPECT_TRUE(IsUniformBetween(values, 0.0, 1.0));
}

}  // namespace

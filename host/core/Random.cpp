// SPDX-License-Identifier: Apache-2.0
#include "core/Random.h"

#include <algorithm>
#include <cmath>

namespace {

std::uint64_t SplitMix64(std::uint64_t& nState) {
  std::uint64_t z = (nState += 0x9E3779B97F4A7C15U);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31);
}

// Uniform in nLow..nHigh, whichever is larger. The number of values is 2^64, written as 0, for the full
// range.
long Between(CXoshiro256& engine, long nLow, long nHigh) {
  const auto [nFirst, nLast] = std::minmax(nLow, nHigh);
  const auto nBase = static_cast<std::uint64_t>(nFirst);
  const std::uint64_t nValues = static_cast<std::uint64_t>(nLast) - nBase + 1;
  return static_cast<long>(nBase + engine.Below(nValues));
}

constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr unsigned kLetterCount = sizeof kLetters - 1;
constexpr int kLettersPerDraw = 10;  // 52^10 < 2^64, and fewer than 1 % of the draws are rejected

constexpr std::uint64_t PowerOfLetters(int nExponent) {
  std::uint64_t nPower = 1;
  while (nExponent-- > 0) nPower *= kLetterCount;
  return nPower;
}

// The letters of one draw, the lowest digit to base 52 first. Halves of 32 bits do not wait for each other.
void WriteLetters(std::uint64_t nDraw, char* pOut, int nCount) {
  constexpr int kHalf = kLettersPerDraw / 2;
  auto nLow = static_cast<std::uint32_t>(nDraw % PowerOfLetters(kHalf));
  auto nHigh = static_cast<std::uint32_t>(nDraw / PowerOfLetters(kHalf));
  for (int i = 0; i < std::min(nCount, kHalf); ++i, nLow /= kLetterCount)
    pOut[i] = kLetters[nLow % kLetterCount];
  for (int i = kHalf; i < nCount; ++i, nHigh /= kLetterCount) pOut[i] = kLetters[nHigh % kLetterCount];
}

}  // namespace

void CXoshiro256::Seed(std::uint64_t nSeed) {
  for (std::uint64_t& nWord : m_State) nWord = SplitMix64(nSeed);
}

void CRandom::Seed(int nSeed) { m_Engine.Seed(static_cast<std::uint64_t>(nSeed)); }

int CRandom::GetRandomInt(int nLow, int nHigh) { return static_cast<int>(Between(m_Engine, nLow, nHigh)); }

long CRandom::GetRandom(long nLow, long nHigh) { return Between(m_Engine, nLow, nHigh); }

CRandGen::CRandGen() = default;

CRandGen::~CRandGen() = default;

void CRandGen::SetSeed(int nSeed) { m_Engine.Seed(static_cast<std::uint64_t>(nSeed)); }

long CRandGen::UnifInt(long nLow, long nHigh) { return Between(m_Engine, nLow, nHigh); }

double CRandGen::UnifReal(double fLow, double fHigh) {
  const auto [fFirst, fLast] = std::minmax(fLow, fHigh);
  const double fValue = std::lerp(fFirst, fLast, m_Engine.NextDouble());
  return fValue < fLast ? fValue : std::nextafter(fLast, fFirst);  // rounding may reach the upper end
}

int CRandGen::MakeAlphaString(int nMin, int nMax, std::string& szOut) {
  const long nLength = Between(m_Engine, std::max(nMin, 0), std::max(nMax, 0));
  szOut.resize(static_cast<size_t>(nLength));
  char* pOut = szOut.data();
  for (long nLeft = nLength; nLeft > 0; nLeft -= kLettersPerDraw, pOut += kLettersPerDraw)
    WriteLetters(m_Engine.Below(PowerOfLetters(kLettersPerDraw)), pOut,
                 static_cast<int>(std::min<long>(nLeft, kLettersPerDraw)));
  return static_cast<int>(nLength);
}

void CRandGen::GenerateDate(double fStart, double fEnd, lkDateTime& dtOut) {
  constexpr double kSecondsPerDay = 86400.0;
  const long nStart = std::lround(fStart * kSecondsPerDay);
  const long nEnd = std::lround(fEnd * kSecondsPerDay);
  dtOut = lkDateTime(static_cast<double>(UnifInt(nStart, nEnd)) / kSecondsPerDay);
}

CUniqueRandom::CUniqueRandom() = default;

CUniqueRandom::~CUniqueRandom() = default;

void CUniqueRandom::Seed(unsigned int nSeed) { m_Engine.Seed(nSeed); }

unsigned int CUniqueRandom::GetRandom(unsigned int nBound) {
  return nBound == 0 ? 0 : static_cast<unsigned int>(m_Engine.Below(nBound)) + 1;
}

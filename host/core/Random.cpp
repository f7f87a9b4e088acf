// SPDX-License-Identifier: Apache-2.0
#include "core/Random.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

__extension__ typedef unsigned __int128 Wide;  // NOLINT: a product of two draws

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
constexpr std::uint64_t kLetterCount = sizeof kLetters - 1;
constexpr int kLettersPerDraw = 10;  // 52^10 < 2^64, and fewer than 1 % of the draws are rejected

constexpr std::uint64_t LetterGroups() {
  std::uint64_t nGroups = 1;
  for (int i = 0; i < kLettersPerDraw; ++i) nGroups *= kLetterCount;
  return nGroups;
}

}  // namespace

void CXoshiro256::Seed(std::uint64_t nSeed) {
  for (std::uint64_t& nWord : m_State) nWord = SplitMix64(nSeed);
}

std::uint64_t CXoshiro256::Next() {
  const std::uint64_t nResult = std::rotl(m_State[0] + m_State[3], 23) + m_State[0];
  const std::uint64_t nShifted = m_State[1] << 17;
  m_State[2] ^= m_State[0];
  m_State[3] ^= m_State[1];
  m_State[1] ^= m_State[2];
  m_State[0] ^= m_State[3];
  m_State[2] ^= nShifted;
  m_State[3] = std::rotl(m_State[3], 45);
  return nResult;
}

// The high word of draw * bound is the result. It is uniform once the products with a low word below 2^64 mod
// bound are drawn again.
std::uint64_t CXoshiro256::Below(std::uint64_t nBound) {
  if (nBound == 0) return Next();
  Wide nProduct = Wide{Next()} * nBound;
  if (static_cast<std::uint64_t>(nProduct) < nBound) {
    const std::uint64_t nRejected = -nBound % nBound;
    while (static_cast<std::uint64_t>(nProduct) < nRejected) nProduct = Wide{Next()} * nBound;
  }
  return static_cast<std::uint64_t>(nProduct >> 64);
}

double CXoshiro256::NextDouble() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

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
  std::uint64_t nLetters = 0;
  int nLeft = 0;
  for (char& c : szOut) {
    if (nLeft-- == 0) {
      nLetters = m_Engine.Below(LetterGroups());
      nLeft = kLettersPerDraw - 1;
    }
    c = kLetters[nLetters % kLetterCount];
    nLetters /= kLetterCount;
  }
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

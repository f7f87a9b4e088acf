// SPDX-License-Identifier: Apache-2.0
// The host's random sources. All are seedable, repeat their sequence for a seed, and draw bounded integers
// without modulo bias. Not thread-safe: every virtual user owns its own.
//
// All three run xoshiro256++ (Blackman and Vigna 2019), seeded through splitmix64 (Steele, Lea and Flood
// 2014); bounded integers use Lemire's multiply-and-reject method (2019).
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "core/LKDateTime.h"

// The engine: 2^256 - 1 states, 64 bits a draw.
class CXoshiro256 {
 public:
  explicit CXoshiro256(std::uint64_t nSeed = 0) { Seed(nSeed); }
  void Seed(std::uint64_t nSeed);
  std::uint64_t Next();
  std::uint64_t Below(std::uint64_t nBound);  // uniform in 0..nBound-1; nBound 0 means 2^64
  double NextDouble();                        // uniform in [0, 1), 53 bits

 private:
  __extension__ typedef unsigned __int128 Wide;  // NOLINT: a product of two draws

  std::array<std::uint64_t, 4> m_State{};
};

// In sight of their callers: rows are made of these draws.
inline std::uint64_t CXoshiro256::Next() {
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
inline std::uint64_t CXoshiro256::Below(std::uint64_t nBound) {
  if (nBound == 0) return Next();
  Wide nProduct = Wide{Next()} * nBound;
  if (static_cast<std::uint64_t>(nProduct) < nBound) {
    const std::uint64_t nRejected = -nBound % nBound;
    while (static_cast<std::uint64_t>(nProduct) < nRejected) nProduct = Wide{Next()} * nBound;
  }
  return static_cast<std::uint64_t>(nProduct >> 64);
}

inline double CXoshiro256::NextDouble() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

class CRandom {
 public:
  void Seed(int nSeed);
  int GetRandomInt(int nLow, int nHigh);  // both bounds inclusive; reversed bounds are exchanged
  long GetRandom(long nLow, long nHigh);  // likewise

 private:
  CXoshiro256 m_Engine{1};
};

class CRandGen {
 public:
  CRandGen();
  ~CRandGen();
  void SetSeed(int nSeed);
  // As in CRandom, reversed bounds are exchanged.
  long UnifInt(long nLow, long nHigh);         // both bounds inclusive
  double UnifReal(double fLow, double fHigh);  // [fLow, fHigh); fLow when they are equal
  // Fills szOut with letters (A-Z, a-z); its length is uniform in nMin..nMax, and is returned. Bounds below 0
  // count as 0; with nMin above nMax the bounds are exchanged.
  int MakeAlphaString(int nMin, int nMax, std::string& szOut);
  // Uniform over the seconds from fStart to fEnd (days, as lkDateTime converts), both inclusive.
  void GenerateDate(double fStart, double fEnd, lkDateTime& dtOut);

 private:
  CXoshiro256 m_Engine{1};
};

// Draws in 1..n. kept: its name notwithstanding, values repeat; a weight is a frequency only because of that.
class CUniqueRandom {
 public:
  CUniqueRandom();
  ~CUniqueRandom();
  void Seed(unsigned int nSeed);
  unsigned int GetRandom(unsigned int nBound);  // uniform in 1..nBound; 0 when nBound is 0

 private:
  CXoshiro256 m_Engine{1};
};

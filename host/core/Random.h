// SPDX-License-Identifier: Apache-2.0
// The host's random sources. All are seedable, repeat their sequence for a seed, and draw bounded integers
// without modulo bias. Not thread-safe: every virtual user owns its own.
//
// All three run xoshiro256++ (Blackman and Vigna 2019), seeded through splitmix64 (Steele, Lea and Flood
// 2014); bounded integers use Lemire's multiply-and-reject method (2019).
#pragma once

#include <array>
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
  std::array<std::uint64_t, 4> m_State{};
};

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

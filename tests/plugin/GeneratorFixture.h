// SPDX-License-Identifier: Apache-2.0
// The fixture of the generator tests, with fixed seeds. A "twin" is a second random source with the same
// seed: it makes the draws that the generator is to make, so values and the position of the stream can be
// compared exactly.
#pragma once

#include <gmock/gmock.h>

#include <cstring>
#include <string>

#include "Benchmarks/CREP_ORA8/DataGenerator.h"
#include "Recorders.h"

namespace scripted {

inline constexpr int kSeed = 20240229;
inline constexpr long kNextDrawMax = 1000000000;

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

inline double Number(IDataGenerator& generator) {
  int nLen = 0;
  const void* pValue = generator.GenerateData(&nLen);
  EXPECT_EQ(nLen, 8);
  return *static_cast<const double*>(pValue);
}

inline std::string Text(IDataGenerator& generator) {
  int nLen = 0;
  const auto* pValue = static_cast<const char*>(generator.GenerateData(&nLen));
  EXPECT_EQ(nLen, static_cast<int>(std::strlen(pValue)));
  return pValue;
}

inline double PercentOfNulls(IDataGenerator& generator) {
  constexpr int kRows = 20000;
  int nNulls = 0;
  for (int i = 0; i < kRows; ++i) {
    int nLen = 0;
    generator.GenerateData(&nLen);
    if (nLen == -1) ++nNulls;
  }
  return 100.0 * nNulls / kRows;
}

}  // namespace scripted

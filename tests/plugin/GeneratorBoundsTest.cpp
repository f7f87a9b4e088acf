// SPDX-License-Identifier: Apache-2.0
// Very many values of every kind of column without one that the column could not hold: a million of each, or
// LK_DRAWS.
#include <cctype>
#include <cstring>

#include "GeneratorFixture.h"
#include "Statistics.h"

namespace scripted {
namespace {

using statistics::BoundedDraws;

class ManyValues : public Generator {
 protected:
  // Looks at the values of a nullable column; the first that is not accepted ends it.
  template <class Accepts>
  void ExpectAll(IDataGenerator& generator, Accepts accepts) {
    Attach(generator, true);
    const long nDraws = BoundedDraws();
    for (long i = 0; i < nDraws; ++i) {
      int nLen = 0;
      const void* pValue = generator.GenerateData(&nLen);
      if (nLen != -1 && !accepts(pValue, nLen)) {
        ADD_FAILURE() << "value " << i << " of " << nLen << " bytes";
        return;
      }
    }
  }

  void ExpectNumbers(int nPrecision, int nScale, double fLow, double fHigh) {
    CNumberGenerator generator(nPrecision, nScale);
    ExpectAll(generator, [&](const void* pValue, int nLen) {
      const double fValue = *static_cast<const double*>(pValue);
      return nLen == 8 && fValue >= fLow && fValue <= fHigh;
    });
  }
};

TEST_F(ManyValues, OfADecimalColumnAreInside) { ExpectNumbers(10, 2, 0.0, 99999999.0); }

TEST_F(ManyValues, OfAFractionAreInside) { ExpectNumbers(5, 5, 0.0, 0.099999); }

TEST_F(ManyValues, OfAWideColumnAreInside) { ExpectNumbers(20, 0, 0.0, 2147483647.0); }

TEST_F(ManyValues, OfANegativeScaleAreInside) { ExpectNumbers(5, -2, 0.0, 999999.0); }

TEST_F(ManyValues, OfARealColumnAreInside) { ExpectNumbers(63, 129, 1.0, 9999.99); }

TEST_F(ManyValues, OfAFloatColumnAreInside) { ExpectNumbers(126, 129, 1.0, 999999.99); }

TEST_F(ManyValues, OfAnUnconstrainedColumnAreInside) { ExpectNumbers(0, 129, 1.0, 2147483647.0); }

TEST_F(ManyValues, OfATextColumnAreOneToSizeLettersAndATerminator) {
  CStrGenerator generator(5);
  ExpectAll(generator, [](const void* pValue, int nLen) {
    const auto* szText = static_cast<const char*>(pValue);
    if (nLen < 1 || nLen > 5 || szText[nLen] != '\0') return false;
    for (int i = 0; i < nLen; ++i)
      if (!std::isalpha(static_cast<unsigned char>(szText[i]))) return false;
    return true;
  });
  EXPECT_THAT(m_asserts.Texts(), testing::IsEmpty());
}

TEST_F(ManyValues, OfADateColumnAreFrom1950To2500) {
  CDateGenerator generator;
  ExpectAll(generator, [](const void* pValue, int nLen) {
    const auto* szDate = static_cast<const char*>(pValue);
    return nLen == 19 && std::strcmp(szDate, "1950/01/01 00:00:00") >= 0 &&
           std::strcmp(szDate, "2500/12/30 12:12:12") <= 0;
  });
}

}  // namespace
}  // namespace scripted

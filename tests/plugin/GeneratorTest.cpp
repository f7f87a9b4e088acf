// SPDX-License-Identifier: Apache-2.0
// The generators of keys, texts and dates, and the NULLs of all of them.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>

#include "GeneratorFixture.h"
#include "core/LKDateTime.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SequenceGenerator = Generator;
using StrGenerator = Generator;
using DateGenerator = Generator;
using NullValues = Generator;

TEST_F(SequenceGenerator, CountsFromOne) {
  CSequenceGenerator generator;
  Attach(generator, false);
  EXPECT_EQ(Number(generator), 1.0);
  EXPECT_EQ(Number(generator), 2.0);
  EXPECT_EQ(Number(generator), 3.0);
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
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

TEST_F(SequenceGenerator, DrawsOnceARowForNullWhenItIsAllowed) {
  CSequenceGenerator generator;
  Attach(generator, true);
  for (int i = 0; i < 1000; ++i) {
    int nLen = 0;
    generator.GenerateData(&nLen);
    ASSERT_EQ(nLen, m_twin.UnifInt(1, 100) < 6 ? -1 : 8);
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(SequenceGenerator, GetValueIsTheStorageOfTheLastValue) {
  CSequenceGenerator generator;
  Attach(generator, false);
  EXPECT_EQ(generator.GenerateData(nullptr), generator.GetValue());
  EXPECT_EQ(*static_cast<double*>(generator.GetValue()), 1.0);
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

TEST_F(StrGenerator, DrawsForNullFirstAndThenTheTextOfARowThatIsNotNull) {
  CStrGenerator generator(40);
  Attach(generator, true);
  for (int i = 0; i < 1000; ++i) {
    std::string expected;
    const bool bNull = m_twin.UnifInt(1, 100) < 6;
    if (!bNull) m_twin.MakeAlphaString(1, 40, expected);
    int nLen = 0;
    const auto* szText = static_cast<const char*>(generator.GenerateData(&nLen));
    ASSERT_EQ(nLen, bNull ? -1 : static_cast<int>(expected.size()));
    ASSERT_EQ(szText, expected);
  }
  EXPECT_TRUE(StreamsAreAtTheSamePlace());
}

TEST_F(StrGenerator, MakesItsTextAlsoWhenNobodyAsksForTheLength) {
  CStrGenerator generator(40);
  Attach(generator, false);
  std::string expected;
  m_twin.MakeAlphaString(1, 40, expected);
  EXPECT_EQ(static_cast<const char*>(generator.GenerateData(nullptr)), expected);
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

TEST_F(DateGenerator, MakesItsTextAlsoWhenNobodyAsksForTheLength) {
  CDateGenerator generator;
  CDateGenerator twin;
  Attach(generator, false);
  twin.SetAllowNull(false);
  twin.SetRandGen(&m_twin);
  EXPECT_EQ(static_cast<const char*>(generator.GenerateData(nullptr)), Text(twin));
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
}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <climits>
#include <limits>

#include "core/LKArchive.h"

namespace {

struct Fields {
  int nInt = 0;
  __int64 nLong = 0;
  double fDouble = 0.0;
  LKString szText;

  void Exchange(CLKArchive& archive) {
    archive.Exchange(L"Int", nInt);
    archive.Exchange(L"Long", nLong);
    archive.Exchange(L"Double", fDouble);
    archive.Exchange(L"A \"quoted\" <name> & more", szText);
  }
};

class Archive : public testing::TestWithParam<SerializeMode> {
 protected:
  Fields RoundTrip(Fields fields) {
    CLKArchive storing(GetParam());
    fields.Exchange(storing);
    CLKArchive loading(GetParam(), storing.GetText());
    Fields loaded;
    loaded.Exchange(loading);
    EXPECT_TRUE(loading.IsGood());
    return loaded;
  }
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(BothForms, Archive, testing::Values(Xml, Json));

TEST_P(Archive, BringsBackTheExtremesOfEveryNumber) {
  const Fields high = RoundTrip({INT_MAX, LONG_MAX, std::numeric_limits<double>::max(), L""});
  EXPECT_EQ(high.nInt, INT_MAX);
  EXPECT_EQ(high.nLong, LONG_MAX);
  EXPECT_EQ(high.fDouble, std::numeric_limits<double>::max());
  const Fields low = RoundTrip({INT_MIN, LONG_MIN, 0.1 + 0.2, L""});
  EXPECT_EQ(low.nInt, INT_MIN);
  EXPECT_EQ(low.nLong, LONG_MIN);
  EXPECT_EQ(low.fDouble, 0.1 + 0.2);
  EXPECT_EQ(RoundTrip({0, 0, -std::numeric_limits<double>::infinity(), L""}).fDouble,
            -std::numeric_limits<double>::infinity());
}

TEST_P(Archive, BringsBackTextsWithMarkup) {
  for (const wchar_t* text : {L"", L" ", L"<a b=\"c\">&amp;</a>", L"{\"x\": [1]}\\", L"line\nline\r\n\ttab",
                              L"\u00E9\u20AC\U0001F600", L"]]>"})
    EXPECT_EQ(RoundTrip({0, 0, 0.0, text}).szText, LKString(text));
}

TEST_P(Archive, LeavesAFieldThatItsTextLacks) {
  CLKArchive storing(GetParam());
  int nOther = 1;
  storing.Exchange(L"Other", nOther);
  CLKArchive loading(GetParam(), storing.GetText());
  int nInt = 42;
  loading.Exchange(L"Int", nInt);
  EXPECT_EQ(nInt, 42);
  EXPECT_TRUE(loading.IsGood());
}

TEST_P(Archive, IsNotGoodAfterAValueOfTheWrongType) {
  CLKArchive storing(GetParam());
  LKString szText(L"five");
  storing.Exchange(L"Int", szText);
  CLKArchive loading(GetParam(), storing.GetText());
  int nInt = 42;
  loading.Exchange(L"Int", nInt);
  EXPECT_EQ(nInt, 42);
  EXPECT_FALSE(loading.IsGood());
}

TEST_P(Archive, IsNotGoodForATextOfAnotherForm) {
  for (const wchar_t* text :
       {L"", L"[1, 2]", L"<other/>", L"{\"a\": {}}", L"<properties><x/></properties>",
        L"<properties><property>no name</property></properties>", L"{", L"<properties>"})
    EXPECT_FALSE(CLKArchive(GetParam(), text).IsGood()) << LKString(text).ToChar();
}

TEST(ArchiveText, OfJsonKeepsNumbersBareAndTheOrder) {
  CLKArchive archive(Json);
  Fields fields{3, -4, 0.5, L"x"};
  fields.Exchange(archive);
  EXPECT_EQ(archive.GetText(), LKString(L"{\n  \"Int\": 3,\n  \"Long\": -4,\n  \"Double\": 0.5,\n"
                                        L"  \"A \\\"quoted\\\" <name> & more\": \"x\"\n}"));
}

TEST(ArchiveText, KnowsItsDirection) {
  EXPECT_TRUE(CLKArchive(Json).IsStoring());
  EXPECT_FALSE(CLKArchive(Json, L"{}").IsStoring());
}

TEST(ArchiveText, NumbersItsFormsFromOne) {
  EXPECT_EQ(Xml, 1);
  EXPECT_EQ(Json, 2);
}

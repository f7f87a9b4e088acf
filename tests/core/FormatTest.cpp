// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>

#include "AssertionList.h"
#include "core/LKString.h"
#include "core/LKTypes.h"

namespace {

// The text that a format leaves in a string that held "old".
template <class... Arguments>
std::string Formatted(const wchar_t* format, Arguments... arguments) {
  LKString text(L"old");
  text.Format(format, arguments...);
  EXPECT_EQ(text.m_nCount, 0);
  return text.ToChar();
}

}  // namespace

TEST(Format, ReplacesWhatTheStringHeld) {
  EXPECT_EQ(Formatted(L"%d-%d", 1, 2), "1-2");
  EXPECT_EQ(Formatted(L"LK_REP_TABLE%d", 7), "LK_REP_TABLE7");
}

TEST(Format, WithoutASpecifierForSeveralArgumentsLeavesTheStringAsItWas) {
  LKString text(L"old");
  text.m_nCount = 0;
  text.Format(L"no specifier", 1, 2);
  EXPECT_EQ(text, LKString(L"old"));
  EXPECT_EQ(text.m_nCount, 0);
}

// The other way round than with several: the text is rendered whatever it holds.
TEST(Format, WithoutASpecifierForOneArgumentIsTheTextItself) {
  EXPECT_EQ(Formatted(L"no specifier", 1), "no specifier");
}

TEST(Format, WithoutASpecifierForSeveralArgumentsDoesNotCount) {
  LKString text(L"old");
  text.m_nCount = 3;
  text.Format(L"no specifier", 1, 2);
  EXPECT_EQ(text.m_nCount, 3);
  EXPECT_EQ(text, LKString(L"old"));
}

TEST(Format, WritesNumbersWithAPointAsTheCLibraryDoes) {
  for (const double value :
       {0.0, -0.0, 12.5, -7.25, 0.0000005, 0.0000015, 2.5e-7, 123456789.987654321, 1e17, 999999999999999999.0,
        1e18, -1e18, 1e22, 5e-324, 1e300, std::nan(""), -std::numeric_limits<double>::infinity()}) {
    std::array<char, 400> expected;
    std::snprintf(expected.data(), expected.size(), "%f", value);
    EXPECT_EQ(Formatted(L"%f", value), expected.data());
  }
}

TEST(Format, DropsTheLastArgumentThatHasNoSpecifier) { EXPECT_EQ(Formatted(L"a %d b", 1, 2), "a 1 b"); }

TEST(Format, NestedCallWithoutASpecifierLeavesOutTheRest) { EXPECT_EQ(Formatted(L"a %d b", 1, 2, 3), "a 1"); }

TEST(Format, WritesSpecifiersWithoutAnArgumentAsTheyStand) {
  EXPECT_EQ(Formatted(L"%d %d", 1), "1 %d");
  EXPECT_EQ(Formatted(L"%d %s %d %5.2f", 1, L"x"), "1 x %d %5.2f");
}

TEST(Format, KeepsTheTextBehindTheLastSpecifier) {
  EXPECT_EQ(Formatted(L"DELETE FROM %s WHERE ID IN (SELECT ID FROM %s WHERE ID > %lld AND ROWNUM <=%d)",
                      LKString(L"T"), LKString(L"T"), 1000L, 5000),
            "DELETE FROM T WHERE ID IN (SELECT ID FROM T WHERE ID > 1000 AND ROWNUM <=5000)");
}

TEST(Format, CountsNoCallInProgressAfterATopLevelCall) {
  LKString text;
  text.m_nCount = 3;  // as if it were nested
  text.Format(L"%d%d", 1, 2);
  EXPECT_EQ(text.m_nCount, 0);
}

TEST(Format, AppendsWhileACallIsInProgress) {
  LKString text(L"a");
  text.m_nCount = 1;
  text.Format(L"%d", 2);
  EXPECT_EQ(text, LKString(L"a2"));
  EXPECT_EQ(text.m_nCount, 1) << "the single-argument form does not count";
  text.Format(L"%d%d", 3, 4);
  EXPECT_EQ(text, LKString(L"a234"));
}

TEST(Format, TakesANullFormatAsEmpty) {
  const wchar_t* none = nullptr;
  EXPECT_EQ(Formatted(none, 1), "");
  EXPECT_EQ(Formatted(none, 1, 2), "old");
}

TEST(Format, OfAPieceAppendsToWhatIsThere) {
  wxString number("x");
  FormatHelper<int>::Format(L"a%d", 1, number);
  EXPECT_EQ(number, "xa1");
  wxString text("x");
  FormatHelper<LKString>::Format(L"a%s", LKString(L"b"), text);
  EXPECT_EQ(text, "xab");
}

TEST(Format, OfANullPieceAppendsNothing) {
  wxString text("x");
  FormatHelper<LKString>::Format(nullptr, LKString(L"b"), text);
  FormatHelper<int>::Format(nullptr, 1, text);
  EXPECT_EQ(text, "x");
}

TEST(Format, CountsCharactersAndNotTheirBytesUpToASpecifier) {
  EXPECT_EQ(Formatted(L"\u00E9\U0001F600 %d %d %d", 1, 2, 3), "\xC3\xA9\xF0\x9F\x98\x80 1 2 3");
}

TEST(Format, RendersEveryLengthOf64Bits) {
  for (const wchar_t* format : {L"%lld", L"%I64d", L"%i64d", L"%ld", L"%jd", L"%zd", L"%td"}) {
    EXPECT_EQ(Formatted(format, LONG_MIN), "-9223372036854775808") << LKString(format).ToChar();
    EXPECT_EQ(Formatted(format, 5000000000L), "5000000000") << LKString(format).ToChar();
  }
  EXPECT_EQ(Formatted(L"CREATE SEQUENCE LK_REP_ID_SEQ START WITH %I64d CACHE 100", __int64{1501}),
            "CREATE SEQUENCE LK_REP_ID_SEQ START WITH 1501 CACHE 100");
  EXPECT_EQ(Formatted(L"%I64d of %i64u", 3000000000L, 4000000000L), "3000000000 of 4000000000");
}

TEST(Format, OfTheContractsInt64IsThatOfALong) {
  static_assert(std::is_same_v<__int64, long>);
  EXPECT_EQ(Formatted(L"%d %lld", 1, __int64{-2}), "1 -2");
}

TEST(Format, RendersEachKindOfArgumentThatThePlugInPasses) {
  const AssertionList assertions;
  char letters[] = "AbC";
  EXPECT_EQ(Formatted(L"%f", 12.5), "12.500000");
  EXPECT_EQ(Formatted(L"%d", true), "1");
  EXPECT_EQ(Formatted(L"='%s',", static_cast<char*>(letters)), "='AbC',");
  EXPECT_EQ(Formatted(L"%s", LKString(L"t")), "t");
  EXPECT_EQ(Formatted(L"%d %d", 1, false), "1 0");
  EXPECT_EQ(Formatted(L"%lld %d", 1L, 2), "1 2");
  EXPECT_EQ(Formatted(L"%s %d %d", "narrow", 1, true), "narrow 1 1");
  EXPECT_EQ(Formatted(L"%s %s %s", LKString(L"a"), LKString(L"b"), "c"), "a b c");
  EXPECT_EQ(Formatted(L"%s %lld", LKString(L"a"), 1L), "a 1");
  EXPECT_EQ(Formatted(L"%s %f", LKString(L"a"), 1.0), "a 1.000000");
  EXPECT_EQ(Formatted(L"%s", L"wide"), "wide");
  EXPECT_EQ(assertions.Messages(), std::vector<std::string>{});
}

TEST(Format, RendersFlagsWidthAndPrecision) {
  EXPECT_EQ(Formatted(L"[%5d][%-5d][%05d][%+d]", 1, 2, 3, 4), "[    1][2    ][00003][+4]");
  EXPECT_EQ(Formatted(L"%.2f %8.3f %e", 1.005, 2.0, 3.0), "1.00    2.000 3.000000e+00");
  EXPECT_EQ(Formatted(L"%x %X %o %u %c", 255, 255, 8, 3, 65), "ff FF 10 3 A");
  EXPECT_EQ(Formatted(L"%.2s|%4s", LKString(L"abc"), LKString(L"d")), "ab|   d");
}

// Pieces are taken over like texts of the C library.
TEST(Format, ACharacterOfTheValue0EndsItsPiece) {
  EXPECT_EQ(Formatted(L"a%cb", 0), "a");
  EXPECT_EQ(Formatted(L"a%cb%dc", 0, 7), "ab7c");
}

TEST(Format, TakesNarrowTextAsUtf8) {
  EXPECT_EQ(Formatted(L"%s \u00E9 %s", "Gr\xC3\xBC\xC3\x9F", "\xF0\x9F\x98\x80"),
            "Gr\xC3\xBC\xC3\x9F \xC3\xA9 \xF0\x9F\x98\x80");
  EXPECT_EQ(Formatted(L"%s", "\xFF"), "\xEF\xBF\xBD");
}

TEST(Format, TakesANullTextAsEmpty) {
  EXPECT_EQ(Formatted(L"[%s]", static_cast<const char*>(nullptr)), "[]");
  EXPECT_EQ(Formatted(L"[%s]", static_cast<const wchar_t*>(nullptr)), "[]");
}

TEST(Format, RendersADoubledPercentAsOne) {
  EXPECT_EQ(Formatted(L"100%% of %d", 5), "100% of 5");
  EXPECT_EQ(Formatted(L"%d%%", 5), "5%");
}

// The splitter knows no "%%": behind it, a space flag and the letter d make a specifier that takes an
// argument.
TEST(Format, SplitsBehindADoubledPercentAndALetter) {
  EXPECT_EQ(Formatted(L"100%% d and %d", 1, 2), "100% d and 2");
}

TEST(Format, SplitsAtTheSecondOfTwoPercentSigns) {
  EXPECT_EQ(Formatted(L"100%%d and %d", 1, 2), "100%d and 2");
}

// The pattern counts | among the flags and the conversions.
TEST(Format, SplitsAtAPercentAndABar) {
  EXPECT_EQ(Formatted(L"a%|b%d", 1, 2), "a%|b2");
  EXPECT_EQ(Formatted(L"a%|d%d", 1, 2), "a%|d2");
}

TEST(Format, MayReadTheStringThatItWrites) {
  LKString text(L"%d and ");
  text.Format(text.c_str(), 1);
  EXPECT_EQ(text, LKString(L"1 and "));
  text.Format(L"%s%d", text, 2);
  EXPECT_EQ(text, LKString(L"1 and 2"));
  text = L"%d-%d";
  text.Format(text, 3, 4);
  EXPECT_EQ(text, LKString(L"3-4"));
}

TEST(Format, LeavesOutWhatIsWiderThanAnyBuffer) { EXPECT_EQ(Formatted(L"[%99999999999d]", 7), "[]"); }

TEST(Format, RendersTextsLongerThanAnyFirstBuffer) {
  EXPECT_EQ(Formatted(L"%200d", 7), std::string(199, ' ') + "7");
  EXPECT_EQ(Formatted(L"%.5000f", 0.5), "0.5" + std::string(4999, '0'));
  const std::string longText(100000, 'x');
  EXPECT_EQ(Formatted(L"%s%d", longText.c_str(), 1), longText + "1");
}

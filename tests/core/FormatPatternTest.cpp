// SPDX-License-Identifier: Apache-2.0
// The pattern at which formats are cut: letter for letter, and what it takes that a cleaner one would not.
// Hosts and plug-ins cut formats with copies of their own of this pattern; one that takes anything else would
// hand the arguments to other pieces.
#include <gtest/gtest.h>

#include <string>

#include "core/LKString.h"

namespace {

std::wstring FirstMatch(const wchar_t* format) {
  wxRegEx pattern(kLKFormatSpecifier, wxRE_ADVANCED);
  return pattern.Matches(format) ? pattern.GetMatch(format).ToStdWstring() : L"";
}

}  // namespace

TEST(FormatPattern, StandsAsItWasWritten) {
  EXPECT_STREQ(kLKFormatSpecifier,
               L"%([-|+|#|0| ]){0,1}(\\d+)?(\\.\\d+)?(hh|h|l|ll|j|z|t|z|I64|i64){0,1}"
               L"[d|i|u|o|x|X|f|F|e|E|g|G|a|A|c|s|p|n]");
}

TEST(FormatPattern, TakesABarForAFlag) { EXPECT_EQ(FirstMatch(L"a %|5d b"), L"%|5d"); }

TEST(FormatPattern, TakesABarForAConversion) { EXPECT_EQ(FirstMatch(L"a %5| b"), L"%5|"); }

TEST(FormatPattern, TakesOneFlagOnly) {
  EXPECT_EQ(FirstMatch(L"%-05d"), L"%-05d") << "a zero is a digit of the width as well";
  EXPECT_EQ(FirstMatch(L"%+-5d %i"), L"%i");
}

TEST(FormatPattern, NeedsADigitBehindThePointAndTakesNoStar) { EXPECT_EQ(FirstMatch(L"%.f %*d %i"), L"%i"); }

TEST(FormatPattern, KnowsNoDoubledPercent) {
  EXPECT_EQ(FirstMatch(L"100%% done %i"), L"% d");
  EXPECT_EQ(FirstMatch(L"100%%d"), L"%d");
}

TEST(FormatPattern, TakesEveryLengthWhole) {
  for (const wchar_t* format :
       {L"%hhd", L"%hd", L"%ld", L"%lld", L"%jd", L"%zd", L"%td", L"%I64d", L"%i64d", L"%-8.3lld"})
    EXPECT_EQ(FirstMatch(format), format);
}

TEST(FormatPattern, DoesNotKnowWhatOtherFormattersTake) {
  for (const wchar_t* format : {L"%Lf", L"%S", L"%y", L"%'d", L"%", L"% "})
    EXPECT_EQ(FirstMatch(format), L"");
}

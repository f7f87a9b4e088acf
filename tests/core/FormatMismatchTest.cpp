// SPDX-License-Identifier: Apache-2.0
// A specifier of the wrong class: reported in the formatter's words, and the argument is rendered all the
// same.
#include <gtest/gtest.h>

#include <string>

#include "AssertionList.h"
#include "core/LKString.h"

namespace {

const std::string kMismatch = "format specifier doesn't match argument type";

struct Outcome {
  std::string text;
  std::vector<std::string> messages;
};

template <class... Arguments>
Outcome Format(const wchar_t* format, Arguments... arguments) {
  const AssertionList assertions;
  LKString text;
  text.Format(format, arguments...);
  return {text.ToChar(), assertions.Messages()};
}

void ExpectMismatch(const Outcome& outcome, const std::string& text) {
  EXPECT_EQ(outcome.text, text);
  EXPECT_EQ(outcome.messages, std::vector<std::string>{kMismatch});
}

}  // namespace

TEST(FormatMismatch, OfAnInt) {
  ExpectMismatch(Format(L"[%s]", 5), "[5]");
  ExpectMismatch(Format(L"[%f]", 5), "[5]");
  ExpectMismatch(Format(L"[%lld]", 5), "[5]");
  ExpectMismatch(Format(L"[%p]", 5), "[5]");
  ExpectMismatch(Format(L"[%s]", true), "[1]");
}

TEST(FormatMismatch, OfALong) {
  ExpectMismatch(Format(L"[%d]", 5000000000L), "[5000000000]");
  ExpectMismatch(Format(L"[%s]", 5L), "[5]");
  ExpectMismatch(Format(L"[%c]", 65L), "[65]");
}

TEST(FormatMismatch, OfADouble) {
  ExpectMismatch(Format(L"[%d]", 1.5), "[1.500000]");
  ExpectMismatch(Format(L"[%.1s]", 1.5), "[1.5]");
}

TEST(FormatMismatch, OfAText) {
  ExpectMismatch(Format(L"[%d]", LKString(L"x")), "[x]");
  ExpectMismatch(Format(L"[%5d]", "x"), "[    x]");
  ExpectMismatch(Format(L"[%f]", L"x"), "[x]");
}

TEST(FormatMismatch, NeverWritesThroughAnArgument) {
  ExpectMismatch(Format(L"[%n]", 5), "[5]");
  ExpectMismatch(Format(L"[%lln]", 5L), "[5]");
}

TEST(FormatMismatch, OfOnePieceLeavesTheOthersAlone) {
  ExpectMismatch(Format(L"%d %s %s", 1, 2, L"x"), "1 2 x");
}

TEST(FormatMismatch, IsNoneForFittingClasses) {
  EXPECT_EQ(Format(L"%d %c %hd %x", 1, 65, 2, 3).messages, std::vector<std::string>{});
  EXPECT_EQ(Format(L"%lld %I64d %ld", 1L, 2L, 3L).messages, std::vector<std::string>{});
  EXPECT_EQ(Format(L"%f %g %lf", 1.0, 2.0, 3.0).messages, std::vector<std::string>{});
  EXPECT_EQ(Format(L"%s %ls %hs", "a", L"b", LKString(L"c")).text, "a b c");
}

TEST(FormatMismatch, IsNoneForAPercentSignThatStartsNoSpecifier) {
  const Outcome outcome = Format(L"50% y, 10 %", 5);
  EXPECT_EQ(outcome.text, "50% y, 10 %");
  EXPECT_EQ(outcome.messages, std::vector<std::string>{});
}

TEST(FormatMismatch, LeavesAStarredWidthAsItStands) { EXPECT_EQ(Format(L"%*d %d", 5).text, "%*d 5"); }

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cwchar>
#include <string>
#include <utility>

#include "core/LKString.h"

TEST(String, IsEmptyFromTheStart) {
  const LKString text;
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(text.GetLength(), 0);
  EXPECT_STREQ(text.c_str(), L"");
  EXPECT_EQ(text.m_nCount, 0);
}

TEST(String, OfANullPointerIsEmpty) {
  LKString text(L"before");
  text = static_cast<const wchar_t*>(nullptr);
  EXPECT_TRUE(text.IsEmpty());
  text = static_cast<const char*>(nullptr);
  EXPECT_TRUE(text.IsEmpty());
  text += static_cast<const wchar_t*>(nullptr);
  text += static_cast<const char*>(nullptr);
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_TRUE(LKString(static_cast<const wchar_t*>(nullptr)).IsEmpty());
  EXPECT_TRUE(LKString(nullptr, 3).IsEmpty());
}

TEST(String, TakesTheGivenNumberOfBytes) { EXPECT_EQ(LKString("IDENTIFIER", 2), LKString(L"ID")); }

TEST(String, ReadsNarrowTextAsUtf8) {
  const LKString text(
      "Gr\xC3\xBC\xC3\x9F"
      "e \xE2\x82\xAC \xF0\x9F\x98\x80",
      16);
  EXPECT_EQ(text, LKString(L"Gr\u00FC\u00DFe \u20AC \U0001F600"));
}

TEST(String, ReplacesEachByteThatIsNoUtf8) {
  EXPECT_EQ(LKString("a\xFFz", 3), LKString(L"a\uFFFDz"));
  EXPECT_EQ(LKString("\xC3", 1), LKString(L"\uFFFD")) << "cut off";
  EXPECT_EQ(LKString("\xC3\x41", 2), LKString(L"\uFFFDA")) << "no second byte";
  EXPECT_EQ(LKString("\xC0\xAF", 2), LKString(L"\uFFFD\uFFFD")) << "longer than needed";
  EXPECT_EQ(LKString("\xE0\x80\x80", 3), LKString(L"\uFFFD\uFFFD\uFFFD")) << "longer than needed";
  EXPECT_EQ(LKString("\xED\xA0\x80", 3), LKString(L"\uFFFD\uFFFD\uFFFD")) << "a surrogate";
  EXPECT_EQ(LKString("\xF4\x90\x80\x80", 4), LKString(L"\uFFFD\uFFFD\uFFFD\uFFFD")) << "above 10FFFF";
}

// Plain characters are converted in blocks; the other one stands before, in, at the end of and behind one.
TEST(String, ConvertsACharacterAmongManyPlainOnesAtAnyPlace) {
  for (size_t place = 0; place < 40; ++place) {
    std::wstring wide(39, L'x');
    wide.insert(place, 1, L'\u20AC');
    std::string narrow(39, 'x');
    narrow.insert(place, "\xE2\x82\xAC");
    EXPECT_EQ(LKString(wide.c_str()).ToChar(), narrow);
    EXPECT_EQ(LKString(narrow.c_str(), static_cast<int>(narrow.size())), LKString(wide.c_str()));
  }
}

TEST(String, NarrowCopyIsUtf8) {
  EXPECT_EQ(LKString(L"Gr\u00FC\u00DFe \u20AC \U0001F600").ToChar(),
            "Gr\xC3\xBC\xC3\x9F"
            "e \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(String, NarrowCopyReplacesWhatIsNoCharacter) {
  const wchar_t text[] = {L'a', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000), 0};
  EXPECT_EQ(LKString(text).ToChar(), "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(String, AppendsEveryKindOfText) {
  LKString text(L"a");
  text += LKString(L"b");
  text += "c";
  text += L"d";
  text.Append(L"e");
  EXPECT_EQ(text, LKString(L"abcde"));
  EXPECT_EQ(text + LKString(L"f"), LKString(L"abcdef"));
}

TEST(String, MayBeAppendedAndAssignedToItself) {
  LKString text(L"ab");
  text += text;
  EXPECT_EQ(text, LKString(L"abab"));
  text = text.c_str() + 1;
  EXPECT_EQ(text, LKString(L"bab"));
}

TEST(String, AssignmentKeepsTheCounterOfCallsInProgress) {
  LKString copied(L"ab");
  LKString moved(L"ab");
  copied.m_nCount = moved.m_nCount = 2;
  LKString other(L"cd");
  copied = other;
  moved = std::move(other);
  EXPECT_EQ(copied, LKString(L"cd"));
  EXPECT_EQ(moved, LKString(L"cd"));
  EXPECT_EQ(copied.m_nCount, 2);
  EXPECT_EQ(moved.m_nCount, 2);
}

TEST(String, LeftGivesUpToThatManyCharacters) {
  const LKString text(L"abc");
  EXPECT_EQ(text.Left(2), LKString(L"ab"));
  EXPECT_EQ(text.Left(7), text);
  EXPECT_EQ(text.Left(0), LKString());
  EXPECT_EQ(text.Left(-1), LKString());
}

TEST(String, ComparesIgnoringCase) {
  EXPECT_EQ(LKString(L"Id").CompareNoCase(L"iD"), 0);
  EXPECT_LT(LKString(L"a").CompareNoCase(L"B"), 0);
  EXPECT_GT(LKString(L"b").CompareNoCase(L"A"), 0);
  EXPECT_LT(LKString(L"ID").CompareNoCase(L"IDX"), 0);
  EXPECT_GT(LKString(L"IDX").CompareNoCase(L"ID"), 0);
  EXPECT_EQ(LKString().CompareNoCase(nullptr), 0);
}

TEST(String, IsOrderedByCharacterAndThenByLength) {
  EXPECT_TRUE(LKString(L"A") < LKString(L"B"));
  EXPECT_FALSE(LKString(L"B") < LKString(L"A"));
  EXPECT_TRUE(LKString(L"B") < LKString(L"a"));
  EXPECT_TRUE(LKString(L"TABLE1") < LKString(L"TABLE10"));
  EXPECT_FALSE(LKString(L"A") < LKString(L"A"));
}

TEST(String, OrderingTakesItsLeftOperandByValue) {
  bool (*const pLess)(LKString, const LKString&) = &operator<;
  EXPECT_TRUE(pLess(L"A", L"B"));
}

TEST(String, BufferHoldsWhatWasWrittenUpToItsTerminator) {
  LKString text(L"old");
  std::wcscpy(text.GetBuffer(20), L"written");
  text.ReleaseBuffer();
  EXPECT_EQ(text, LKString(L"written"));
  EXPECT_EQ(text.GetLength(), 7);
}

TEST(String, BufferKeepsTheContentAndTakesALength) {
  LKString text(L"content");
  EXPECT_STREQ(text.GetBuffer(3), L"content");
  text.ReleaseBuffer(4);
  EXPECT_EQ(text, LKString(L"cont"));
}

TEST(String, CopyDoesNotTakeTheNestingCounter) {
  LKString counting(L"a");
  counting.m_nCount = 2;
  LKString copy(counting);
  EXPECT_EQ(copy.m_nCount, 0);
  copy = counting;
  EXPECT_EQ(copy.m_nCount, 0);
  EXPECT_EQ(copy, LKString(L"a"));
}

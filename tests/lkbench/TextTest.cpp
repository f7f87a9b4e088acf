// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Text.h"

#include <gtest/gtest.h>

namespace lkbench {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;

nanoseconds DurationOf(const char* text) {
  nanoseconds duration{-1};
  return ParseDuration(text, duration) ? duration : nanoseconds(-1);
}

TEST(Text, ThousandsAreGrouped) {
  EXPECT_EQ(Grouped(0), "0");
  EXPECT_EQ(Grouped(999), "999");
  EXPECT_EQ(Grouped(1000), "1,000");
  EXPECT_EQ(Grouped(1234567), "1,234,567");
}

TEST(Text, MillisecondsKeepThreeSignificantDigits) {
  EXPECT_EQ(Milliseconds(1'234'567), "1.235");
  EXPECT_EQ(Milliseconds(12'345'678), "12.35");
  EXPECT_EQ(Milliseconds(123'456'789), "123.5");
  EXPECT_EQ(Milliseconds(1'234'567'890), "1235");
}

TEST(Text, AShortNumberReadsBackAsItself) {
  for (const double value : {1.5, 0.1, 1.0 / 3, 1e9}) {
    double back = 0;
    ASSERT_TRUE(ParseReal(Short(value), back));
    EXPECT_EQ(back, value);
  }
}

TEST(Text, WhatIsNoNumberIsNotRead) {
  double value = 7;
  for (const char* text : {"nan", "-nan", "inf", "-inf", "infinity", "1e999", "1x", ""})
    EXPECT_FALSE(ParseReal(text, value)) << text;
  EXPECT_EQ(value, 7);
}

TEST(Text, SeveralLinesBecomeOne) {
  EXPECT_EQ(OneLine("first\nsecond\n"), "first: second");
  EXPECT_EQ(OneLine("first:\r\nsecond"), "first: second");
  EXPECT_EQ(OneLine("\n"), "");
  EXPECT_EQ(OneLine("a\tb\x1b[0m\x7f"), "a b?[0m?");
}

TEST(Text, AnExcerptIsCutBetweenTwoCharacters) {
  EXPECT_EQ(Excerpt("a\nb"), "a: b");
  EXPECT_EQ(Excerpt("gr\xC3\xBC\xC3\x9F", 6), "gr\xC3\xBC\xC3\x9F");
  EXPECT_EQ(Excerpt("gr\xC3\xBC\xC3\x9F", 5), "gr\xC3\xBC…");
  EXPECT_EQ(Excerpt(std::string(61, 'x')), std::string(60, 'x') + "…");
}

TEST(Text, DurationsHaveUnits) {
  EXPECT_EQ(DurationOf("500ms"), milliseconds(500));
  EXPECT_EQ(DurationOf("1.5s"), milliseconds(1500));
  EXPECT_EQ(DurationOf("5m"), minutes(5));
  EXPECT_EQ(DurationOf("2h"), minutes(120));
  EXPECT_EQ(DurationOf("3"), milliseconds(3000));
}

TEST(Text, WhatIsNoDurationIsRefused) {
  for (const char* text : {"", "s", "-1s", "ten", "1 s", "nan", "inf", "1e300h", "5x"})
    EXPECT_EQ(DurationOf(text), nanoseconds(-1)) << text;
}

std::uint64_t SizeOf(const char* text) {
  std::uint64_t bytes = 0;
  return ParseSize(text, bytes) ? bytes : 1;
}

TEST(Text, SizesAreWholeMebibytes) {
  EXPECT_EQ(SizeOf("1MiB"), 1048576u);
  EXPECT_EQ(SizeOf("512M"), 536870912u);
  EXPECT_EQ(SizeOf("2GiB"), 2147483648u);
  EXPECT_EQ(SizeOf("1.5G"), 1610612736u);
}

TEST(Text, WhatIsNoSizeIsRefused) {
  for (const char* text : {"", "1", "GiB", "1GB", "1 GiB", "1T", "0.5MiB", "1.0001GiB", "-1MiB", "nanMiB",
                           "infGiB", "1e300G", "0x1M"})
    EXPECT_EQ(SizeOf(text), 1u) << text;
}

TEST(Text, ASizeIsShownInTheUnitThatIsShorter) {
  EXPECT_EQ(SizeText(1048576), "1MiB");
  EXPECT_EQ(SizeText(1073741824), "1GiB");
  EXPECT_EQ(SizeText(1610612736), "1.5GiB");
  EXPECT_EQ(SizeText(std::uint64_t{1025} * 1048576), "1025MiB");
}

TEST(Text, TheNearestNameIsFoundWhateverItsCase) {
  const std::vector<std::string> names = {"users", "scale", "tables"};
  EXPECT_EQ(Nearest("user", names), "users");
  EXPECT_EQ(Nearest("SCLAE", names), "scale");
  EXPECT_EQ(Nearest("table", names), "tables");
}

TEST(Text, ANameThatIsLikeNoneHasNoNearest) {
  EXPECT_EQ(Nearest("colour", {"users", "scale"}), "");
  EXPECT_EQ(Nearest("", {"mix"}), "");
  EXPECT_EQ(DidYouMean("colour", {"users"}), "");
  EXPECT_EQ(DidYouMean("user", {"users"}), ": did you mean \"users\"?");
}

TEST(Text, HostTextIsUtf8) { EXPECT_EQ(ToHost("Größe €").ToChar(), "Größe €"); }

}  // namespace
}  // namespace lkbench

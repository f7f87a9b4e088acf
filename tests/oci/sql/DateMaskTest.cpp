// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DateMask.h"

#include <gtest/gtest.h>

#include <ctime>

#include "OraErrorOf.h"

namespace ocimaria::sql {
namespace {

std::string Convert(std::string_view mask, std::string_view text) { return DateMask(mask).ToCanonical(text); }

int ErrorOf(std::string_view mask, std::string_view text) {
  return OraErrorOf([&] { Convert(mask, text); });
}

std::string CurrentMonth() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char month[16];
  std::strftime(month, sizeof month, "%Y-%m", &local);
  return month;
}

constexpr std::string_view kLoaderMask = "YYYY/MM/DD HH24:MI:SS";

TEST(DateMask, ReadsTheTextOfTheLoader) {
  EXPECT_EQ(Convert(kLoaderMask, "1987/03/09 04:05:06"), "1987-03-09 04:05:06");
}

TEST(DateMask, TakesAnyPunctuationForThatOfTheMask) {
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI:SS", "2011/12/31 23:59:58"), "2011-12-31 23:59:58");
  EXPECT_EQ(Convert(kLoaderMask, "2011.12,31-23 59;58"), "2011-12-31 23:59:58");
}

TEST(DateMask, NeedsNoPunctuationBehindFullWidth) {
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI:SS", "20240102030405"), "2024-01-02 03:04:05");
  EXPECT_EQ(ErrorOf("YYYY-MM-DD", "2024-1Z02"), 1861);
}

TEST(DateMask, TakesShortNumbers) {
  EXPECT_EQ(Convert(kLoaderMask, "2024/1/2 3:4:5"), "2024-01-02 03:04:05");
}

TEST(DateMask, SkipsBlanks) {
  EXPECT_EQ(Convert("YYYY-MM-DD", "  2024 - 1 -2 "), "2024-01-02 00:00:00");
  EXPECT_EQ(Convert("YYYY-MM-DD", "2024 1 2"), "2024-01-02 00:00:00");
}

TEST(DateMask, FillsWhatTheTextDoesNotGive) {
  EXPECT_EQ(Convert(kLoaderMask, "2024/05/06"), "2024-05-06 00:00:00");
  EXPECT_EQ(Convert("YYYY", "1999"), "1999" + CurrentMonth().substr(4) + "-01 00:00:00");
  EXPECT_EQ(Convert("HH24:MI", "07:30"), CurrentMonth() + "-01 07:30:00");
}

TEST(DateMask, ReadsMonthsByName) {
  EXPECT_EQ(Convert("DD-MON-YYYY", "02-jan-2024"), "2024-01-02 00:00:00");
  EXPECT_EQ(Convert("DD MONTH YYYY", "02 September 2024"), "2024-09-02 00:00:00");
  EXPECT_EQ(Convert("DD-MM-YYYY", "02-FEB-2024"), "2024-02-02 00:00:00");
  EXPECT_EQ(Convert("DD-RM-YYYY", "02-XI-2024"), "2024-11-02 00:00:00");
  EXPECT_EQ(Convert("DDMONYYYY", "02MAY2024"), "2024-05-02 00:00:00");
}

TEST(DateMask, RoundsTwoDigitsOfAYear) {
  EXPECT_EQ(Convert("DD-MM-RR", "01-02-49"), "2049-02-01 00:00:00");
  EXPECT_EQ(Convert("DD-MM-RR", "01-02-50"), "1950-02-01 00:00:00");
  EXPECT_EQ(Convert("DD-MM-RRRR", "01-02-99"), "1999-02-01 00:00:00");
  EXPECT_EQ(Convert("DD-MM-RR", "01-02-1812"), "1812-02-01 00:00:00");
  EXPECT_EQ(Convert("DD-MM-YY", "01-02-99"), "2099-02-01 00:00:00");
}

TEST(DateMask, ReadsTwelveHourTimes) {
  EXPECT_EQ(Convert("YYYY-MM-DD HH:MI:SS AM", "2024-01-02 12:00:00 AM"), "2024-01-02 00:00:00");
  EXPECT_EQ(Convert("YYYY-MM-DD HH:MI:SS AM", "2024-01-02 12:00:00 PM"), "2024-01-02 12:00:00");
  EXPECT_EQ(Convert("YYYY-MM-DD HH12:MI P.M.", "2024-01-02 01:30 p.m."), "2024-01-02 13:30:00");
}

TEST(DateMask, ReadsFractionsToTheSixthDigit) {
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI:SS.FF", "2024-01-02 03:04:05.123456789"),
            "2024-01-02 03:04:05.123456");
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI:SSXFF3", "2024-01-02 03:04:05.5"), "2024-01-02 03:04:05.500000");
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI:SS.FF", "2024-01-02 03:04:05"), "2024-01-02 03:04:05.000000");
  EXPECT_EQ(ErrorOf("YYYY-MM-DD HH24:MI:SS.FF3", "2024-01-02 03:04:05.1234"), 1830);
}

TEST(DateMask, ReadsDaysOfTheYearAndJulianDays) {
  EXPECT_EQ(Convert("YYYY-DDD", "2024-366"), "2024-12-31 00:00:00");
  EXPECT_EQ(ErrorOf("YYYY-DDD", "2023-366"), 1848);
  EXPECT_EQ(Convert("J", "2440588"), "1970-01-01 00:00:00");
  EXPECT_EQ(Convert("J SSSSS", "2440588 3661"), "1970-01-01 01:01:01");
}

TEST(DateMask, ChecksTheDayOfTheWeek) {
  EXPECT_EQ(Convert("DAY DD-MM-YYYY", "Thursday 01-01-1970"), "1970-01-01 00:00:00");
  EXPECT_EQ(Convert("DY, DD-MM-YYYY", "thu, 01-01-1970"), "1970-01-01 00:00:00");
  EXPECT_EQ(ErrorOf("DY DD-MM-YYYY", "FRI 01-01-1970"), 1835);
  EXPECT_EQ(ErrorOf("DY DD-MM-YYYY", "XYZ 01-01-1970"), 1846);
}

TEST(DateMask, ReadsQuotedTextAndZones) {
  EXPECT_EQ(Convert("YYYY-MM-DD\"T\"HH24:MI", "2024-01-02T03:04"), "2024-01-02 03:04:00");
  EXPECT_EQ(ErrorOf("YYYY-MM-DD\"T\"HH24:MI", "2024-01-02X03:04"), 1861);
  EXPECT_EQ(Convert("YYYY-MM-DD HH24:MI TZH:TZM", "2024-01-02 03:04 +02:00"), "2024-01-02 03:04:00");
}

TEST(DateMask, HoldsATextToTheCharacterBehindFX) {
  EXPECT_EQ(Convert("FXYYYY-MM-DD", "2024-01-02"), "2024-01-02 00:00:00");
  EXPECT_EQ(ErrorOf("FXYYYY-MM-DD", "2024/01/02"), 1861);
  EXPECT_EQ(ErrorOf("FXYYYY-MM-DD", "2024-1-02"), 1862);
}

TEST(DateMask, NamesWhatIsWrongWithAText) {
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/13/01"), 1843);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/00/01"), 1843);
  EXPECT_EQ(ErrorOf("DD-MON-YYYY", "01-QQQ-2024"), 1843);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/01/32"), 1847);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/02/30"), 1839);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/01"), 1840);
  EXPECT_EQ(ErrorOf(kLoaderMask, ""), 1840);
  EXPECT_EQ(ErrorOf("YYYY/MM/DD", "2024/01/02 03"), 1830);
  EXPECT_EQ(ErrorOf(kLoaderMask, "abcd/01/02"), 1858);
  EXPECT_EQ(ErrorOf(kLoaderMask, "0000/01/02"), 1841);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/01/02 24:00:00"), 1850);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/01/02 23:60:00"), 1851);
  EXPECT_EQ(ErrorOf(kLoaderMask, "2024/01/02 23:00:60"), 1852);
  EXPECT_EQ(ErrorOf("HH:MI AM", "13:00 AM"), 1849);
  EXPECT_EQ(ErrorOf("HH:MI AM", "11:00 XM"), 1855);
  EXPECT_EQ(ErrorOf("SSSSS", "86400"), 1853);
}

TEST(DateMask, RefusesWhatIsNoMask) {
  EXPECT_EQ(OraErrorOf([] { DateMask("YYYY-QX"); }), 1821);
  EXPECT_EQ(OraErrorOf([] { DateMask("YYYY\"T"); }), 1821);
  EXPECT_EQ(OraErrorOf([] { DateMask("YYYY-WW"); }), 1820);
  EXPECT_EQ(OraErrorOf([] { DateMask("DD-DD"); }), 1810);
  EXPECT_EQ(OraErrorOf([] { DateMask("YYYY RR"); }), 1812);
  EXPECT_EQ(OraErrorOf([] { DateMask("HH24 HH"); }), 1813);
  EXPECT_EQ(OraErrorOf([] { DateMask("MM MON"); }), 1816);
  EXPECT_EQ(OraErrorOf([] { DateMask("HH24 AM"); }), 1818);
}

TEST(DateMask, TranslatesItselfForTheServer) {
  EXPECT_EQ(DateMask(kLoaderMask).ToServerFormat(), "%Y/%m/%d %H:%i:%s");
  EXPECT_EQ(DateMask("DD-MON-YY HH:MI:SS.FF AM").ToServerFormat(), "%d-%b-%y %h:%i:%s.%f %p");
  EXPECT_EQ(OraErrorOf([] { return DateMask("J").ToServerFormat(); }), 3001);
}

}  // namespace
}  // namespace ocimaria::sql

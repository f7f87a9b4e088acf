// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "core/LKDateTime.h"

namespace {

constexpr char kLayout[] = "%Y/%m/%d %H:%M:%S";

bool IsLeap(int nYear) { return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0); }

int DaysOf(int nYear, int nMonth) {
  constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[static_cast<size_t>(nMonth - 1)] + (nMonth == 2 && IsLeap(nYear) ? 1 : 0);
}

std::string Expected(int nYear, int nMonth, int nDay, const char* time) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d/%02d/%02d %s", nYear, nMonth, nDay, time);
  return text.data();
}

}  // namespace

TEST(DateTime, CountsDaysSinceTheEndOf1899) {
  EXPECT_EQ(lkDateTime(), 0.0);
  EXPECT_EQ(lkDateTime(1899, 12, 30, 0, 0, 0), 0.0);
  EXPECT_EQ(lkDateTime(1900, 1, 1, 0, 0, 0), 2.0);
  EXPECT_EQ(lkDateTime(1950, 1, 1, 0, 0, 0), 18264.0);
  EXPECT_EQ(lkDateTime(2000, 1, 1, 18, 0, 0), 36526.75);
  EXPECT_EQ(lkDateTime(1899, 12, 29, 12, 0, 0), -0.5);
}

TEST(DateTime, KeepsEverySecondOfItsLimits) {
  EXPECT_EQ(lkDateTime(1950, 1, 1, 0, 0, 0).Format(kLayout), "1950/01/01 00:00:00");
  EXPECT_EQ(lkDateTime(2500, 12, 30, 12, 12, 12).Format(kLayout), "2500/12/30 12:12:12");
  for (int nSecond = 0; nSecond < 86400; ++nSecond) {
    const int nHour = nSecond / 3600;
    const int nMinute = nSecond / 60 % 60;
    const lkDateTime date(2500, 12, 30, nHour, nMinute, nSecond % 60);
    std::array<char, 16> time{};
    std::snprintf(time.data(), time.size(), "%02d:%02d:%02d", nHour, nMinute, nSecond % 60);
    ASSERT_EQ(date.Format("%H:%M:%S"), time.data());
  }
}

TEST(DateTime, KnowsEveryDayFrom1950To2500) {
  double fDays = 18264.0;
  for (int nYear = 1950; nYear <= 2500; ++nYear)
    for (int nMonth = 1; nMonth <= 12; ++nMonth)
      for (int nDay = 1; nDay <= DaysOf(nYear, nMonth); ++nDay, fDays += 1.0) {
        ASSERT_EQ(lkDateTime(nYear, nMonth, nDay, 0, 0, 0), fDays);
        ASSERT_EQ(lkDateTime(nYear, nMonth, nDay, 23, 59, 59).Format(kLayout),
                  Expected(nYear, nMonth, nDay, "23:59:59"));
      }
}

TEST(DateTime, ReadsBackFromItsNumber) {
  const double fNumber = lkDateTime(2024, 2, 29, 12, 34, 56);
  EXPECT_EQ(lkDateTime(fNumber).Format(kLayout), "2024/02/29 12:34:56");
}

TEST(DateTime, RoundsToTheSecond) {
  EXPECT_EQ(lkDateTime(36526.0 - 1e-7).Format(kLayout), "2000/01/01 00:00:00");
}

TEST(DateTime, CarriesWhatIsOutsideItsRange) {
  EXPECT_EQ(lkDateTime(2023, 2, 29, 0, 0, 0).Format(kLayout), "2023/03/01 00:00:00");
  EXPECT_EQ(lkDateTime(2023, 13, 1, 0, 0, 0).Format(kLayout), "2024/01/01 00:00:00");
  EXPECT_EQ(lkDateTime(2023, 1, 1, 24, 0, -1).Format(kLayout), "2023/01/01 23:59:59");
}

TEST(DateTime, KnowsWeekdayAndDayOfTheYear) {
  EXPECT_EQ(lkDateTime(2024, 2, 29, 0, 0, 0).Format("%u %j"), "4 060");
  EXPECT_EQ(lkDateTime(2023, 12, 31, 0, 0, 0).Format("%u %j"), "7 365");
}

TEST(DateTime, IsAValue) {
  const lkDateTime date(2000, 1, 1, 0, 0, 0);
  lkDateTime copy(date);
  EXPECT_EQ(copy, 36526.0);
  copy = lkDateTime();
  EXPECT_EQ(copy, 0.0);
}

TEST(DateTime, WritesWhatIsNotOfTwoDigitsOrFourAsStrftimeDoes) {
  const lkDateTime date(99, 1, 2, 3, 4, 5);
  EXPECT_EQ(date.Format("%Y-%m-%d"), "99-01-02");
  EXPECT_EQ(date.Format("%H%%"), "03%");
  EXPECT_EQ(date.Format("%M:%S %p"), "04:05 AM");
  EXPECT_EQ(lkDateTime(10000, 1, 2, 0, 0, 0).Format("%Y/%m/%d"), "10000/01/02");
  EXPECT_EQ(date.Format(""), "");
}

// SPDX-License-Identifier: Apache-2.0
#include "core/LKDateTime.h"

#include <array>
#include <chrono>
#include <cmath>
#include <ctime>

namespace {

using namespace std::chrono;

constexpr sys_days kOrigin = year{1899} / December / 30;
constexpr double kSecondsPerDay = 86400.0;

// A month outside 1..12 carries into the year, a day outside its month into the next or the one before.
sys_days DayOf(int nYear, int nMonth, int nDay) {
  const year_month first = year{nYear} / January + months{nMonth - 1};
  return sys_days{first / 1} + days{nDay - 1};
}

std::tm Split(double fDays) {
  const sys_seconds instant = kOrigin + seconds{std::llround(fDays * kSecondsPerDay)};
  const sys_days midnight = floor<days>(instant);
  const year_month_day date{midnight};
  const hh_mm_ss time{instant - midnight};
  std::tm parts{};
  parts.tm_year = int{date.year()} - 1900;
  parts.tm_mon = static_cast<int>(unsigned{date.month()}) - 1;
  parts.tm_mday = static_cast<int>(unsigned{date.day()});
  parts.tm_hour = static_cast<int>(time.hours().count());
  parts.tm_min = static_cast<int>(time.minutes().count());
  parts.tm_sec = static_cast<int>(time.seconds().count());
  parts.tm_wday = static_cast<int>(weekday{midnight}.c_encoding());
  parts.tm_yday = static_cast<int>((midnight - sys_days{date.year() / January / 1}).count());
  return parts;
}

}  // namespace

lkDateTime::lkDateTime(int nYear, int nMonth, int nDay, int nHour, int nMinute, int nSecond) {
  const sys_seconds instant = DayOf(nYear, nMonth, nDay) + hours{nHour} + minutes{nMinute} + seconds{nSecond};
  m_fDays = static_cast<double>((instant - kOrigin).count()) / kSecondsPerDay;
}

std::string lkDateTime::Format(const char* format) const {
  const std::tm parts = Split(m_fDays);
  std::array<char, 256> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

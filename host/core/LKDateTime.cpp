// SPDX-License-Identifier: Apache-2.0
#include "core/LKDateTime.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
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

struct Civil {
  explicit Civil(double fDays)
      : instant(kOrigin + seconds{std::llround(fDays * kSecondsPerDay)}),
        midnight(floor<days>(instant)),
        date(midnight),
        time(instant - midnight) {}
  sys_seconds instant;
  sys_days midnight;
  year_month_day date;
  hh_mm_ss<seconds> time;
};

std::tm ToTm(const Civil& civil) {
  std::tm parts{};
  parts.tm_year = int{civil.date.year()} - 1900;
  parts.tm_mon = static_cast<int>(unsigned{civil.date.month()}) - 1;
  parts.tm_mday = static_cast<int>(unsigned{civil.date.day()});
  parts.tm_hour = static_cast<int>(civil.time.hours().count());
  parts.tm_min = static_cast<int>(civil.time.minutes().count());
  parts.tm_sec = static_cast<int>(civil.time.seconds().count());
  parts.tm_wday = static_cast<int>(weekday{civil.midnight}.c_encoding());
  parts.tm_yday = static_cast<int>((civil.midnight - sys_days{civil.date.year() / January / 1}).count());
  return parts;
}

char* WriteTwoDigits(char* at, unsigned nValue) {
  at[0] = static_cast<char>('0' + nValue / 10);
  at[1] = static_cast<char>('0' + nValue % 10);
  return at + 2;
}

// Null when the specifier is none of those that are written here, or has other digits than usual.
char* WritePart(char* at, char cSpecifier, const Civil& civil) {
  const int nYear = int{civil.date.year()};
  switch (cSpecifier) {
    case 'Y':
      if (nYear < 1000 || nYear > 9999) return nullptr;
      return WriteTwoDigits(WriteTwoDigits(at, static_cast<unsigned>(nYear / 100)),
                            static_cast<unsigned>(nYear % 100));
    case 'm':
      return WriteTwoDigits(at, unsigned{civil.date.month()});
    case 'd':
      return WriteTwoDigits(at, unsigned{civil.date.day()});
    case 'H':
      return WriteTwoDigits(at, static_cast<unsigned>(civil.time.hours().count()));
    case 'M':
      return WriteTwoDigits(at, static_cast<unsigned>(civil.time.minutes().count()));
    case 'S':
      return WriteTwoDigits(at, static_cast<unsigned>(civil.time.seconds().count()));
    default:
      return nullptr;
  }
}

// The formats that rows are made with, without strftime, which looks the time zone up. False when there is
// more to the format.
bool WriteNumbers(std::string& text, const char* format, const Civil& civil) {
  text.resize(2 * std::strlen(format));  // a specifier of two characters gives at most four
  char* at = text.data();
  for (; *format != '\0'; ++format) {
    if (*format != '%')
      *at++ = *format;
    else if ((at = WritePart(at, *++format, civil)) == nullptr)
      return false;
  }
  text.resize(static_cast<size_t>(at - text.data()));
  return true;
}

}  // namespace

lkDateTime::lkDateTime(int nYear, int nMonth, int nDay, int nHour, int nMinute, int nSecond) {
  const sys_seconds instant = DayOf(nYear, nMonth, nDay) + hours{nHour} + minutes{nMinute} + seconds{nSecond};
  m_fDays = static_cast<double>((instant - kOrigin).count()) / kSecondsPerDay;
}

std::string lkDateTime::Format(const char* format) const {
  const Civil civil(m_fDays);
  std::string numbers;
  if (WriteNumbers(numbers, format, civil)) return numbers;
  const std::tm parts = ToTm(civil);
  std::array<char, 256> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

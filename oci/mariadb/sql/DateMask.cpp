// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DateMask.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "oci/mariadb/sql/DateReader.h"
#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

// The Julian day of 1970-01-01.
constexpr int kJulianOfEpoch = 2440588;

year_month_day FirstOfCurrentMonth() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return {year(local.tm_year + 1900), month(static_cast<unsigned>(local.tm_mon) + 1), day(1)};
}

year_month_day FromDayOfYear(int in_year, int day_of_year) {
  const year_month_day date(sys_days(year(in_year) / 1 / 1) + days(day_of_year - 1));
  if (date.year() != year(in_year)) throw OraError(1848);
  return date;
}

year_month_day DateOf(const DateFields& fields) {
  if (fields.julian >= 0) return sys_days(days(fields.julian - kJulianOfEpoch));
  const bool needs_current = fields.year < 0 || (fields.month < 0 && fields.day_of_year < 0);
  const auto current = needs_current ? FirstOfCurrentMonth() : year_month_day{};
  const int in_year = fields.year >= 0 ? fields.year : static_cast<int>(current.year());
  if (fields.day_of_year >= 0) return FromDayOfYear(in_year, fields.day_of_year);
  const auto in_month = fields.month >= 0 ? month(static_cast<unsigned>(fields.month)) : current.month();
  const year_month_day date(year(in_year), in_month,
                            day(fields.day >= 0 ? static_cast<unsigned>(fields.day) : 1));
  if (!date.ok()) throw OraError(1839);
  return date;
}

// The server has no years before 1.
void CheckYear(const year_month_day& date) {
  if (date.year() < year(1)) throw OraError(1841);
}

struct TimeOfDay {
  int hour, minute, second;
};

TimeOfDay TimeOf(const DateFields& fields) {
  if (fields.second_of_day >= 0) {
    const int seconds = fields.second_of_day;
    return {seconds / 3600, seconds / 60 % 60, seconds % 60};
  }
  int hour = std::max(fields.hour, 0);
  if (fields.meridian >= 0) hour = hour % 12 + 12 * fields.meridian;
  return {hour, std::max(fields.minute, 0), std::max(fields.second, 0)};
}

void CheckWeekday(const DateFields& fields, const year_month_day& date) {
  if (fields.weekday < 0) return;
  const std::chrono::weekday actual{sys_days(date)};
  if (static_cast<int>(actual.c_encoding()) != fields.weekday) throw OraError(1835);
}

// The server's letters for a part; empty: none.
std::string_view ServerLetters(const DateElement& element) {
  switch (element.part) {
    case DatePart::kYear:
      return element.width == 4 ? "%Y" : element.width == 2 ? "%y" : "";
    case DatePart::kRoundYear:
      return element.width == 4 ? "%Y" : "%y";
    case DatePart::kMonth:
      return "%m";
    case DatePart::kMonthName:
      return element.text.size() == 3 ? "%b" : "%M";
    case DatePart::kDay:
      return "%d";
    case DatePart::kDayOfYear:
      return "%j";
    case DatePart::kWeekdayName:
      return element.text.size() == 2 ? "%a" : "%W";
    case DatePart::kHour12:
      return "%h";
    case DatePart::kHour24:
      return "%H";
    case DatePart::kMinute:
      return "%i";
    case DatePart::kSecond:
      return "%s";
    case DatePart::kFraction:
      return "%f";
    case DatePart::kRadix:
      return ".";
    case DatePart::kMeridian:
      return element.text.size() == 2 ? "%p" : "";
    default:
      return "";
  }
}

// REQUIRES a number of at most so many digits.
void WriteDigits(int number, std::size_t digits, std::string& text, std::size_t place) {
  for (std::size_t at = place + digits; at-- > place; number /= 10)
    text[at] = static_cast<char>('0' + number % 10);
}

}  // namespace

DateMask::DateMask(std::string_view mask)
    : m_elements(ParseDateMask(mask)),
      m_has_fraction(std::ranges::find(m_elements, DatePart::kFraction, &DateElement::part) !=
                     m_elements.end()),
      m_is_plain(IsPlain(m_elements)) {}

DateTime DateMask::Read(std::string_view text) const {
  const std::optional<DateFields> plain = m_is_plain ? ReadPlain(text) : std::nullopt;
  const DateFields fields = plain ? *plain : DateReader(text).Read(m_elements);
  const year_month_day date = DateOf(fields);
  CheckYear(date);
  CheckWeekday(fields, date);
  const TimeOfDay time = TimeOf(fields);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          time.hour,
          time.minute,
          time.second,
          fields.microsecond};
}

std::string DateMask::ToCanonical(std::string_view text) const {
  const DateTime time = Read(text);
  std::string canonical = m_has_fraction ? "0000-00-00 00:00:00.000000" : "0000-00-00 00:00:00";
  WriteDigits(time.year, 4, canonical, 0);
  WriteDigits(time.month, 2, canonical, 5);
  WriteDigits(time.day, 2, canonical, 8);
  WriteDigits(time.hour, 2, canonical, 11);
  WriteDigits(time.minute, 2, canonical, 14);
  WriteDigits(time.second, 2, canonical, 17);
  if (m_has_fraction) WriteDigits(time.microsecond, 6, canonical, 20);
  return canonical;
}

std::string DateMask::ToServerFormat() const {
  std::string format;
  for (const DateElement& element : m_elements) {
    if (element.part == DatePart::kFill) continue;
    if (element.part == DatePart::kPunctuation) {
      format += element.text == "%" ? "%%" : element.text;
      continue;
    }
    const auto letters = ServerLetters(element);
    if (letters.empty()) {
      throw Unimplemented("the date format " + element.text +
                          " of an argument that is neither a literal nor a placeholder");
    }
    format += letters;
  }
  return format;
}

}  // namespace ocimaria::sql

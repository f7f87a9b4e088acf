// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Dates.h"

#include <charconv>
#include <cstdio>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

unsigned DaysIn(unsigned month, unsigned year) {
  constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

void Require(bool fine, int otherwise) {
  if (!fine) throw OraError(otherwise);
}

void Check(const MYSQL_TIME& time) {
  Require(time.year >= 1 && time.year <= 9999, 1841);
  Require(time.month >= 1 && time.month <= 12, 1843);
  Require(time.day >= 1 && time.day <= 31, 1847);
  Require(time.day <= DaysIn(time.month, time.year), 1839);
  Require(time.hour <= 23, 1850);
  Require(time.minute <= 59, 1851);
  Require(time.second <= 59, 1852);
}

// Reads fixed-width numbers with single separators between them.
class Reader {
 public:
  explicit Reader(std::string_view text) : m_rest(text) {}

  bool AtEnd() const { return m_rest.empty(); }
  void Separator(char expected) {
    Require(!m_rest.empty() && m_rest.front() == expected, 1861);
    m_rest.remove_prefix(1);
  }
  unsigned Digits(std::size_t width) {
    unsigned value = 0;
    Require(m_rest.size() >= width, 1861);
    const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + width, value);
    Require(error == std::errc{} && end == m_rest.data() + width, 1861);
    m_rest.remove_prefix(width);
    return value;
  }
  // One to six digits, as millionths.
  unsigned long Fraction() {
    const std::size_t width = m_rest.size();
    Require(width >= 1 && width <= 6, 1861);
    unsigned long value = Digits(width);
    for (std::size_t i = width; i < 6; ++i) value *= 10;
    return value;
  }

 private:
  std::string_view m_rest;
};

}  // namespace

MYSQL_TIME FromOracleDate(const ub1* bytes) {
  MYSQL_TIME time{};
  const int year = (bytes[0] - 100) * 100 + (bytes[1] - 100);
  Require(year >= 1, 1841);
  time.year = static_cast<unsigned>(year);
  time.month = bytes[2];
  time.day = bytes[3];
  time.hour = static_cast<unsigned>(bytes[4] - 1);  // a zero byte wraps round and is refused
  time.minute = static_cast<unsigned>(bytes[5] - 1);
  time.second = static_cast<unsigned>(bytes[6] - 1);
  time.time_type = MYSQL_TIMESTAMP_DATETIME;
  Check(time);
  return time;
}

void ToOracleDate(const MYSQL_TIME& time, ub1* bytes) {
  bytes[0] = static_cast<ub1>(time.year / 100 + 100);
  bytes[1] = static_cast<ub1>(time.year % 100 + 100);
  bytes[2] = static_cast<ub1>(time.month);
  bytes[3] = static_cast<ub1>(time.day);
  bytes[4] = static_cast<ub1>(time.hour + 1);
  bytes[5] = static_cast<ub1>(time.minute + 1);
  bytes[6] = static_cast<ub1>(time.second + 1);
}

MYSQL_TIME FromDateText(std::string_view text) {
  Reader reader(text);
  MYSQL_TIME time{};
  time.time_type = MYSQL_TIMESTAMP_DATETIME;
  time.year = reader.Digits(4);
  reader.Separator('-');
  time.month = reader.Digits(2);
  reader.Separator('-');
  time.day = reader.Digits(2);
  if (!reader.AtEnd()) {
    reader.Separator(' ');
    time.hour = reader.Digits(2);
    reader.Separator(':');
    time.minute = reader.Digits(2);
    reader.Separator(':');
    time.second = reader.Digits(2);
  }
  if (!reader.AtEnd()) {
    reader.Separator('.');
    time.second_part = reader.Fraction();
  }
  Check(time);
  return time;
}

MYSQL_TIME FromDateTime(const sql::DateTime& time) {
  MYSQL_TIME converted{};
  converted.time_type = MYSQL_TIMESTAMP_DATETIME;
  converted.year = static_cast<unsigned>(time.year);
  converted.month = static_cast<unsigned>(time.month);
  converted.day = static_cast<unsigned>(time.day);
  converted.hour = static_cast<unsigned>(time.hour);
  converted.minute = static_cast<unsigned>(time.minute);
  converted.second = static_cast<unsigned>(time.second);
  converted.second_part = static_cast<unsigned long>(time.microsecond);
  return converted;
}

std::string ToDateText(const MYSQL_TIME& time, unsigned fraction_digits) {
  char text[48];
  int length = std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", time.year, time.month,
                             time.day, time.hour, time.minute, time.second);
  if (fraction_digits > 0) {
    length += std::snprintf(text + length, sizeof text - length, ".%06lu", time.second_part);
    if (fraction_digits < 6) length -= static_cast<int>(6 - fraction_digits);
  }
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace ocimaria

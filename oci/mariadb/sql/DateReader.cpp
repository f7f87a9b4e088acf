// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DateReader.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

using Names12 = std::array<std::string_view, 12>;
constexpr Names12 kMonths{"JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
                          "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
constexpr Names12 kRoman{"I", "II", "III", "IV", "V", "VI", "VII", "VIII", "IX", "X", "XI", "XII"};
constexpr std::array<std::string_view, 7> kWeekdays{"SUNDAY",   "MONDAY", "TUESDAY", "WEDNESDAY",
                                                    "THURSDAY", "FRIDAY", "SATURDAY"};

// The index of the name that `word` is in full or by its first three letters; -1: none.
template <std::size_t N>
int FindName(const std::array<std::string_view, N>& names, std::string_view word) {
  const auto found = std::ranges::find_if(names, [&](std::string_view name) {
    return EqualsUpper(word, name) || EqualsUpper(word, name.substr(0, 3));
  });
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

int CurrentYear() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local.tm_year + 1900;
}

// Two digits of a year by Oracle's rounding: the century that is nearest to the current year's half.
int RoundYear(int two_digits) {
  const int current = CurrentYear();
  const int century = current / 100 * 100;
  const bool first_half = current % 100 < 50;
  if (first_half == (two_digits < 50)) return century + two_digits;
  return century + two_digits + (first_half ? -100 : 100);
}

bool IsNumber(DatePart part) {
  switch (part) {
    case DatePart::kYear:
    case DatePart::kRoundYear:
    case DatePart::kMonth:
    case DatePart::kDay:
    case DatePart::kDayOfYear:
    case DatePart::kJulian:
    case DatePart::kHour12:
    case DatePart::kHour24:
    case DatePart::kMinute:
    case DatePart::kSecond:
    case DatePart::kSecondOfDay:
    case DatePart::kFraction:
      return true;
    default:
      return false;
  }
}

// A text may end before these.
bool IsOptional(DatePart part) {
  switch (part) {
    case DatePart::kHour12:
    case DatePart::kHour24:
    case DatePart::kMinute:
    case DatePart::kSecond:
    case DatePart::kSecondOfDay:
    case DatePart::kFraction:
    case DatePart::kRadix:
    case DatePart::kMeridian:
    case DatePart::kZone:
    case DatePart::kPunctuation:
    case DatePart::kQuoted:
    case DatePart::kExact:
    case DatePart::kFill:
      return true;
    default:
      return false;
  }
}

// The number of `width` digits at a place; -1 when it is none or out of its range.
int DigitsAt(std::string_view text, std::size_t place, int width, int lowest, int highest) {
  int value = 0;
  for (const char c : text.substr(place, static_cast<std::size_t>(width))) {
    if (!IsDigit(c)) return -1;
    value = value * 10 + (c - '0');
  }
  return value >= lowest && value <= highest ? value : -1;
}

}  // namespace

bool IsPlain(const std::vector<DateElement>& elements) {
  constexpr std::array kParts{DatePart::kYear,   DatePart::kMonth,  DatePart::kDay,
                              DatePart::kHour24, DatePart::kMinute, DatePart::kSecond};
  if (elements.size() != 2 * kParts.size() - 1 || elements.front().width != 4) return false;
  for (std::size_t i = 0; i < elements.size(); ++i)
    if (elements[i].part != (i % 2 == 0 ? kParts[i / 2] : DatePart::kPunctuation)) return false;
  return true;
}

std::optional<DateFields> ReadPlain(std::string_view text) {
  if (text.size() != 19) return std::nullopt;
  for (const std::size_t mark : {4, 7, 10, 13, 16})
    if (IsLetter(text[mark]) || IsDigit(text[mark])) return std::nullopt;
  DateFields fields;
  fields.year = DigitsAt(text, 0, 4, 1, 9999);
  fields.month = DigitsAt(text, 5, 2, 1, 12);
  fields.day = DigitsAt(text, 8, 2, 1, 31);
  fields.hour = DigitsAt(text, 11, 2, 0, 23);
  fields.minute = DigitsAt(text, 14, 2, 0, 59);
  fields.second = DigitsAt(text, 17, 2, 0, 59);
  const bool fine =
      std::min({fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second}) >= 0;
  return fine ? std::optional(fields) : std::nullopt;
}

DateFields DateReader::Read(const std::vector<DateElement>& elements) {
  for (std::size_t i = 0; i < elements.size(); ++i) {
    m_skipped_blank = false;
    if (!m_exact) SkipBlanks();
    if (AtEnd()) {
      const auto rest = elements.begin() + static_cast<std::ptrdiff_t>(i);
      if (std::all_of(rest, elements.end(), [](const DateElement& e) { return IsOptional(e.part); })) break;
      throw OraError(1840);
    }
    ReadElement(elements[i], i + 1 < elements.size() && IsNumber(elements[i + 1].part));
  }
  SkipBlanks();
  if (!AtEnd()) throw OraError(1830);
  return m_fields;
}

void DateReader::ReadElement(const DateElement& element, bool next_is_number) {
  switch (element.part) {
    case DatePart::kYear:
    case DatePart::kRoundYear:
      m_fields.year = ReadYear(element, next_is_number);
      break;
    case DatePart::kMonth:
      m_fields.month = IsLetter(m_text.front()) ? ReadMonthName() : ReadRange(2, 1, 12, 1843);
      break;
    case DatePart::kMonthName:
      m_fields.month = ReadMonthName();
      break;
    case DatePart::kMonthRoman:
      m_fields.month = ReadMonthRoman();
      break;
    case DatePart::kDay:
      m_fields.day = ReadRange(2, 1, 31, 1847);
      break;
    case DatePart::kDayOfYear:
      m_fields.day_of_year = ReadRange(3, 1, 366, 1848);
      break;
    case DatePart::kWeekdayName:
      m_fields.weekday = ReadWeekday();
      break;
    case DatePart::kJulian:
      m_fields.julian = ReadRange(7, 1, 5373484, 1854);
      break;
    default:
      ReadTimeOrMark(element);
  }
}

void DateReader::ReadTimeOrMark(const DateElement& element) {
  switch (element.part) {
    case DatePart::kHour12:
      m_fields.hour = ReadRange(2, 1, 12, 1849);
      break;
    case DatePart::kHour24:
      m_fields.hour = ReadRange(2, 0, 23, 1850);
      break;
    case DatePart::kMinute:
      m_fields.minute = ReadRange(2, 0, 59, 1851);
      break;
    case DatePart::kSecond:
      m_fields.second = ReadRange(2, 0, 59, 1852);
      break;
    case DatePart::kSecondOfDay:
      m_fields.second_of_day = ReadRange(5, 0, 86399, 1853);
      break;
    case DatePart::kFraction:
      m_fields.microsecond = ReadFraction(element.width);
      break;
    case DatePart::kMeridian:
      m_fields.meridian = ReadMeridian();
      break;
    case DatePart::kZone:
      SkipZone();
      break;
    case DatePart::kQuoted:
      ReadQuoted(element.text);
      break;
    case DatePart::kExact:
      m_exact = true;
      break;
    case DatePart::kFill:
      break;
    default:
      ReadPunctuation(element.text);
  }
}

int DateReader::ReadNumber(int width) {
  if (!IsDigit(m_text.front())) throw OraError(1858);
  int value = 0;
  int length = 0;
  for (; length < width && !AtEnd() && IsDigit(m_text.front()); ++length) {
    value = value * 10 + (m_text.front() - '0');
    m_text.remove_prefix(1);
  }
  m_full_width = length == width;
  if (m_exact && !m_full_width) throw OraError(1862);
  return value;
}

int DateReader::ReadRange(int width, int lowest, int highest, int error) {
  const int value = ReadNumber(width);
  if (value < lowest || value > highest) throw OraError(error);
  return value;
}

// A mask of two digits takes four when the text has them and no number follows directly.
int DateReader::ReadYear(const DateElement& element, bool next_is_number) {
  const std::size_t before = m_text.size();
  const int wanted = element.width == 2 && !next_is_number && !m_exact ? 4 : element.width;
  const int value = ReadNumber(wanted);
  const std::size_t digits = before - m_text.size();
  m_full_width = m_full_width || static_cast<int>(digits) >= element.width;
  if (element.part == DatePart::kRoundYear && digits <= 2) return RoundYear(value);
  if (element.width == 4 || digits == 4) {
    if (value == 0) throw OraError(1841);
    return value;
  }
  int rest = 10;
  for (int i = 1; i < element.width; ++i) rest *= 10;
  return CurrentYear() / rest * rest + value % rest;
}

int DateReader::ReadMonthName() {
  // The longest name that the text begins with; letters of a following element may touch it.
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    for (const auto name : {kMonths[i], kMonths[i].substr(0, 3)}) {
      if (!EqualsUpper(m_text.substr(0, name.size()), name)) continue;
      m_text.remove_prefix(name.size());
      return static_cast<int>(i) + 1;
    }
  }
  throw OraError(1843);
}

int DateReader::ReadMonthRoman() {
  const int month = FindName(kRoman, ReadLetters());
  if (month < 0) throw OraError(1843);
  return month + 1;
}

int DateReader::ReadWeekday() {
  const int weekday = FindName(kWeekdays, ReadLetters());
  if (weekday < 0) throw OraError(1846);
  return weekday;
}

int DateReader::ReadMeridian() {
  for (const std::string_view spelling : {"AM", "A.M.", "PM", "P.M."}) {
    if (!EqualsUpper(m_text.substr(0, spelling.size()), spelling)) continue;
    m_text.remove_prefix(spelling.size());
    return spelling.front() == 'P' ? 1 : 0;
  }
  throw OraError(1855);
}

int DateReader::ReadFraction(int width) {
  if (!IsDigit(m_text.front())) throw OraError(1858);
  int microsecond = 0;
  for (int i = 0; i < std::max(width, 6); ++i) {
    const bool given = i < width && !AtEnd() && IsDigit(m_text.front());
    if (i < 6) microsecond = microsecond * 10 + (given ? m_text.front() - '0' : 0);
    if (given) m_text.remove_prefix(1);
  }
  return microsecond;
}

void DateReader::ReadPunctuation(std::string_view mark) {
  const char next = m_text.front();
  if (m_exact && next != mark.front()) throw OraError(1861);
  if (!IsLetter(next) && !IsDigit(next)) {
    m_text.remove_prefix(1);
  } else if (!m_skipped_blank && !m_full_width) {
    throw OraError(1861);
  }
}

void DateReader::ReadQuoted(std::string_view quoted) {
  const auto text = quoted.substr(1, quoted.size() - 2);
  if (!EqualsUpper(m_text.substr(0, text.size()), UpperCase(text))) throw OraError(1861);
  m_text.remove_prefix(text.size());
}

void DateReader::SkipZone() {
  const auto is_zone = [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '/' || c == '_';
  };
  while (!AtEnd() && is_zone(m_text.front())) m_text.remove_prefix(1);
}

void DateReader::SkipBlanks() {
  m_skipped_blank = !AtEnd() && IsSpace(m_text.front());
  while (!AtEnd() && IsSpace(m_text.front())) m_text.remove_prefix(1);
}

std::string_view DateReader::ReadLetters() {
  const auto end = std::ranges::find_if_not(m_text, IsLetter);
  const auto letters = m_text.substr(0, static_cast<std::size_t>(end - m_text.begin()));
  m_text.remove_prefix(letters.size());
  return letters;
}

}  // namespace ocimaria::sql

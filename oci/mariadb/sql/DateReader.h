// SPDX-License-Identifier: Apache-2.0
// Reads one date text by the elements of a mask. An object is one reading.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/DateElement.h"

namespace ocimaria::sql {

// What a text gave; below zero: not given.
struct DateFields {
  int year = -1, month = -1, day = -1, day_of_year = -1, weekday = -1;  // weekday: 0 is Sunday
  int hour = -1, minute = -1, second = -1, second_of_day = -1, microsecond = 0;
  int julian = -1;
  int meridian = -1;  // 0 before noon, 1 after
};

// A text of exactly the form "2001-02-03 04:05:06", with any marks, for a mask of these six parts in this
// order: what DateReader reads from it, only sooner. Nothing for any other text, or one out of range.
std::optional<DateFields> ReadPlain(std::string_view text);
bool IsPlain(const std::vector<DateElement>& elements);  // whether a mask is such a one

class DateReader {
 public:
  explicit DateReader(std::string_view text) : m_text(text) {}

  // Throws OraError when the text does not fit the mask.
  DateFields Read(const std::vector<DateElement>& elements);

 private:
  void ReadElement(const DateElement& element, bool next_is_number);
  void ReadTimeOrMark(const DateElement& element);
  int ReadNumber(int width);
  int ReadRange(int width, int lowest, int highest, int error);
  int ReadYear(const DateElement& element, bool next_is_number);
  int ReadMonthName();
  int ReadMonthRoman();
  int ReadWeekday();
  int ReadMeridian();
  int ReadFraction(int width);
  void ReadPunctuation(std::string_view mark);
  void ReadQuoted(std::string_view quoted);
  void SkipZone();
  void SkipBlanks();
  std::string_view ReadLetters();
  bool AtEnd() const { return m_text.empty(); }

  std::string_view m_text;  // what is left to read
  DateFields m_fields;
  bool m_full_width = true;      // the number before was as long as its element allows
  bool m_skipped_blank = false;  // blanks stood before this element
  bool m_exact = false;
};

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// lkDateTime is an instant of the proleptic Gregorian calendar without time zone, held as a double: days
// since 1899-12-30 00:00:00, resolution one second. A value type.
#pragma once

#include <string>

class lkDateTime {
 public:
  lkDateTime() = default;  // 1899-12-30 00:00:00
  lkDateTime(const lkDateTime&) = default;
  lkDateTime& operator=(const lkDateTime&) = default;
  lkDateTime(int nYear, int nMonth, int nDay, int nHour, int nMinute, int nSecond);
  explicit lkDateTime(double fDays) : m_fDays(fDays) {}

  operator double() const { return m_fDays; }
  // strftime's %Y %m %d %H %M %S (other specifiers too); narrow text.
  std::string Format(const char* format) const;

 private:
  double m_fDays = 0.0;
};

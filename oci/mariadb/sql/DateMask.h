// SPDX-License-Identifier: Apache-2.0
// An Oracle date mask, compiled once, that reads a date text, or turns it into the one form that the server
// reads in every setting: 'YYYY-MM-DD HH:MM:SS', with '.ffffff' behind it when the mask holds a fraction
// (digits beyond the sixth are cut off). Immutable after construction: any thread.
//
// Where the mask has a punctuation mark the text may have any other one, or none behind a number of full
// width; blanks before an element are skipped. A text may end where only parts of the day are left. What it
// does not give is the current year, the current month, day 1, midnight.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/DateElement.h"

namespace ocimaria::sql {

// An instant that exists: year 1 to 9999.
struct DateTime {
  int year, month, day, hour, minute, second, microsecond;
};

class DateMask {
 public:
  // Throws OraError, as ParseDateMask.
  explicit DateMask(std::string_view mask);

  // Throws OraError: ORA-01861, ORA-01843, ORA-01847, ORA-01839, ORA-01830, ORA-01858, ORA-01840 and the
  // other numbers of a text that does not fit.
  DateTime Read(std::string_view text) const;
  std::string ToCanonical(std::string_view text) const;

  bool HasFraction() const { return m_has_fraction; }

  // The same mask for the server's STR_TO_DATE. Throws ORA-03001 for an element that has no counterpart
  // there.
  std::string ToServerFormat() const;

 private:
  std::vector<DateElement> m_elements;
  bool m_has_fraction = false;
  bool m_is_plain = false;
};

}  // namespace ocimaria::sql

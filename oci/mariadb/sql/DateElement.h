// SPDX-License-Identifier: Apache-2.0
// The elements of an Oracle date mask, in the order written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ocimaria::sql {

enum class DatePart {
  kYear,         // YYYY, YYY, YY, Y, SYYYY: what is missing of four digits is taken from the current year
  kRoundYear,    // RRRR, RR: two digits below 50 are 20xx, others 19xx, as long as this is 20xx itself
  kMonth,        // MM; a name is taken too
  kMonthName,    // MON, MONTH
  kMonthRoman,   // RM
  kDay,          // DD
  kDayOfYear,    // DDD
  kWeekdayName,  // DY, DAY
  kJulian,       // J
  kHour12,       // HH, HH12
  kHour24,       // HH24
  kMinute,       // MI
  kSecond,       // SS
  kSecondOfDay,  // SSSSS
  kFraction,     // FF, FF1..FF9
  kRadix,        // X
  kMeridian,     // AM, PM, A.M., P.M.
  kZone,         // TZH, TZM, TZR, TZD: read, not kept
  kExact,        // FX: from here on the text must match to the character
  kFill,         // FM: no meaning when reading
  kPunctuation,  // one mark or blank
  kQuoted,       // "text"
};

struct DateElement {
  DatePart part;
  int width = 0;     // digits at most
  std::string text;  // as written in the mask
};

// Throws OraError: ORA-01821 for what is no date format, ORA-01820 for what can only be written, ORA-01810,
// ORA-01812, ORA-01813, ORA-01816 for a part that stands twice, ORA-01818 for HH24 beside AM or PM.
std::vector<DateElement> ParseDateMask(std::string_view mask);

}  // namespace ocimaria::sql

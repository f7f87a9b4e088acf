// SPDX-License-Identifier: Apache-2.0
// One value of a result on its way into a caller's buffer. Dates become text as 'YYYY-MM-DD HH24:MI:SS' (with
// the fraction that their column has), numbers as Oracle writes them. Pure functions, any thread.
#pragma once

#include <mysql.h>

#include <cstdint>
#include <string_view>
#include <variant>

#include "oci/mariadb/Define.h"

namespace ocimaria {

struct DateValue {
  MYSQL_TIME time;
  unsigned fraction_digits;
};

struct DecimalValue {
  std::string_view text;  // exact number as the server writes it
};

// monostate is NULL; a string_view is text or bytes as they stand.
using FetchedValue = std::variant<std::monostate, std::int64_t, std::uint64_t, double, DecimalValue,
                                  DateValue, std::string_view>;

// Whether an external type and buffer size can take values.
bool CanDefine(ub2 type, std::size_t size);

// Writes the value, its indicator, length and code. Gives the Oracle number that the caller still has to be
// told because no indicator or code took it: 0, 1405 (NULL) or 1406 (cut). Throws OraError for what cannot be
// converted.
int WriteValue(const OutputElement& to, const FetchedValue& value);

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
// Dates in the three forms they take here: the client library's MYSQL_TIME, the seven bytes of SQLT_DAT and
// text 'YYYY-MM-DD HH24:MI:SS[.ffffff]'. Pure functions, any thread.
#pragma once

#include <mysql.h>
#include <oci.h>

#include <string>
#include <string_view>

#include "oci/mariadb/sql/DateMask.h"

namespace ocimaria {

constexpr std::size_t kOracleDateBytes = 7;

// Throws OraError when the bytes are no date that the server can hold: 1841 (year before 1 or after 9999),
// 1843, 1839, 1847, 1850, 1851, 1852.
MYSQL_TIME FromOracleDate(const ub1* bytes);

// A fraction of a second is cut off, as when Oracle makes a DATE of a TIMESTAMP.
void ToOracleDate(const MYSQL_TIME& time, ub1* bytes);

// The text 'YYYY-MM-DD', with ' HH:MM:SS' and '.ffffff' behind it or not. Throws OraError 1861 for anything
// else and the numbers above for what is no date.
MYSQL_TIME FromDateText(std::string_view text);

MYSQL_TIME FromDateTime(const sql::DateTime& time);

// A DATE or TIMESTAMP as text: with as many digits of the fraction as its column has.
std::string ToDateText(const MYSQL_TIME& time, unsigned fraction_digits);

}  // namespace ocimaria

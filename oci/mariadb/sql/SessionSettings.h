// SPDX-License-Identifier: Apache-2.0
// What a session must be set to so that rewritten text means what its Oracle original meant.
#pragma once

namespace ocimaria::sql {

// What stands behind SET; more settings may follow it, a comma between. Texts compare by their bytes,
// trailing blanks included. The mode is ORACLE for the dialect; strict, so that a value that does not fit is
// an error and not cut, nor a month or day 0 kept; '' is NULL; CHAR columns come blank-padded; a backslash in
// a text is a backslash. A list of IN (SELECT … ROWNUM <= n) is made once: as an EXISTS it would be counted
// anew for every row, and the time of a DELETE with it would grow with the square of the table. Notes are not
// written: nobody here reads them, and a load makes one for every number that its column rounds.
inline constexpr char kSessionSettings[] =
    "NAMES utf8mb4 COLLATE utf8mb4_nopad_bin, sql_mode='ORACLE,STRICT_ALL_TABLES,ERROR_FOR_DIVISION_BY_ZERO,"
    "NO_ZERO_IN_DATE,NO_ZERO_DATE,EMPTY_STRING_IS_NULL,PAD_CHAR_TO_FULL_LENGTH,NO_BACKSLASH_ESCAPES',"
    "optimizer_switch='in_to_exists=off', sql_notes=0";

}  // namespace ocimaria::sql

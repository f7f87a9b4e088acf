// SPDX-License-Identifier: Apache-2.0
// Oracle's own number format: an exponent byte and up to twenty digits of base 100; negative numbers are
// complemented and end in 102. Pure functions over decimal text, any thread.
#pragma once

#include <oci.h>

#include <string>
#include <string_view>

namespace ocimaria {

constexpr std::size_t kOracleNumberBytes = 21;

// Decimal text of the number. Throws OraError 1722 when the bytes are none.
std::string OracleNumberToText(const ub1* bytes, std::size_t length);

// The bytes of a decimal text ("-12.5", "1.5E20"), at most 21. Throws OraError 1722, or 1426 when it is too
// large.
std::string TextToOracleNumber(std::string_view text);

// A decimal text as Oracle writes a NUMBER: no blanks at the ends, no zeros that say nothing, none in front
// of the point ("00.50" is ".5"); beyond 40 places with an exponent ("1.5E+60"). Throws OraError 1722.
std::string NumberText(std::string_view text);

}  // namespace ocimaria

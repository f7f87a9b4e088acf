// SPDX-License-Identifier: Apache-2.0
// What a message of the server says: the names and values in its quotation marks.
#pragma once

#include <string>
#include <string_view>

namespace ocimaria::sql {

// The text in the n-th pair of quotation marks (', " or `), from 0; empty when there is none.
std::string_view Quoted(std::string_view message, int n);

// The text in the last pair of single quotes, which is safe from quotes in a value before it.
std::string_view LastQuoted(std::string_view message);

// The text between two others; empty when one of them is missing.
std::string_view Between(std::string_view message, std::string_view left, std::string_view right);

// What follows the last point of a name: the column of `a`.`b`.`c` or a.b.c, without quotation marks.
std::string_view LastName(std::string_view name);

// "A"."B" of a.b, in upper case.
std::string QuotedName(std::string_view dotted);

// The line that a syntax error names, as text; "1" when it names none.
std::string_view LineOf(std::string_view message);

}  // namespace ocimaria::sql

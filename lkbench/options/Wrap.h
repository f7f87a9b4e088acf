// SPDX-License-Identifier: Apache-2.0
// Words in lines. A pure function.
#pragma once

#include <string>

namespace lkbench {

inline constexpr size_t kTextWidth = 100;  // of help and of comments in job files

// The words of a text in lines of at most kTextWidth columns, each but the first behind `indent`, for which
// the first line leaves room. Ends with a line end.
std::string Wrapped(const std::string& text, const std::string& indent);

}  // namespace lkbench

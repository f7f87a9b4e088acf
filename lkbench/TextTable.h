// SPDX-License-Identifier: Apache-2.0
// Rows of cells as text in columns, two blanks apart. A pure function.
#pragma once

#include <string>
#include <vector>

namespace lkbench {

using TextRow = std::vector<std::string>;

// The first `left` columns are left-aligned, the others right-aligned. Lines end without blanks; the last one
// has no line end. Widths count characters of UTF-8, not bytes.
std::string Aligned(const std::vector<TextRow>& rows, size_t left = 1);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The Oracle error numbers that this library reports, each with its classic text. A text holds one "{}" for
// each argument that the report fills in. Constant data: any thread.
#pragma once

#include <span>
#include <string_view>

namespace ocimaria {

struct ErrorEntry {
  int code;
  std::string_view text;
};

// The entry of `code`, or null when this library has no text for it.
const ErrorEntry* FindError(int code);

// All entries, by rising number.
std::span<const ErrorEntry> AllErrors();

}  // namespace ocimaria

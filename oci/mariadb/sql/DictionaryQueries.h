// SPDX-License-Identifier: Apache-2.0
// The queries behind the dictionary views.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ocimaria::sql {

// The query behind a view of this upper-case name; none when it is no dictionary view.
std::optional<std::string> DictionaryQuery(std::string_view view);

}  // namespace ocimaria::sql

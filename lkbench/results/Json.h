// SPDX-License-Identifier: Apache-2.0
// JSON with its keys in the order in which they were written.
#pragma once

#include <nlohmann/json.hpp>

namespace lkbench {

using Json = nlohmann::ordered_json;

}  // namespace lkbench

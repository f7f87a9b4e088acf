// SPDX-License-Identifier: Apache-2.0
// docs/run.schema.json as it was when lkbench was built.
#pragma once

#include <string_view>

namespace lkbench {

std::string_view RunSchema();

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The files that a page is made of, as they were when lkbench was built.
#pragma once

#include <string_view>

namespace lkbench {

std::string_view PageTemplate();
std::string_view PageStyle();
std::string_view PageCharts();  // the chart library
std::string_view PageScript();  // ours, one file after the other

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// Values as TOML that reads back as the same values. Pure functions.
#pragma once

#include <chrono>
#include <string>

namespace lkbench {

std::string TomlText(const std::string& text);                // quoted
std::string DurationText(std::chrono::nanoseconds duration);  // 90s, 1500ms: what ParseDuration reads back

}  // namespace lkbench

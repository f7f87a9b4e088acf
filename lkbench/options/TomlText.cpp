// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/TomlText.h"

#include "lkbench/Text.h"

namespace lkbench {

std::string TomlText(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string DurationText(std::chrono::nanoseconds duration) {
  constexpr std::chrono::seconds kSecond(1);
  constexpr std::chrono::milliseconds kMillisecond(1);
  if (duration % kSecond == duration.zero()) return std::to_string(duration / kSecond) + 's';
  if (duration % kMillisecond == duration.zero()) return std::to_string(duration / kMillisecond) + "ms";
  return Short(static_cast<double>(duration.count()) / 1e6) + "ms";
}

}  // namespace lkbench

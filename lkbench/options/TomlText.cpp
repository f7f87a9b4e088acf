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
  using namespace std::chrono;
  if (duration % 1s == 0ns) return std::to_string(duration / 1s) + 's';
  if (duration % 1ms == 0ns) return std::to_string(duration / 1ms) + "ms";
  return Short(static_cast<double>(duration.count()) / 1e6) + "ms";
}

}  // namespace lkbench

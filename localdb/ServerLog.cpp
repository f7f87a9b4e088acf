// SPDX-License-Identifier: Apache-2.0
#include "localdb/ServerLog.h"

#include <deque>
#include <fstream>

namespace localdb {

namespace {

constexpr std::size_t kLines = 3;

bool IsError(const std::string& line) {
  return line.find("[ERROR]") != std::string::npos || line.starts_with("ERROR:");
}

}  // namespace

std::string Explanation(const std::filesystem::path& log) {
  std::deque<std::string> errors;
  std::deque<std::string> lines;
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) continue;
    lines.push_back(line);
    if (lines.size() > kLines) lines.pop_front();
    if (errors.size() < kLines && IsError(line)) errors.push_back(line);
  }
  std::string words;
  for (const std::string& line : errors.empty() ? lines : errors)
    words += (words.empty() ? "" : " | ") + line;
  return words.empty() ? "(empty)" : words;
}

}  // namespace localdb

// SPDX-License-Identifier: Apache-2.0
#include "localdb/ServerLog.h"

#include <deque>
#include <fstream>

namespace localdb {

namespace {

constexpr std::size_t kLines = 3;

void Keep(std::deque<std::string>& last, const std::string& line) {
  last.push_back(line);
  if (last.size() > kLines) last.pop_front();
}

}  // namespace

std::string LastWords(const std::filesystem::path& log) {
  std::deque<std::string> errors;
  std::deque<std::string> lines;
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) continue;
    Keep(lines, line);
    if (line.find("[ERROR]") != std::string::npos || line.starts_with("ERROR:")) Keep(errors, line);
  }
  std::string words;
  for (const std::string& line : errors.empty() ? lines : errors)
    words += (words.empty() ? "" : " | ") + line;
  return words.empty() ? "(empty)" : words;
}

}  // namespace localdb

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Console.h"

#include <iostream>

namespace lkbench {

void Console::Progress(const std::string& line) {
  if (m_level != LogLevel::kWarning) Result(line);
}

void Console::Result(const std::string& text) {
  const std::lock_guard lock(m_mutex);
  std::cout << text << std::endl;
}

void Console::Problem(const std::string& line) {
  const std::lock_guard lock(m_mutex);
  std::cerr << "lkbench: " << line << std::endl;
}

}  // namespace lkbench

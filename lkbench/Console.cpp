// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Console.h"

#include <chrono>
#include <ctime>
#include <iostream>

namespace lkbench {

void Console::Progress(const std::string& line) {
  if (m_level != LogLevel::kWarning) Result(line);
}

void Console::Result(const std::string& text) {
  const std::lock_guard lock(m_mutex);
  std::cout << text << std::endl;
  Copy(text);
}

void Console::Problem(const std::string& line) {
  const std::lock_guard lock(m_mutex);
  std::cerr << "lkbench: " << line << std::endl;
  Copy("lkbench: " + line);
}

void Console::CopyTo(std::ostream* log) {
  const std::lock_guard lock(m_mutex);
  m_log = log;
}

void Console::Copy(const std::string& text) {
  if (m_log == nullptr) return;
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
  gmtime_r(&now, &parts);
  char time[16];
  *m_log << std::string(time, std::strftime(time, sizeof time, "%H:%M:%SZ  ", &parts)) << text << std::endl;
}

}  // namespace lkbench

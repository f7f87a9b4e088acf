// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Console.h"

#include <chrono>
#include <ctime>
#include <ostream>

#include "lkbench/display/StreamObjects.h"
#include "lkbench/display/Width.h"

namespace lkbench {

Console::Console(int out, int err) : m_screen(out, err) {}

Console::~Console() { EraseStatus(); }

void Console::Object(const nlohmann::ordered_json& object) {
  if (m_format != OutputFormat::kJson) return;
  const std::string line = LineOf(object);
  const std::lock_guard lock(m_mutex);
  m_screen.Print(line);
}

void Console::Progress(const std::string& line) {
  if (m_level != LogLevel::kWarning) Statement(line);
}

void Console::Progress(const std::string& line, const FittedLine& fitted) {
  if (m_level == LogLevel::kWarning) return;
  Print(m_screen.Redraws() ? TextOf(fitted(Columns()), m_screen.Paints()) : line, line);
}

void Console::Result(const std::string& text, const std::string& bad) {
  std::string shown = text;
  const std::string painted = Painted({bad, Tone::kBad});
  if (m_screen.Paints() && !bad.empty())
    for (size_t at = shown.find(bad); at != std::string::npos; at = shown.find(bad, at + painted.size()))
      shown.replace(at, bad.size(), painted);
  Print(shown, text);
}

void Console::Statement(const std::string& text) { Print(Folded(text, Columns()), text); }

void Console::Problem(const std::string& line) {
  const std::string text = "lkbench: " + line;
  Object(ProblemObject(line));
  const std::lock_guard lock(m_mutex);
  m_screen.PrintError(Folded(text, m_screen.ErrorColumns()));
  Copy(text);
}

void Console::Status(const std::string& line, const FittedLine& status) {
  if (m_level == LogLevel::kWarning) return;
  if (!m_screen.Redraws()) return Print(line, line);
  const std::lock_guard lock(m_mutex);
  if (m_format == OutputFormat::kText) m_screen.ShowStatus(status);
  Copy(line);
}

void Console::Status(const FittedLine& status) {
  if (m_level == LogLevel::kWarning || m_format == OutputFormat::kJson) return;
  const std::lock_guard lock(m_mutex);
  m_screen.ShowStatus(status);
}

void Console::EraseStatus() {
  const std::lock_guard lock(m_mutex);
  m_screen.EraseStatus();
}

void Console::EraseStatusAtOnce() {
  const std::unique_lock lock(m_mutex, std::chrono::milliseconds(100));
  if (lock.owns_lock()) m_screen.EraseStatus();
}

void Console::CopyTo(std::ostream* log) {
  const std::lock_guard lock(m_mutex);
  m_log = log;
}

void Console::Print(const std::string& text, const std::string& copied) {
  const std::lock_guard lock(m_mutex);
  if (m_format == OutputFormat::kText) m_screen.Print(text);
  Copy(copied);
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

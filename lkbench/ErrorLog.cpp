// SPDX-License-Identifier: Apache-2.0
#include "lkbench/ErrorLog.h"

#include <algorithm>
#include <cstdlib>

#include "lkbench/Text.h"
#include "lkbench/workload/ErrorClass.h"

namespace lkbench {
namespace {

constexpr const char* kLossNumber = "3113";

const char* LevelName(eErrorLevel level) { return level == WARNING_LEVEL ? "warning: " : "error: "; }

}  // namespace

void ErrorLog::Report(eErrorLevel level, const std::string& number, const std::string& text) {
  if (level == INFO_LEVEL)
    m_console.Progress(text);
  else if (!Count({level, number, text, 1}))
    m_console.Problem(LevelName(level) + text);
}

void ErrorLog::ReportLoss(const std::string& text) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_loss.empty()) m_loss = text;
  }
  Report(ERROR_LEVEL, kLossNumber, m_loss);
}

bool ErrorLog::Count(const ProblemLine& line) {
  const std::lock_guard lock(m_mutex);
  ++m_problems;
  m_last = line.text;
  const auto known = std::ranges::find_if(m_lines, [&](const ProblemLine& each) {
    return each.level == line.level && each.number == line.number && each.text == line.text;
  });
  const bool is_full = known == m_lines.end() && m_lines.size() == kMostLines;
  if (is_full || known != m_lines.end()) {
    ++(is_full ? m_lines.back() : *known).count;
    return true;
  }
  const bool is_last = m_lines.size() == kMostLines - 1;
  m_lines.push_back(is_last ? ProblemLine{line.level, "0", "other problems", 1} : line);
  return false;
}

std::vector<ProblemLine> ErrorLog::Lines() const {
  const std::lock_guard lock(m_mutex);
  return m_lines;
}

std::uint64_t ErrorLog::Problems() const {
  const std::lock_guard lock(m_mutex);
  return m_problems;
}

std::string ErrorLog::Last() const {
  const std::lock_guard lock(m_mutex);
  return m_last;
}

bool IsSessionLoss(long code) { return ClassOf(code, {}) == ErrorClass::kSessionLost; }

std::string DatabaseText(const std::string& text) {
  const size_t begin = text.find("ORA-");
  return begin == std::string::npos ? text : text.substr(begin);
}

int UserErrors::HandleError(CError* error) {
  const std::string text = OneLine(error->m_szErrorMessage.ToChar());
  const std::string number = error->m_szErrorNumber.ToChar();
  const long code = std::strtol(number.c_str(), nullptr, 10);
  if (error->m_eErrorLevel == ERROR_LEVEL && m_caught == nullptr) Note(code, text);
  if (error->m_eErrorLevel == INFO_LEVEL)
    m_log.Report(INFO_LEVEL, number, text);
  else if (m_caught != nullptr)
    m_caught->m_text += (m_caught->m_text.empty() ? "" : "; ") + text;
  else if (IsSessionLoss(code))
    NoteLoss(text);
  else if (!m_lost)
    m_log.Report(error->m_eErrorLevel, number, text);
  return CErrorHandler::HandleError(error);
}

void UserErrors::Note(long code, const std::string& text) {
  const bool is_first = m_first.text.empty();
  if (is_first || (m_first.code == 0 && code > 0)) m_first = {std::max(code, 0L), text};
}

void UserErrors::Forget() {
  if (!m_first.text.empty()) m_first = {};
}

void UserErrors::NoteLoss(const std::string& text) {
  if (!m_lost) m_log.ReportLoss("the session with " + m_target + " is lost: " + DatabaseText(text));
  m_lost = true;
}

}  // namespace lkbench

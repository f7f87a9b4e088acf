// SPDX-License-Identifier: Apache-2.0
#include "lkbench/ErrorLog.h"

#include <algorithm>

#include "lkbench/Text.h"

namespace lkbench {
namespace {

const char* LevelName(eErrorLevel level) { return level == WARNING_LEVEL ? "warning: " : "error: "; }

}  // namespace

void ErrorLog::Report(eErrorLevel level, const std::string& number, const std::string& text) {
  if (level == INFO_LEVEL) {
    m_console.Progress(text);
    return;
  }
  {
    const std::lock_guard lock(m_mutex);
    ++m_problems;
    m_last = text;
    const auto known = std::ranges::find_if(m_lines, [&](const ProblemLine& line) {
      return line.level == level && line.number == number && line.text == text;
    });
    const bool is_full = known == m_lines.end() && m_lines.size() == kMostLines;
    if (is_full || known != m_lines.end()) {
      ++(is_full ? m_lines.back() : *known).count;
      return;
    }
    const bool is_last = m_lines.size() == kMostLines - 1;
    m_lines.push_back(is_last ? ProblemLine{level, "0", "other problems", 1}
                              : ProblemLine{level, number, text, 1});
  }
  m_console.Problem(LevelName(level) + text);
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

int UserErrors::HandleError(CError* error) {
  const std::string text = OneLine(error->m_szErrorMessage.ToChar());
  if (m_caught != nullptr && error->m_eErrorLevel != INFO_LEVEL)
    m_caught->m_text += (m_caught->m_text.empty() ? "" : "; ") + text;
  else
    m_log.Report(error->m_eErrorLevel, error->m_szErrorNumber.ToChar(), text);
  return CErrorHandler::HandleError(error);
}

}  // namespace lkbench

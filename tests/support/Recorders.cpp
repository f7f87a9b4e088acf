// SPDX-License-Identifier: Apache-2.0
#include "Recorders.h"

#include <wx/debug.h>

#include "Journal.h"

namespace scripted {

namespace {

struct AssertRecord {
  std::string text;
  std::string condition;
};
std::mutex g_mutex;
std::vector<AssertRecord> g_asserts;

void RecordAssert(const wxString& file, int line, const wxString& function, const wxString& condition,
                  const wxString&) {
  const std::lock_guard lock(g_mutex);
  const std::string cond = condition.utf8_string();
  const std::string text =
      file.utf8_string() + ":" + std::to_string(line) + " " + function.utf8_string() + ": " + cond;
  g_asserts.push_back({text, cond});
  Journal::Note("assert " + text);
}

}  // namespace

const char* LevelName(eErrorLevel level) {
  switch (level) {
    case INFO_LEVEL:
      return "INFO";
    case WARNING_LEVEL:
      return "WARNING";
    case ERROR_LEVEL:
      return "ERROR";
    case CRITICAL_LEVEL:
      return "CRITICAL";
    default:
      return "UNKNOWN";
  }
}

int RecordingHandler::HandleError(CError* pError) {
  {
    const std::lock_guard lock(m_mutex);
    m_errors.push_back(*pError);
  }
  CErrorHandler::HandleError(pError);
  return 1;
}

std::vector<std::string> RecordingHandler::Reports() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::string> texts;
  for (const CError& error : m_errors)
    texts.push_back(std::string(LevelName(error.m_eErrorLevel)) + " " + error.m_szErrorNumber.ToChar() +
                    ": " + error.m_szErrorMessage.ToChar());
  return texts;
}

std::vector<CError> RecordingHandler::Errors() const {
  const std::lock_guard lock(m_mutex);
  return m_errors;
}

void RecordingHandler::Clear() {
  const std::lock_guard lock(m_mutex);
  m_errors.clear();
}

AssertRecorder::AssertRecorder() : m_previous(wxSetAssertHandler(&RecordAssert)) {
  const std::lock_guard lock(g_mutex);
  g_asserts.clear();
}

AssertRecorder::~AssertRecorder() { wxSetAssertHandler(m_previous); }

std::vector<std::string> AssertRecorder::Texts() const {
  const std::lock_guard lock(g_mutex);
  std::vector<std::string> texts;
  for (const AssertRecord& record : g_asserts) texts.push_back(record.text);
  return texts;
}

std::vector<std::string> AssertRecorder::Conditions() const {
  const std::lock_guard lock(g_mutex);
  std::vector<std::string> conditions;
  for (const AssertRecord& record : g_asserts) conditions.push_back(record.condition);
  return conditions;
}

LogRecorder::LogRecorder()
    : m_previousTarget(wxLog::SetActiveTarget(this)), m_previousLevel(wxLog::GetLogLevel()) {
  wxLog::SetLogLevel(wxLOG_Debug);
}

LogRecorder::~LogRecorder() {
  wxLog::SetActiveTarget(m_previousTarget);
  wxLog::SetLogLevel(m_previousLevel);
}

void LogRecorder::DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) {
  m_texts.push_back(std::string(level == wxLOG_Debug ? "debug " : "other ") +
                    (info.filename ? info.filename : "") + ":" + std::to_string(info.line) + " " +
                    (info.func ? info.func : "") + ": " + message.utf8_string());
  Journal::Note(m_texts.back());
}

}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
// Test helpers that write down what the code under test reports: along the error-handler chain, through
// wxWidgets assertions, and through wxWidgets logging. Each is alive for one test; one of a kind at a time.
#pragma once

#include <wx/log.h>

#include <mutex>
#include <string>
#include <vector>

#include "core/ErrorHandler.h"

namespace scripted {

const char* LevelName(eErrorLevel level);  // "ERROR"

// A link of a chain, mostly its end. Texts are "ERROR -1: message" (level, number, message).
class RecordingHandler final : public CErrorHandler {
 public:
  int HandleError(CError* pError) override;
  std::vector<std::string> Reports() const;
  std::vector<CError> Errors() const;
  void Clear();

 private:
  mutable std::mutex m_mutex;
  std::vector<CError> m_errors;
};

// Texts are "Benchmarks/CREP_ORA8/RepTable.cpp:12 Initialize: condition".
class AssertRecorder {
 public:
  AssertRecorder();
  ~AssertRecorder();
  AssertRecorder(const AssertRecorder&) = delete;
  AssertRecorder& operator=(const AssertRecorder&) = delete;
  std::vector<std::string> Texts() const;
  std::vector<std::string> Conditions() const;

 private:
  wxAssertHandler_t m_previous;
};

// Texts are "debug Benchmarks/CREP_ORA8/Xact_Insert.cpp:113 Execute: message", debug level admitted.
class LogRecorder : public wxLog {
 public:
  LogRecorder();
  ~LogRecorder() override;
  std::vector<std::string> Texts() const { return m_texts; }

 protected:
  void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info) override;

 private:
  std::vector<std::string> m_texts;
  wxLog* m_previousTarget;
  wxLogLevel m_previousLevel;
};

}  // namespace scripted

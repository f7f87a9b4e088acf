// SPDX-License-Identifier: Apache-2.0
#include "core/Assert.h"

#include <wx/debug.h>
#include <wx/string.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

namespace {

std::mutex g_SinkMutex;
LKAssertSink g_Sink;
thread_local bool t_bReporting = false;

struct ReportingMark {
  ReportingMark() { t_bReporting = true; }
  ~ReportingMark() { t_bReporting = false; }
};

void WriteLine(const LKAssertion& assertion) {
  std::fprintf(stderr, "%s\n", LKAssertionText(assertion).ToChar().c_str());
}

void Report(const LKAssertion& assertion) {
  if (t_bReporting) return WriteLine(assertion);
  const std::lock_guard lock(g_SinkMutex);
  if (!g_Sink) return WriteLine(assertion);
  const ReportingMark mark;
  g_Sink(assertion);
}

void HandleAssert(const wxString& file, int nLine, const wxString& function, const wxString& condition,
                  const wxString& message) {
  LKAssertion assertion;
  assertion.m_szFile = file.wc_str();
  assertion.m_nLine = nLine;
  assertion.m_szFunction = function.wc_str();
  assertion.m_szCondition = condition.wc_str();
  assertion.m_szMessage = message.wc_str();
  Report(assertion);
}

[[maybe_unused]] const wxAssertHandler_t g_previousHandler = wxSetAssertHandler(&HandleAssert);

}  // namespace

LKAssertSink LKSetAssertSink(LKAssertSink sink) {
  const std::lock_guard lock(g_SinkMutex);
  return std::exchange(g_Sink, std::move(sink));
}

LKString LKAssertionText(const LKAssertion& assertion) {
  // Not by Format, which may be what reports: the locks of the two would wait for each other.
  LKString text = assertion.m_szFile + L":" + std::to_wstring(assertion.m_nLine).c_str() + L": " +
                  assertion.m_szFunction + L": assertion failed: " + assertion.m_szCondition;
  if (!assertion.m_szMessage.IsEmpty()) text = text + L" (" + assertion.m_szMessage + L")";
  return text;
}

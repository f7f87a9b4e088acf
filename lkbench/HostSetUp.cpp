// SPDX-License-Identifier: Apache-2.0
#include "lkbench/HostSetUp.h"

#include <atomic>
#include <string>
#include <thread>

#include "core/Assert.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

std::atomic<Console*> g_console{nullptr};
class ConsoleLog : public wxLog {
 protected:
  void DoLogTextAtLevel(wxLogLevel, const wxString& text) override {
    if (Console* console = g_console) console->Problem(OneLine(text.ToStdString(wxConvUTF8)));
  }
};

void ReportAssertion(ErrorLog& log, const LKAssertion& assertion) {
  log.Report(WARNING_LEVEL, "0", OneLine(LKAssertionText(assertion).ToChar()));
}

}  // namespace

HostSetUp::HostSetUp(Console& console, ErrorLog& log) : m_target(std::make_unique<ConsoleLog>()) {
  g_console = &console;
  LKSetAssertSink([&log](const LKAssertion& assertion) { ReportAssertion(log, assertion); });
  wxLog::SetActiveTarget(m_target.get());
  wxLog::SetTimestamp(wxString());
  // wxWidgets makes its table of threads when the first of them logs: here, and not in many users at a time.
  std::thread([] { const ThreadLog first; }).join();
  wxLog::SetLogLevel(console.Level() == LogLevel::kDebug ? wxLOG_Debug : wxLOG_Warning);
}

HostSetUp::~HostSetUp() {
  wxLog::SetActiveTarget(nullptr);
  LKSetAssertSink({});
  g_console = nullptr;
}

ThreadLog::ThreadLog() : m_target(std::make_unique<ConsoleLog>()) {
  wxLog::SetThreadActiveTarget(m_target.get());
}

ThreadLog::~ThreadLog() { wxLog::SetThreadActiveTarget(nullptr); }

}  // namespace lkbench

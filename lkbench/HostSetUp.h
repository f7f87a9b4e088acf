// SPDX-License-Identifier: Apache-2.0
// The wxWidgets side of the process: initialised while a HostSetUp lives, failed assertions become warnings
// in an error log and let the program go on, log lines of every thread go to standard error. One object, made
// on the main thread before any other.
#pragma once

#include <wx/init.h>
#include <wx/log.h>

#include <memory>

#include "lkbench/ErrorLog.h"

namespace lkbench {

class HostSetUp {
 public:
  HostSetUp(Console& console, ErrorLog& log);
  ~HostSetUp();
  HostSetUp(const HostSetUp&) = delete;
  HostSetUp& operator=(const HostSetUp&) = delete;

 private:
  wxInitializer m_wx;
  std::unique_ptr<wxLog> m_target;
};

// Gives the calling thread a log target of its own while it lives: wxWidgets would otherwise keep the lines
// of other threads until the main thread asks for them, which it never does.
class ThreadLog {
 public:
  ThreadLog();
  ~ThreadLog();
  ThreadLog(const ThreadLog&) = delete;
  ThreadLog& operator=(const ThreadLog&) = delete;

 private:
  std::unique_ptr<wxLog> m_target;
};

}  // namespace lkbench

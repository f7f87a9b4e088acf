// SPDX-License-Identifier: Apache-2.0
// Where lkbench writes: progress and results to standard output, problems to standard error, whole lines
// only. On a terminal a status line may stand below them, and lines fit the window; elsewhere, and in the
// log, they are as they were given. Any thread may write.
#pragma once

#include <iosfwd>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "lkbench/Job.h"
#include "lkbench/display/Screen.h"

namespace lkbench {

class Console {
 public:
  explicit Console(int out = 1, int err = 2);  // descriptors, which outlive it
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // Lines are also written to `log`, with the time of day (UTC) before them. Null: no longer. `log` outlives
  // it.
  void CopyTo(std::ostream* log);
  void SetLevel(LogLevel level) { m_level = level; }          // before threads start
  void SetFormat(OutputFormat format) { m_format = format; }  // likewise
  LogLevel Level() const { return m_level; }

  // One line of standard output where the format is JSON; nothing else is printed there then, and all lines
  // below go to the log alone.
  void Object(const nlohmann::ordered_json& object);

  void Progress(const std::string& line);  // not at log level warning
  // Likewise, with the form that a terminal shows.
  void Progress(const std::string& line, const FittedLine& fitted);
  // Always, as it is; a line end is added. Where a terminal has colours, each `bad` in it has one.
  void Result(const std::string& text, const std::string& bad = {});
  void Statement(const std::string& text);  // a result in prose: its words go into the window's lines
  // Standard error in any format, with the program's name before it; also an object.
  void Problem(const std::string& line);

  // How things stand: the status line of a terminal; elsewhere `line` is printed. Not at log level warning.
  void Status(const std::string& line, const FittedLine& status);
  void Status(const FittedLine& status);  // nothing where there is no terminal
  void EraseStatus();
  // The same before the process ends at once, whatever another thread is doing.
  void EraseStatusAtOnce();

  std::size_t Columns() const { return m_screen.Columns(); }

 private:
  void Print(const std::string& text, const std::string& copied);
  void Copy(const std::string& text);

  std::timed_mutex m_mutex;
  Screen m_screen;
  std::ostream* m_log = nullptr;
  LogLevel m_level = LogLevel::kInfo;
  OutputFormat m_format = OutputFormat::kText;
};

// Erases the status line when a verb's part that shows one ends, however it ends.
class StatusScope {
 public:
  explicit StatusScope(Console& console) : m_console(console) {}
  ~StatusScope() { m_console.EraseStatus(); }
  StatusScope(const StatusScope&) = delete;
  StatusScope& operator=(const StatusScope&) = delete;

 private:
  Console& m_console;
};

}  // namespace lkbench

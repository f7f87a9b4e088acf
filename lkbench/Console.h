// SPDX-License-Identifier: Apache-2.0
// Where lkbench writes: progress and results to standard output, problems to standard error, whole lines
// only. Any thread may write.
#pragma once

#include <iosfwd>
#include <mutex>
#include <string>

#include "lkbench/Job.h"

namespace lkbench {

class Console {
 public:
  // Lines are also written to `log`, with the time of day (UTC) before them. Null: no longer. `log` outlives
  // it.
  void CopyTo(std::ostream* log);
  void SetLevel(LogLevel level) { m_level = level; }  // before threads start
  LogLevel Level() const { return m_level; }

  void Progress(const std::string& line);  // not at log level warning
  void Result(const std::string& text);    // always; a line end is added
  void Problem(const std::string& line);   // standard error, with the program's name before it

 private:
  void Copy(const std::string& text);

  std::mutex m_mutex;
  std::ostream* m_log = nullptr;
  LogLevel m_level = LogLevel::kInfo;
};

}  // namespace lkbench

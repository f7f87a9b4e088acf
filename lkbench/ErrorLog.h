// SPDX-License-Identifier: Apache-2.0
// What the layers below report, gathered over all users. A problem is printed when it comes for the first
// time and only counted after that, so a thousand equal failures are one line and a number. Memory is
// bounded: past kMostLines different problems the rest share one line. Any thread may report.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "core/ErrorHandler.h"
#include "lkbench/Console.h"

namespace lkbench {

struct ProblemLine {
  eErrorLevel level = ERROR_LEVEL;
  std::string number;  // the database's number; "-1" and "0" mark messages without one
  std::string text;
  std::uint64_t count = 0;
};

class ErrorLog {
 public:
  static constexpr size_t kMostLines = 50;

  explicit ErrorLog(Console& console) : m_console(console) {}
  void Report(eErrorLevel level, const std::string& number,
              const std::string& text);  // information is printed

  std::vector<ProblemLine> Lines() const;  // in the order of their first appearance
  std::uint64_t Problems() const;          // warnings and errors so far, repetitions included
  std::string Last() const;                // text of the latest problem; empty when there was none

 private:
  Console& m_console;
  mutable std::mutex m_mutex;
  std::vector<ProblemLine> m_lines;
  std::uint64_t m_problems = 0;
  std::string m_last;
};

// The last link of a user's handler chain: hands reports to the log, or keeps them back while they are
// caught. Belongs to the user's thread.
class UserErrors final : public CErrorHandler {
 public:
  explicit UserErrors(ErrorLog& log) : m_log(log) {}
  int HandleError(CError* error) override;

  // While an object of this lives, problems are kept for Text() instead of being reported.
  class Catch {
   public:
    explicit Catch(UserErrors& errors) : m_errors(errors) { m_errors.m_caught = this; }
    ~Catch() { m_errors.m_caught = nullptr; }
    Catch(const Catch&) = delete;
    Catch& operator=(const Catch&) = delete;
    const std::string& Text() const { return m_text; }

   private:
    friend class UserErrors;
    UserErrors& m_errors;
    std::string m_text;
  };

 private:
  ErrorLog& m_log;
  Catch* m_caught = nullptr;
};

}  // namespace lkbench

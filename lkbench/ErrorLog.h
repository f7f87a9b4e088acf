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
  // A session is gone. All losses of a run share one line, whatever each session noticed first.
  void ReportLoss(const std::string& text);

  std::vector<ProblemLine> Lines() const;  // in the order of their first appearance
  std::uint64_t Problems() const;          // warnings and errors so far, repetitions included
  std::string Last() const;                // text of the latest problem; empty when there was none

 private:
  bool Count(const ProblemLine& line);  // false: the line is new

  Console& m_console;
  mutable std::mutex m_mutex;
  std::vector<ProblemLine> m_lines;
  std::uint64_t m_problems = 0;
  std::string m_last;
  std::string m_loss;  // the line of all lost sessions
};

// Whether a database error of this number means that the session is gone.
bool IsSessionLoss(long code);

// What the database said: the part of a report from its error number on; all of it when it has none.
std::string DatabaseText(const std::string& text);

// What an execution failed of.
struct LastError {
  long code = 0;  // the database's number; 0: none
  std::string text;
};

// The last link of a user's handler chain: hands reports to the log, or keeps them back while they are
// caught. Once the session is lost, which is reported as one problem, what follows from that is not reported:
// every call of the session fails from then on. Belongs to the user's thread.
class UserErrors final : public CErrorHandler {
 public:
  UserErrors(ErrorLog& log, std::string target) : m_log(log), m_target(std::move(target)) {}
  int HandleError(CError* error) override;
  void NoteLoss(const std::string& text);  // reports it, the first time
  void NoteNewSession() { m_lost = false; }

  // The first problem with a number since Forget, else the first one; those that are caught do not count.
  const LastError& First() const { return m_first; }
  void Note(long code, const std::string& text);
  void Forget();

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
  std::string m_target;  // as messages name it
  Catch* m_caught = nullptr;
  bool m_lost = false;
  LastError m_first;
};

}  // namespace lkbench

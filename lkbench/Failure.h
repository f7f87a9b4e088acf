// SPDX-License-Identifier: Apache-2.0
// What ends a verb early: one line for the user and the exit code that goes with it. Everything else that is
// thrown is an internal error.
#pragma once

#include <stdexcept>
#include <string>

namespace lkbench {

enum ExitCode {
  kDone = 0,
  kUsage = 1,  // a wrong flag, job key or value; the schema does not fit what was asked for
  kRanWithFailures = 2,
  kLimitFailed = 3,    // the job limits something that was measured, and it did not keep to it
  kCannotPrepare = 5,  // no library, no connection, or a set-up step failed
  kInternal = 70,
  kInterrupted = 130,  // SIGINT
  kTerminated = 143    // SIGTERM
};

class Failure : public std::runtime_error {
 public:
  Failure(int exitCode, const std::string& line) : std::runtime_error(line), m_exitCode(exitCode) {}
  int Code() const { return m_exitCode; }

 private:
  int m_exitCode;
};

class UsageError : public Failure {
 public:
  explicit UsageError(const std::string& line) : Failure(kUsage, line) {}
};

class PrepareError : public Failure {
 public:
  explicit PrepareError(const std::string& line) : Failure(kCannotPrepare, line) {}
};

}  // namespace lkbench

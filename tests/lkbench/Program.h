// SPDX-License-Identifier: Apache-2.0
// The built lkbench as a child process of a test.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

struct Outcome {
  int code = -1;   // exit code; -1 when a signal ended it
  int signal = 0;  // that ended it
  std::string out;
  std::string err;
};

class Program {
 public:
  explicit Program(const std::vector<std::string>& arguments);
  ~Program();  // kills what still runs
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void Signal(int signal) const;
  std::string OutSoFar() const;
  bool WaitFor(const std::function<bool()>& condition) const;  // false when it ended or half a minute passed
  Outcome Wait();

 private:
  std::filesystem::path m_out;
  std::filesystem::path m_err;
  pid_t m_pid = 0;
};

Outcome RunProgram(const std::vector<std::string>& arguments);

// SPDX-License-Identifier: Apache-2.0
// What lkbench makes of a job file's text or of the words of a command line, and what it refuses them with.
#pragma once

#include <string>
#include <vector>

#include "lkbench/CommandLine.h"
#include "lkbench/Failure.h"
#include "lkbench/JobFile.h"

namespace lkbench {

inline Job ReadJob(const std::string& text, const std::string& path = "job.toml") {
  Job job;
  ReadJobText(job, text, path);
  return job;
}

inline Invocation ReadWords(const std::vector<std::string>& words) {
  std::vector<const char*> arguments = {"lkbench"};
  for (const std::string& word : words) arguments.push_back(word.c_str());
  return ReadCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

// The one line that the action is refused with.
template <class Action>
std::string RefusalOf(Action action) {
  try {
    action();
  } catch (const UsageError& error) {
    return error.what();
  }
  return "not refused";
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The command line: a verb, a job file, and flags over it. Throws UsageError for what it does not understand.
#pragma once

#include <string>
#include <vector>

#include "lkbench/Job.h"

namespace lkbench {

struct Invocation {
  std::string verb;  // empty: help or the version was asked for and is in `answer`
  Job job;
  std::string answer;
};

Invocation ReadCommandLine(int argc, const char* const* argv);
std::vector<std::string> VerbNames();

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// All flags of lkbench: the job's keys, and those that are about the invocation itself. An Invocation is what
// one call of the program was told; a value.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lkbench/Job.h"
#include "lkbench/options/Key.h"
#include "lkbench/options/TextVerbs.h"

namespace lkbench {

struct Invocation {
  std::string verb;                    // empty: help or the version was asked for and is in `answer`
  std::vector<std::string> arguments;  // behind the verb
  Job job;
  std::string answer;

  std::string config;  // the job file
  bool debug = false;
  bool dry_run = false;
  std::string output = "job.toml";  // the file that init writes
  int job_template = 0;             // index into TemplateNames
  std::optional<double> fail_over;  // of a comparison: per cent by which a figure may get worse
  std::string html;                 // file for the page of a comparison; empty: none
  std::vector<std::string> words;   // the command line as it was given
};

std::span<const Key<Invocation>> InvocationFlags();
std::vector<KeyText> AllFlags();  // in the order of the sections

// A flag's or variable's texts as the value that its key reads; `texts` has one, or more for a repeated key.
JobValue ValueFromText(const KeyText& key, const std::string& place, const std::vector<std::string>& texts);

}  // namespace lkbench

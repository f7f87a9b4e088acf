// SPDX-License-Identifier: Apache-2.0
#include "lkbench/TextVerbs.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/Completion.h"
#include "lkbench/options/ManPage.h"
#include "lkbench/options/Templates.h"
#include "lkbench/results/ResultsFolder.h"
#include "lkbench/results/ResultsPage.h"

namespace lkbench {
namespace {

std::string WithoutLastEnd(const std::string& text) { return text.substr(0, text.size() - 1); }

[[noreturn]] void RefuseOldFile(const std::string& file) {
  throw UsageError("init: " + file + " is there already: name another file with -o FILE, or remove it");
}

[[noreturn]] void RefuseFile(const std::string& file, const std::string& reason) {
  throw UsageError("init: " + file + " cannot be written: " + reason);
}

// The exclusive open leaves no moment in which somebody else's file could be overwritten.
void WriteNewFile(const std::string& file, const std::string& text) {
  const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (opened < 0 && errno == EEXIST) RefuseOldFile(file);
  bool done = opened >= 0;
  for (size_t at = 0; done && at < text.size();) {
    const ssize_t written = write(opened, text.data() + at, text.size() - at);
    done = written > 0;
    if (done) at += static_cast<size_t>(written);
  }
  const int error = errno;
  if (opened >= 0) close(opened);
  if (!done) RefuseFile(file, std::generic_category().message(error));
}

void RequireNewFile(const std::string& file) {
  std::error_code unknown;
  if (std::filesystem::exists(std::filesystem::symlink_status(file, unknown))) RefuseOldFile(file);
  if (const std::string reason = WhyNotWritable(file); !reason.empty()) RefuseFile(file, reason);
}

void Init(const Invocation& invocation, Console& console) {
  const JobTemplate& chosen = JobTemplates()[static_cast<size_t>(invocation.job_template)];
  const std::string text = TemplateText(chosen);
  if (invocation.dry_run) {
    if (invocation.output != "-") RequireNewFile(invocation.output);
    console.Result(
        "dry run: " +
        std::string(invocation.output == "-" ? "would print a job" : "would write " + invocation.output) +
        ": " + chosen.help);
    return;
  }
  if (invocation.output == "-") {
    console.Result(WithoutLastEnd(text));
    return;
  }
  WriteNewFile(invocation.output, text);
  console.Result("wrote " + invocation.output + ": " + chosen.help + ". Run it: lkbench run -c " +
                 invocation.output);
}

// The text of a verb that prints one of several, by its name.
std::string PrintedText(const std::string& verb, const std::string& name) {
  struct Text {
    const char* verb;
    const char* name;
    std::string (*make)();
  };
  static constexpr Text kTexts[] = {{"completion", "bash", BashCompletion},
                                    {"completion", "zsh", ZshCompletion},
                                    {"man", "lkbench", ProgramPage},
                                    {"man", "lkbench-job", JobPage},
                                    {"man", "lkbench-results", ResultsPage}};
  std::vector<std::string> names;
  for (const Text& text : kTexts) {
    if (text.verb != verb) continue;
    if (text.name == name) return text.make();
    names.emplace_back(text.name);
  }
  throw UsageError(verb + ": there is no \"" + Excerpt(name) + "\": one of " + Join(names, ", ") +
                   " is needed" + DidYouMean(name, names));
}

}  // namespace

bool RunTextVerb(const Invocation& invocation, Console& console) {
  if (invocation.verb == "init") {
    Init(invocation, console);
    return true;
  }
  const bool prints = invocation.verb == "completion" || invocation.verb == "man";
  if (prints) console.Result(WithoutLastEnd(PrintedText(invocation.verb, invocation.arguments.at(0))));
  return prints;
}

}  // namespace lkbench

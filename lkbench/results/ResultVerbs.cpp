// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/ResultVerbs.h"

#include "lkbench/Text.h"
#include "lkbench/results/Comparison.h"
#include "lkbench/results/FailOver.h"
#include "lkbench/results/Page.h"
#include "lkbench/results/ResultsFolder.h"
#include "lkbench/results/StoredRun.h"

namespace lkbench {
namespace {

namespace fs = std::filesystem;

void RequireWritable(const fs::path& file) {
  if (const std::string reason = WhyNotWritable(file); !reason.empty()) RefuseToWrite(file, reason);
}

// Makes report.html of a folder, or beside a run.json, anew.
void Report(const Invocation& invocation, Console& console) {
  const fs::path place = invocation.arguments.front();
  const StoredRun run = ReadRun(place);
  const fs::path page = (fs::is_directory(place) ? place : place.parent_path()) / "report.html";
  if (invocation.dry_run) {
    RequireWritable(page);
    console.Result("dry run: would write " + page.string());
    return;
  }
  WriteWhole(page, RunPage(run.text));
  console.Result(page.string());
}

void RequireOtherFile(const fs::path& file, const std::string& run) {
  std::error_code unknown;
  if (fs::equivalent(file, run, unknown) || fs::equivalent(file, fs::path(run) / "run.json", unknown))
    throw UsageError("compare: " + file.string() + " is the run.json of " + run + ": name another file");
}

// The files that a comparison is written to.
std::vector<fs::path> FilesOf(const Invocation& invocation) {
  std::vector<fs::path> files;
  for (const std::string& file : {invocation.job.json, invocation.html})
    if (!file.empty()) files.emplace_back(file);
  if (files.size() == 2 && files[0].lexically_normal() == files[1].lexically_normal())
    throw UsageError("--html: " + invocation.html + " is the file of --json, too: name another one");
  for (const fs::path& file : files)
    for (const std::string& run : invocation.arguments) RequireOtherFile(file, run);
  return files;
}

void TellComparison(const Invocation& invocation, Console& console) {
  std::vector<std::string> files;
  for (const fs::path& file : FilesOf(invocation)) {
    RequireWritable(file);
    files.push_back(file.string());
  }
  const std::vector<std::string>& runs = invocation.arguments;
  console.Result("dry run: would compare " + Join({runs.begin() + 1, runs.end()}, ", ") + " with " +
                 runs.front() + (files.empty() ? "" : " and write " + Join(files, ", ")));
}

void Write(const Invocation& invocation, const std::vector<Comparison>& comparisons) {
  const std::string json =
      ComparisonJson(comparisons).dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
  if (!invocation.job.json.empty()) WriteWhole(invocation.job.json, json);
  if (!invocation.html.empty()) WriteWhole(invocation.html, ComparisonPage(json));
}

int CompareAll(const Invocation& invocation, Console& console) {
  std::vector<StoredRun> runs;
  for (const std::string& place : invocation.arguments) runs.push_back(ReadRun(place));
  std::vector<Comparison> comparisons;
  for (std::size_t number = 1; number < runs.size(); ++number)
    comparisons.push_back(CompareRuns(runs.front(), runs[number]));
  FilesOf(invocation);
  if (invocation.dry_run) {
    TellComparison(invocation, console);
    return kDone;
  }
  Write(invocation, comparisons);
  for (const Comparison& comparison : comparisons)
    console.Result((&comparison == comparisons.data() ? "" : "\n") + ComparisonText(comparison));
  if (!invocation.fail_over) return kDone;
  const FailOver judged = JudgeFailOver(comparisons, *invocation.fail_over);
  console.Result("\n" + judged.text, "FAIL");
  return judged.failed ? kLimitFailed : kDone;
}

}  // namespace

std::optional<int> RunResultVerb(const Invocation& invocation, Console& console) {
  if (invocation.verb == "compare") return CompareAll(invocation, console);
  if (invocation.verb != "report") return {};
  Report(invocation, console);
  return kDone;
}

}  // namespace lkbench

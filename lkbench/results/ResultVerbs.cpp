// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/ResultVerbs.h"

#include "lkbench/results/Comparison.h"
#include "lkbench/results/Page.h"
#include "lkbench/results/ResultsFolder.h"
#include "lkbench/results/StoredRun.h"

namespace lkbench {
namespace {

namespace fs = std::filesystem;

// Makes report.html of a folder, or beside a run.json, anew.
void Report(const Invocation& invocation, Console& console) {
  const fs::path place = invocation.arguments.front();
  const StoredRun run = ReadRun(place);
  const fs::path page = (fs::is_directory(place) ? place : place.parent_path()) / "report.html";
  WriteWhole(page, RunPage(run.text));
  console.Result(page.string());
}

void CompareAll(const Invocation& invocation, Console& console) {
  std::vector<StoredRun> runs;
  for (const std::string& place : invocation.arguments) runs.push_back(ReadRun(place));
  std::vector<Comparison> comparisons;
  for (std::size_t number = 1; number < runs.size(); ++number)
    comparisons.push_back(CompareRuns(runs.front(), runs[number]));
  const std::string json =
      ComparisonJson(comparisons).dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
  if (!invocation.job.json.empty()) WriteWhole(invocation.job.json, json);
  if (!invocation.html.empty()) WriteWhole(invocation.html, ComparisonPage(json));
  for (const Comparison& comparison : comparisons)
    console.Result((&comparison == comparisons.data() ? "" : "\n") + ComparisonText(comparison));
}

}  // namespace

bool RunResultVerb(const Invocation& invocation, Console& console) {
  if (invocation.verb == "report")
    Report(invocation, console);
  else if (invocation.verb == "compare")
    CompareAll(invocation, console);
  else
    return false;
  return true;
}

}  // namespace lkbench

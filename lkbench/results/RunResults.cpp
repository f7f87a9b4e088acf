// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/RunResults.h"

#include "lkbench/display/StreamObjects.h"
#include "lkbench/options/EffectiveJob.h"
#include "lkbench/options/Verbs.h"
#include "lkbench/results/Page.h"
#include "lkbench/results/SeriesCsv.h"
#include "lkbench/results/Spectra.h"

namespace lkbench {
namespace {

constexpr const char* kLog = "log.txt";
constexpr const char* kJob = "effective.toml";

bool LeavesFolder(const Invocation& invocation) {
  return (FindVerb(invocation.verb)->bit & kWorkVerbs) != 0 && invocation.job.results != kNoResults;
}

// The job of this run for another one, which has results of its own.
std::string JobText(Job job) {
  job.results.clear();
  job.json.clear();
  return EffectiveJobText(job);
}

// The same command without the file that holds these results.
std::vector<std::string> WithoutJson(const std::vector<std::string>& command) {
  std::vector<std::string> words;
  for (auto word = command.begin(); word != command.end(); ++word) {
    if (*word == "--json")
      word += word + 1 == command.end() ? 0 : 1;
    else if (!word->starts_with("--json="))
      words.push_back(*word);
  }
  return words;
}

void RequireJson(const Invocation& invocation, bool is_writable) {
  const std::string& file = invocation.job.json;
  std::error_code unknown;
  if (!is_writable) throw UsageError("json: " + file + " cannot be written");
  if (std::filesystem::equivalent(file, invocation.config, unknown))
    throw UsageError("json: " + file + " is the job file: name another one");
}

void WriteSpectra(const ResultsFolder& folder, const RunRecord& record) {
  for (const SpectrumFile& file : SpectrumFiles(record)) folder.Write("hist/" + file.name, file.text);
}

}  // namespace

std::string ResultPlaces(const Invocation& invocation) {
  const std::string& json = invocation.job.json;
  if (!json.empty()) RequireJson(invocation, WhyNotWritable(json).empty());
  std::string text;
  if (LeavesFolder(invocation)) {
    const std::string& asked = invocation.job.results;
    RequireResultsPlace(asked);
    text = "run.json, series.csv, hist, report.html, effective.toml and log.txt in " +
           (asked.empty() ? "lkbench-results/TIME-" + invocation.verb : asked);
  }
  if (!json.empty()) text += (text.empty() ? "" : "; ") + json;
  return text;
}

RunResults::RunResults(const Invocation& invocation, Console& console)
    : m_invocation(invocation), m_console(console) {
  const std::string& json = invocation.job.json;
  if (!json.empty()) RequireJson(invocation, !!std::ofstream(json, std::ios::app));
  if (!LeavesFolder(invocation)) return;
  m_folder.emplace(invocation.job.results, invocation.verb, m_started);
  m_folder->Write(kJob, JobText(invocation.job));
  m_log.open(m_folder->Path() / kLog, std::ios::app);
  m_console.CopyTo(&m_log);
}

RunResults::~RunResults() {
  m_console.CopyTo(nullptr);
  if (!m_folder || m_written) return;
  std::error_code ignored;
  m_log.close();
  for (const char* file : {kLog, kJob}) std::filesystem::remove(m_folder->Path() / file, ignored);
  std::filesystem::remove(m_folder->Path(), ignored);
  std::filesystem::remove(m_folder->Path().parent_path(), ignored);  // only when it is empty
}

std::vector<std::string> RunResults::Repeating() const {
  const std::vector<std::string>& words = m_invocation.words;
  if (!m_folder) return WithoutJson(words);
  return {words.front(), m_invocation.verb, "-c",
          std::filesystem::absolute(m_folder->Path() / kJob).lexically_normal().string()};
}

void RunResults::TellBegin(RunFacts facts) const {
  facts.verb = m_invocation.verb;
  facts.started = m_started;
  m_console.Object(BeginObject(facts));
}

void RunResults::Write(RunFacts facts) {
  facts.verb = m_invocation.verb;
  facts.command = m_invocation.words;
  facts.started = m_started;
  facts.elapsed = static_cast<std::uint64_t>((std::chrono::steady_clock::now() - m_begin).count());
  facts.repeat = Repeating();
  const Json run = RunFileJson(facts);
  WriteFiles(facts, RunFileText(run));
  m_console.Object(EndObject(run, m_written ? m_folder->Path().string() : ""));
}

void RunResults::WriteFiles(const RunFacts& facts, const std::string& json) {
  if (!m_invocation.job.json.empty()) WriteWhole(m_invocation.job.json, json);
  if (!m_folder || facts.exit_code == kUsage) return;
  m_written = true;
  m_folder->Write("run.json", json);
  if (facts.workload != nullptr) {
    m_folder->Write("series.csv", SeriesCsv(*facts.workload));
    WriteSpectra(*m_folder, *facts.workload);
  }
  m_folder->Write("report.html", RunPage(json));
  m_console.Result("results  " + m_folder->Path().string());
}

}  // namespace lkbench

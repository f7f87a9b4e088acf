// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/RunFile.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <thread>

#include "lkbench/BuildFacts.h"
#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/results/RecordJson.h"

namespace lkbench {
namespace {

Json HostJson() {
  utsname system{};
  uname(&system);
  const auto pages = sysconf(_SC_PHYS_PAGES);
  const auto page = sysconf(_SC_PAGESIZE);
  return {{"system", std::string(system.sysname) + ' ' + system.release + ' ' + system.machine},
          {"cpus", std::max(1u, std::thread::hardware_concurrency())},
          {"memory_bytes", pages > 0 && page > 0 ? pages * page : 0}};
}

Json LibraryJson(const LibraryFacts& library) {
  return {{"file", library.file}, {"version", library.version}};
}

std::string FailureText(const Tally& tally) {
  if (tally.failures == 0) return "a session was lost";
  return Grouped(tally.failures) + " of " + Plural(tally.executions, "execution") + " failed";
}

std::string FailedLimits(const std::vector<LimitResult>& limits) {
  std::vector<std::string> failed;
  for (const LimitResult& limit : limits)
    if (!limit.passed) failed.push_back(limit.name);
  return std::to_string(failed.size()) + " of " + Plural(limits.size(), "limit") +
         " failed: " + Join(failed, ", ");
}

Json VerdictJson(const RunFacts& facts) {
  if (facts.signal != 0)
    return {{"result", "interrupted"}, {"text", "stopped early; what was measured until then is here"}};
  if (!facts.failure.empty()) return {{"result", "error"}, {"text", facts.failure}};
  if (facts.exit_code == kLimitFailed) return {{"result", "limit"}, {"text", FailedLimits(facts.limits)}};
  Tally total;
  if (facts.workload) total.Add(facts.workload->measured.total);
  if (facts.exit_code != kDone) return {{"result", "failures"}, {"text", FailureText(total)}};
  std::string text = facts.workload ? "every execution succeeded" : "everything was done";
  if (total.failures > 0) text = FailureText(total);
  if (!facts.limits.empty()) text += ", every limit was kept";
  return {{"result", "done"}, {"text", text}};
}

Json ProblemsJson(const std::vector<ProblemLine>& lines) {
  Json problems = Json::array();
  for (const ProblemLine& line : lines)
    problems.push_back({{"level", line.level == WARNING_LEVEL ? "warning" : "error"},
                        {"number", line.number},
                        {"text", line.text},
                        {"count", line.count}});
  return problems;
}

Json LimitsJson(const std::vector<LimitResult>& limits) {
  Json json = Json::array();
  for (const LimitResult& limit : limits)
    json.push_back({{"name", limit.name},
                    {"limit", limit.asked},
                    {"value", limit.value ? Json(*limit.value) : Json()},
                    {"unit", NameOf(limit.unit)},
                    {"passed", limit.passed}});
  return json;
}

Json SignalJson(int signal) {
  if (signal == 0) return {};
  return signal == SIGINT ? "SIGINT" : "SIGTERM";
}

Json LoadJson(const RunFacts& facts) {
  if (facts.load_elapsed == 0) return {};
  return {{"rows", facts.loaded_rows}, {"elapsed_ns", facts.load_elapsed}};
}

Json EnvironmentJson(const RunFacts& facts) {
  return {{"host", HostJson()},
          {"plugin", LibraryJson(facts.plugin)},
          {"oci", LibraryJson(facts.oci)},
          {"server", {{"version", facts.server_version}, {"settings", facts.server_settings}}}};
}

}  // namespace

std::string UtcText(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

Json ProgramJson() { return {{"version", LKBENCH_VERSION}, {"optimised", kIsOptimised}}; }

Json RunFileJson(const RunFacts& facts) {
  return {{"schema", "lkbench-run"},
          {"schema_version", kRunSchemaVersion},
          {"lkbench", ProgramJson()},
          {"verb", facts.verb},
          {"command", facts.command},
          {"repeat", facts.repeat},
          {"started", UtcText(facts.started)},
          {"elapsed_ns", facts.elapsed},
          {"exit_code", facts.exit_code},
          {"verdict", VerdictJson(facts)},
          {"interrupted", SignalJson(facts.signal)},
          {"target", {{"kind", facts.target_kind}, {"text", facts.target}}},
          {"environment", EnvironmentJson(facts)},
          {"seeds", {{"schema", facts.schema_seed}, {"run", facts.run_seed}}},
          {"job", facts.job},
          {"histogram", HistogramRuleJson()},
          {"load", LoadJson(facts)},
          {"workload", facts.workload ? WorkloadJson(*facts.workload) : Json()},
          {"problems", ProblemsJson(facts.problems)},
          {"limits", LimitsJson(facts.limits)},
          {"notes", facts.notes}};
}

std::string RunFileText(const Json& run) {
  return run.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/PhaseKeys.h"

#include <algorithm>
#include <sstream>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/JobReaders.h"
#include "lkbench/options/PhaseCheck.h"

namespace lkbench {
namespace {

constexpr int kMostUsers = 1000;
constexpr std::int64_t kMostExecutions = 1'000'000'000'000;
constexpr double kHighestRate = 1'000'000;
constexpr size_t kMostPhases = 100;
constexpr const char* kUnlimited = "unlimited";
constexpr Verbs kUserVerbs = kWorkVerbs | kLoadVerb | kRefreshVerb;

using Section::kWorkload;

// "unlimited" or executions per second.
KeyType<Phase> Rate() {
  return {.form = {},
          .set =
              [](Phase& phase, const JobValue& value) {
                const auto* text = std::get_if<std::string>(&value.value);
                phase.rate = 0;
                if (text != nullptr && *text == kUnlimited) return;
                const bool is_number = text == nullptr || (value.is_flag && ParseReal(*text, phase.rate));
                if (is_number) phase.rate = value.Real(0);
                if (phase.rate <= 0 || phase.rate > kHighestRate)
                  value.Refuse("executions per second are needed, above 0 and up to 1000000, or unlimited");
              },
          .toml =
              [](const Phase& phase) {
                return phase.rate > 0 ? Short(phase.rate) : TomlText(std::string(kUnlimited));
              }};
}

// One time, or "MIN:MAX".
KeyType<Phase> ThinkTime() {
  return {.form = {},
          .set =
              [](Phase& phase, const JobValue& value) {
                const auto* text = std::get_if<std::string>(&value.value);
                const size_t colon = text == nullptr ? std::string::npos : text->find(':');
                if (colon == std::string::npos) {
                  phase.think_min = phase.think_max = value.DurationOrZero();
                  return;
                }
                const auto part = [&](const std::string& time) {
                  return JobValue{value.key, value.place, time, value.is_flag}.DurationOrZero();
                };
                phase.think_min = part(text->substr(0, colon));
                phase.think_max = part(text->substr(colon + 1));
                if (phase.think_min > phase.think_max)
                  value.Refuse("the form is MIN:MAX, as 10ms:50ms, the smaller time first");
              },
          .toml =
              [](const Phase& phase) {
                const std::string least = DurationText(phase.think_min);
                const std::string most = DurationText(phase.think_max);
                return TomlText(least == most ? least : least + ':' + most);
              }};
}

// The one key that a job has not, since its phase needs no name.
const Key<Phase> kName = {"name", "NAME", "name of the phase", kWorkload, kWorkVerbs, Words(&Phase::name)};

const std::vector<Key<Phase>>& Keys() {
  static const std::vector<Key<Phase>> keys = {
      {"users",
       "N",
       "virtual users, each with a session of its own",
       kWorkload,
       kUserVerbs,
       WholeNumber(&Phase::users, 1, kMostUsers),
       {},
       'u'},
      {"duration",
       "TIME",
       "how long the workload runs: 10s, 500ms, 5m, 1h; 0 leaves its end to the count",
       kWorkload,
       kWorkVerbs,
       TimeSpanOrZero(&Phase::duration),
       {},
       'd'},
      {"count", "N", "executions of all users together after which it ends; 0 leaves its end to the duration",
       kWorkload, kWorkVerbs, WholeNumber(&Phase::count, 0, kMostExecutions)},
      {"warm_up", "TIME", "how long it runs before anything is counted; reported apart", kWorkload,
       kWorkVerbs, TimeSpanOrZero(&Phase::warm_up)},
      {"ramp", "TIME", "over which the users start one after the other, and a rate rises", kWorkload,
       kWorkVerbs, TimeSpanOrZero(&Phase::ramp)},
      {"mix", "WEIGHTS", "weights of the workload's transactions", kWorkload, kWorkVerbs, MixWeights()},
      {"think", "TIME[:MOST]", "pause of a user after each execution, drawn evenly between two times",
       kWorkload, kWorkVerbs, ThinkTime()},
      {"rate", "R", "executions per second of all users together, as 250 or 0.5, or unlimited", kWorkload,
       kWorkVerbs, Rate()},
      {"arrival", "KIND", "how executions at a rate follow each other: fixed or poisson", kWorkload,
       kWorkVerbs, OneOf(&Phase::arrival, {"fixed", "poisson"})},
      {"commit_every", "N", "executions of a user that share one commit", kWorkload, kWorkVerbs,
       WholeNumber(&Phase::commit_every, 1, 1'000'000)}};
  return keys;
}

const Key<Phase>* Find(const std::string& name) {
  if (name == kName.name) return &kName;
  const auto found = std::ranges::find(Keys(), name, &Key<Phase>::name);
  return found == Keys().end() ? nullptr : &*found;
}

// "name=base users=8" as the table it stands for.
JobValue::Table WordsOf(const JobValue& value) {
  if (const auto* table = std::get_if<JobValue::Table>(&value.value)) return *table;
  if (!value.is_flag) value.Refuse("tables are needed, as [[phase]] makes them");
  JobValue::Table table;
  std::istringstream words(value.Text());
  for (std::string word; words >> word;) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos) value.Refuse("the form is \"name=base users=8 duration=1m\"");
    const std::string name = word.substr(0, equals);
    table.push_back({name, JobValue{name, value.place + ' ' + name, word.substr(equals + 1), true}});
  }
  return table;
}

JobPhase ReadPhase(const JobValue& value) {
  JobPhase phase;
  phase.place = value.place;
  for (const auto& [name, given] : WordsOf(value)) {
    const Key<Phase>* key = Find(name);
    std::vector<std::string> known = {kName.name};
    for (const Key<Phase>& each : Keys()) known.push_back(each.name);
    if (key == nullptr)
      throw UsageError(given.place + ": a phase has no key \"" + Excerpt(name) + '"' +
                       DidYouMean(name, known));
    JobValue own = given;
    own.key = name;
    key->type.set(phase.own, own);
    phase.set.insert(name);
  }
  return phase;
}

void SetPhases(Job& job, const JobValue& value) {
  const auto* list = std::get_if<JobValue::List>(&value.value);
  if (list == nullptr) value.Refuse("a list of tables is needed: begin each phase with [[phase]]");
  if (list->size() > kMostPhases) value.Refuse("at most 100 phases");
  std::vector<JobPhase> phases;
  for (const JobValue& each : *list) phases.push_back(ReadPhase(each));
  job.phases = std::move(phases);
}

// What was set in the later of these wins: file, environment, flag.
int Rank(const Job& job, const std::string& key) {
  const auto found = job.origins.find(key);
  if (found == job.origins.end()) return -1;
  return found->second.starts_with("--") ? 2 : found->second.starts_with("LKBENCH_") ? 1 : 0;
}

// Takes one setting of a phase over from another.
void Copy(const Key<Phase>& key, const Phase& from, Phase& to) {
  const JobValue value{key.name, "", AsFlagValue(key.type.toml(from)), true};
  key.type.set(to, value);
}

Phase Completed(const Job& job, const JobPhase& phase, size_t number) {
  Phase complete = phase.own;
  const auto is_inherited = [&](const std::string& key) {
    return !phase.set.contains(key) || Rank(job, key) > Rank(job, "phase");
  };
  for (const Key<Phase>& key : Keys())
    if (is_inherited(key.name)) Copy(key, job, complete);
  if (complete.rate == 0 && is_inherited("arrival"))
    complete.arrival = Arrival::kFixed;  // no rate, no arrivals
  const bool has_duration = phase.set.contains("duration") || job.origins.contains("duration");
  if (complete.count > 0 && !has_duration) complete.duration = {};
  if (!phase.set.contains(kName.name)) complete.name = "phase " + std::to_string(number);
  return complete;
}

// Complete, so that it means the same when it is read again.
std::string PhaseText(const Phase& phase) {
  std::string text = kName.name + " = " + kName.type.toml(phase);
  for (const Key<Phase>& key : Keys()) text += ", " + key.name + " = " + key.type.toml(phase);
  return "  { " + text + " },\n";
}

std::string PhasesText(const Job& job) {
  if (job.phases.empty()) return {};
  std::string text = "[\n";
  for (size_t i = 0; i < job.phases.size(); ++i) text += PhaseText(Completed(job, job.phases[i], i + 1));
  return text + "]";
}

}  // namespace

std::span<const Key<Phase>> PhaseKeys() { return Keys(); }

Key<Job> JobKeyOfPhase(const std::string& name) {
  const Key<Phase>& key = *Find(name);
  const KeyType<Phase>& type = key.type;
  // A count ends a workload that was given no duration.
  const bool is_count = name == "count";
  const auto set = [own = type.set, is_count](Job& job, const JobValue& value) {
    own(job, value);
    if (is_count && job.count > 0 && !job.origins.contains("duration")) job.duration = {};
  };
  const auto toml = [own = type.toml](const Job& job) { return own(job); };
  return {key.name,      key.value, key.help, key.section, key.verbs, {type.form, set, toml},
          key.otherwise, key.letter};
}

KeyType<Job> PhaseList() {
  return {.form = {.shape = KeyShape::kRepeated}, .set = SetPhases, .toml = PhasesText};
}

std::vector<Phase> PhasesOf(const Job& job) {
  std::vector<Phase> phases;
  for (const JobPhase& phase : job.phases) phases.push_back(Completed(job, phase, phases.size() + 1));
  if (phases.empty()) phases.push_back(job);
  CheckPhases(job, phases);
  return phases;
}

}  // namespace lkbench

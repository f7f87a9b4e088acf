// SPDX-License-Identifier: Apache-2.0
// What no single key can tell: settings that contradict each other. A message begins with the place of the
// setting that was made on purpose and names the other's.
#include <algorithm>
#include <random>

#include "lkbench/Failure.h"
#include "lkbench/Job.h"
#include "lkbench/Text.h"
#include "lkbench/options/PhaseKeys.h"
#include "lkbench/options/TomlText.h"

namespace lkbench {
namespace {

// "max_columns is 3 (job.toml:4)"
std::string Setting(const Job& job, const std::string& key, const std::string& value) {
  return key + " is " + value + " (" + OriginOf(job, key) + ')';
}

// Both places; the line begins with the first of them that is not a default.
[[noreturn]] void Contradiction(const Job& job, const std::string& first, const std::string& first_value,
                                const std::string& second, const std::string& second_value,
                                const std::string& right) {
  const std::string& leads = job.origins.contains(first) ? first : second;
  throw UsageError(OriginOf(job, leads) + ": " + Setting(job, first, first_value) + " but " +
                   Setting(job, second, second_value) + ": " + right);
}

void CheckColumns(const Job& job) {
  if (job.min_columns <= job.max_columns) return;
  Contradiction(job, "min_columns", std::to_string(job.min_columns), "max_columns",
                std::to_string(job.max_columns), "the minimum may not be above the maximum");
}

// Where the tables exist already and their number was left open, the schema tells it.
void CheckTables(const Job& job, Verbs verb) {
  const bool is_known = (verb & kBuildVerbs) != 0 || job.origins.contains("tables");
  if (!is_known || job.first_table <= job.tables) return;
  Contradiction(job, "first_table", std::to_string(job.first_table), "tables", std::to_string(job.tables),
                "tables is the number of the last one");
}

void CheckScale(const Job& job) {
  if (RowsAtScale(job.scale) > 0) return;
  throw UsageError(OriginOf(job, "scale") + ": scale is " + Short(job.scale) +
                   ", which is no row: tables are created and loaded at a scale of 0.001 or more");
}

// A limit for what no phase does has nothing to measure and always fails.
void CheckLimitedWork(const Job& job, const std::vector<Phase>& phases) {
  for (const Limit& limit : job.limits) {
    const auto* part = std::ranges::find(kMixParts, limit.of, &MixPart::name);
    if (part == kMixParts.end()) continue;
    if (std::ranges::any_of(phases, [&](const Phase& phase) { return phase.mix.*part->weight > 0; }))
      continue;
    throw UsageError(OriginOf(job, "limits") + ": limit " + limit.name + " is for " + limit.of +
                     ", which has no weight in any mix: nothing would be measured");
  }
}

void CheckLimits(const Job& job) {
  for (const Limit& most : job.limits)
    for (const Limit& least : job.limits) {
      const bool is_pair = most.of == least.of && most.what == least.what && most.unit == least.unit;
      if (!is_pair || !most.below || least.below || least.bound < most.bound) continue;
      if (least.bound == most.bound && most.or_equal && least.or_equal) continue;
      throw UsageError(OriginOf(job, "limits") + ": limits " + most.name + most.asked + " and " + least.name +
                       least.asked + " exclude each other");
    }
}

// In a file that serves several targets it may stand.
void CheckPassword(const Job& job) {
  const bool is_local = job.target.empty() || job.target.starts_with("local:");
  if (!is_local || OriginOf(job, "password") != "--password") return;
  throw UsageError("--password: target is " + (job.target.empty() ? "local:" : job.target) + " (" +
                   OriginOf(job, "target") + "), whose private server takes none: name another --target");
}

void CheckWork(const Job& job) {
  CheckLimitedWork(job, PhasesOf(job));
  CheckLimits(job);
  if (job.reconnect_pause <= job.reconnect_limit) return;
  Contradiction(job, "reconnect_pause", DurationText(job.reconnect_pause), "reconnect_limit",
                DurationText(job.reconnect_limit), "pauses grow from the one to the other");
}

}  // namespace

std::string OriginOf(const Job& job, const std::string& key) {
  const auto found = job.origins.find(key);
  return found == job.origins.end() ? "default" : found->second;
}

void CheckJob(const Job& job, Verbs verb) {
  CheckPassword(job);
  CheckColumns(job);
  CheckTables(job, verb);
  if ((verb & kWorkVerbs) != 0) CheckWork(job);
  if ((verb & (kBuildVerbs | kLoadVerb)) != 0) CheckScale(job);
}

void DrawRunSeed(Job& job) {
  constexpr std::uint32_t kHighest = 0x7fffffff;
  if (!job.run_seed) job.run_seed = std::random_device()() & kHighest;
}

}  // namespace lkbench

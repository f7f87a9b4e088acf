// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Comparison.h"

#include <algorithm>
#include <array>
#include <map>

#include "lkbench/Failure.h"
#include "lkbench/results/Statistics.h"

namespace lkbench {
namespace {

// What belongs to a run and not to what it was asked for: no difference of settings.
constexpr std::array kOwn = {"job.results",   "job.json",   "job.run_seed",
                             "job.log_level", "job.format", "job.metrics"};

using Settings = std::map<std::string, std::string>;

void Flatten(Settings& settings, const std::string& name, const Json& value) {
  if (!value.is_object()) {
    if (std::ranges::find(kOwn, name) == kOwn.end())
      settings[name] = value.is_string() ? value.get<std::string>() : value.dump();
    return;
  }
  for (const auto& [key, each] : value.items())
    Flatten(settings, std::string(name).append(".").append(key), each);
}

Settings SettingsOf(const Json& run) {
  Settings settings;
  Flatten(settings, "job", run.at("job"));
  Flatten(settings, "environment", run.at("environment"));
  Flatten(settings, "lkbench", run.at("lkbench"));
  Flatten(settings, "target", run.at("target"));
  settings["seeds.schema"] = run.at("seeds").at("schema").dump();
  for (const Json& phase : run.at("workload").at("phases"))
    Flatten(settings, "phase " + phase.at("name").get<std::string>(), phase.at("settings"));
  return settings;
}

std::vector<SettingDifference> SettingDifferences(const Settings& first, const Settings& second) {
  std::vector<SettingDifference> differences;
  for (const auto& [name, value] : first) {
    const auto other = second.find(name);
    const std::string there = other == second.end() ? "" : other->second;
    if (there != value) differences.push_back({name, value, there});
  }
  for (const auto& [name, value] : second)
    if (!first.contains(name)) differences.push_back({name, "", value});
  std::ranges::sort(differences, {}, &SettingDifference::name);
  return differences;
}

struct Figure {
  const char* name;
  bool is_time;
  bool more_is_better;
};

constexpr std::array kFigures = {Figure{"throughput", false, true}, Figure{"mean", true, false},
                                 Figure{"p50", true, false},        Figure{"p95", true, false},
                                 Figure{"p99", true, false},        Figure{"failures", false, false}};

double Length(const Json& interval) {
  return interval.at("end_ns").get<double>() - interval.at("begin_ns").get<double>();
}

// The measured intervals of a phase. A short rest at its end says little about a second.
std::vector<const Json*> IntervalsOf(const Json& run, std::size_t phase) {
  std::vector<const Json*> all;
  double longest = 0;
  for (const Json& interval : run.at("workload").at("intervals")) {
    if (interval.at("phase") != phase || interval.at("warm_up").get<bool>()) continue;
    all.push_back(&interval);
    longest = std::max(longest, Length(interval));
  }
  std::erase_if(all, [&](const Json* interval) { return Length(*interval) < longest / 2; });
  return all;
}

double PerSecondOf(const Json& interval, double count) {
  return count * 1e9 / std::max(1.0, Length(interval));
}

Series SeriesOf(const Figure& figure, const std::vector<const Json*>& intervals) {
  Series values;
  for (const Json* interval : intervals) {
    const Json& total = interval->at("total");
    const auto failures = total.at("failures").get<double>();
    const Json& times = total.at("response_ns");
    if (figure.is_time) {
      if (times.at("count") > 0) values.push_back(times.at(figure.name).get<double>());
    } else {
      const bool counts_failures = !figure.more_is_better;
      values.push_back(PerSecondOf(
          *interval, counts_failures ? failures : total.at("executions").get<double>() - failures));
    }
  }
  return values;
}

double WholeOf(const Figure& figure, const Json& part) {
  if (figure.is_time) return part.at("total").at("response_ns").at(figure.name).get<double>();
  if (figure.more_is_better) return part.at("rate_per_s").get<double>();
  const auto elapsed = part.at("elapsed_ns").get<double>();
  return elapsed == 0 ? 0 : part.at("total").at("failures").get<double>() * 1e9 / elapsed;
}

FigureComparison FigureOf(const Figure& figure, const Json& first, const Json& second, const Series& one,
                          const Series& other) {
  FigureComparison result;
  result.name = figure.name;
  result.is_time = figure.is_time;
  result.first = WholeOf(figure, first);
  result.second = WholeOf(figure, second);
  if (result.first != 0) result.change = result.second / result.first - 1;
  const auto difference = Compare(one, other);
  if (!difference) return result;
  const double level = Mean(one);
  if (level != 0) result.noise = difference->margin / level;
  result.p_value = difference->p_value;
  result.judgement = difference->mean > 0 ? Judgement::kHigher : Judgement::kLower;
  result.is_better = (difference->mean > 0) == figure.more_is_better;
  return result;
}

PhaseComparison PhaseOf(const Json& first, std::size_t one, const Json& second, std::size_t other) {
  const Json& phase = first.at("workload").at("phases").at(one);
  const auto left = IntervalsOf(first, one);
  const auto right = IntervalsOf(second, other);
  PhaseComparison result{phase.at("name").get<std::string>(), left.size(), right.size(), {}};
  for (const Figure& figure : kFigures)
    result.figures.push_back(FigureOf(figure, phase.at("measured"),
                                      second.at("workload").at("phases").at(other).at("measured"),
                                      SeriesOf(figure, left), SeriesOf(figure, right)));
  return result;
}

// All figures of the pair are tested together, so each has to be clearer than a single one would.
void Judge(std::vector<PhaseComparison>& phases) {
  std::vector<FigureComparison*> judged;
  std::vector<double> chances;
  for (PhaseComparison& phase : phases)
    for (FigureComparison& figure : phase.figures) {
      if (figure.judgement == Judgement::kTooShort) continue;
      judged.push_back(&figure);
      chances.push_back(figure.p_value);
    }
  const std::vector<double> adjusted = HolmAdjusted(chances);
  for (std::size_t i = 0; i < judged.size(); ++i) {
    judged[i]->p_value = adjusted[i];
    if (adjusted[i] >= kLevel) judged[i]->judgement = Judgement::kNoise;
    if (judged[i]->judgement == Judgement::kNoise) judged[i]->is_better = false;
  }
}

void AddNotes(std::vector<std::string>& notes, const StoredRun& run) {
  if (!run.json.at("interrupted").is_null()) notes.push_back(run.name + " was interrupted");
  if (!run.json.at("lkbench").at("optimised").get<bool>())
    notes.push_back(run.name + " is of an lkbench that was built without optimisation");
  const Json& measured = run.json.at("workload").at("measured");
  const auto failures = measured.at("total").at("failures").get<double>();
  if (failures > 0.01 * measured.at("total").at("executions").get<double>())
    notes.push_back("more than 1 % of the executions of " + run.name +
                    " failed: what fails early takes no time, compare with care");
}

Comparison Compared(const StoredRun& first, const StoredRun& second) {
  Comparison comparison{first.name, second.name, {}, {}, {}};
  for (const StoredRun* run : {&first, &second}) {
    if (run->json.at("workload").is_null())
      throw UsageError(run->name + " measured no workload: there is nothing to compare");
    AddNotes(comparison.notes, *run);
  }
  comparison.settings = SettingDifferences(SettingsOf(first.json), SettingsOf(second.json));
  const Json& left = first.json.at("workload").at("phases");
  const Json& right = second.json.at("workload").at("phases");
  for (std::size_t one = 0; one < left.size(); ++one)
    for (std::size_t other = 0; other < right.size(); ++other)
      if (left[one].at("name") == right[other].at("name"))
        comparison.phases.push_back(PhaseOf(first.json, one, second.json, other));
  if (comparison.phases.empty())
    throw UsageError(first.name + " and " + second.name +
                     " have no phase of the same name: nothing can be compared");
  Judge(comparison.phases);
  return comparison;
}

}  // namespace

Comparison CompareRuns(const StoredRun& first, const StoredRun& second) {
  try {
    return Compared(first, second);
  } catch (const Json::exception& error) {
    throw UsageError("a run.json of " + first.name + " and " + second.name +
                     " is not as docs/run.schema.json says: " + error.what());
  }
}

const char* NameOf(Judgement judgement) {
  static constexpr std::array kNames = {"higher", "lower", "noise", "too-short"};
  return kNames.at(static_cast<size_t>(judgement));
}

}  // namespace lkbench

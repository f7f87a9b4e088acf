// SPDX-License-Identifier: Apache-2.0
// What differs between two runs: settings, and figures by more than noise. Statistics.h says how that is
// judged. Values; pure functions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lkbench/results/Json.h"
#include "lkbench/results/StoredRun.h"

namespace lkbench {

struct SettingDifference {
  std::string name;  // as "job.users"
  std::string first;
  std::string second;  // empty: not there, likewise `first`
};

enum class Judgement { kHigher, kLower, kNoise, kTooShort };  // the second against the first

struct FigureComparison {
  std::string name;  // "throughput", "p99" ...
  bool is_time = false;
  double first = 0;  // of the whole phase
  double second = 0;
  double change = 0;            // second / first - 1; 0 when the first is 0
  std::optional<double> noise;  // half the width of the 95 % interval of the change, as a share of the first
  double p_value = 1;           // adjusted for all figures of the pair
  Judgement judgement = Judgement::kTooShort;
  bool is_better = false;  // of kHigher and kLower: whether that is what one wants
};

struct PhaseComparison {
  std::string name;
  std::size_t first_intervals = 0;  // that were judged
  std::size_t second_intervals = 0;
  std::vector<FigureComparison> figures;
};

struct Comparison {
  std::string first;  // the names of the runs
  std::string second;
  std::vector<SettingDifference> settings;
  std::vector<PhaseComparison> phases;  // the phases of the same name
  std::vector<std::string> notes;       // why the comparison may not be fair
};

// The chance that anything in a comparison is called a difference when nothing is one.
inline constexpr double kLevel = 0.05;

// Throws UsageError when the runs have no phase in common.
Comparison CompareRuns(const StoredRun& first, const StoredRun& second);

const char* NameOf(Judgement judgement);
std::string ComparisonText(const Comparison& comparison);
Json ComparisonJson(const std::vector<Comparison>& comparisons);

}  // namespace lkbench

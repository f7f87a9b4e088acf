// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/FailOver.h"

#include <algorithm>
#include <cmath>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

bool GotWorse(const FigureComparison& figure, double percent) {
  const bool differs = figure.judgement == Judgement::kHigher || figure.judgement == Judgement::kLower;
  return differs && !figure.is_better && (figure.first == 0 || std::abs(figure.change) * 100 > percent);
}

std::string Line(const Comparison& pair, const PhaseComparison& phase, const FigureComparison& figure) {
  const std::string by =
      figure.first == 0 ? "from 0" : "by " + Fixed(std::abs(figure.change) * 100, 1) + " %";
  return "\n  " + pair.second + ", " + phase.name + ": " + figure.name + " got worse " + by;
}

// The throughput has a value in every interval: where it is too short, all are.
void RequireLength(const Comparison& pair, const PhaseComparison& phase) {
  const auto throughput = std::ranges::find(phase.figures, "throughput", &FigureComparison::name);
  if (throughput->judgement != Judgement::kTooShort) return;
  throw UsageError("--fail-over: phase " + Excerpt(phase.name) + " has " +
                   Plural(phase.first_intervals, "interval") + " in " + pair.first + " and " +
                   std::to_string(phase.second_intervals) + " in " + pair.second +
                   ", too few to tell a difference from noise: compare longer runs");
}

}  // namespace

FailOver JudgeFailOver(const std::vector<Comparison>& comparisons, double percent) {
  std::string lines;
  std::uint64_t count = 0;
  for (const Comparison& pair : comparisons)
    for (const PhaseComparison& phase : pair.phases) {
      RequireLength(pair, phase);
      for (const FigureComparison& figure : phase.figures) {
        if (!GotWorse(figure, percent)) continue;
        lines += Line(pair, phase, figure);
        ++count;
      }
    }
  const std::string more = " got worse by more than " + Short(percent) + " % and more than noise";
  if (count == 0) return {false, "pass  no figure" + more};
  return {true, "FAIL  " + Plural(count, "figure") + more + lines};
}

}  // namespace lkbench

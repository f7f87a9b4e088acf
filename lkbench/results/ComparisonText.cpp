// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "lkbench/Text.h"
#include "lkbench/TextTable.h"
#include "lkbench/results/Comparison.h"

namespace lkbench {
namespace {

std::string Signed(double share) { return (share < 0 ? "-" : "+") + Fixed(std::abs(share) * 100, 1) + " %"; }

std::string Value(const FigureComparison& figure, double value) {
  return figure.is_time ? Milliseconds(static_cast<std::uint64_t>(value)) + " ms" : Fixed(value, 1) + " /s";
}

std::string Verdict(const FigureComparison& figure) {
  switch (figure.judgement) {
    case Judgement::kHigher:
      return figure.is_better ? "higher (better)" : "higher (worse)";
    case Judgement::kLower:
      return figure.is_better ? "lower (better)" : "lower (worse)";
    case Judgement::kNoise:
      return "within noise";
    case Judgement::kTooShort:
      return "too short to tell";
  }
  return {};
}

std::string Chance(const FigureComparison& figure) {
  if (figure.judgement == Judgement::kTooShort) return "-";
  return figure.p_value < 0.001 ? "< 0.001" : Fixed(figure.p_value, 3);
}

std::string FigureTable(const PhaseComparison& phase) {
  std::vector<TextRow> rows = {{phase.name, "A", "B", "change", "noise", "p", ""}};
  for (const FigureComparison& figure : phase.figures)
    rows.push_back({"  " + figure.name, Value(figure, figure.first), Value(figure, figure.second),
                    figure.first == 0 ? "-" : Signed(figure.change),
                    figure.noise ? "± " + Fixed(*figure.noise * 100, 1) + " %" : "-", Chance(figure),
                    " " + Verdict(figure)});
  return Aligned(rows);
}

Json FigureJson(const FigureComparison& figure) {
  Json json = {{"name", figure.name},       {"unit", figure.is_time ? "ns" : "per_s"},
               {"first", figure.first},     {"second", figure.second},
               {"change", figure.change},   {"noise", figure.noise ? Json(*figure.noise) : Json()},
               {"p_value", figure.p_value}, {"judgement", NameOf(figure.judgement)}};
  const bool differs = figure.judgement == Judgement::kHigher || figure.judgement == Judgement::kLower;
  json["better"] = differs ? Json(figure.is_better) : Json();
  return json;
}

Json PhaseJson(const PhaseComparison& phase) {
  Json figures = Json::array();
  for (const FigureComparison& figure : phase.figures) figures.push_back(FigureJson(figure));
  return {{"name", phase.name},
          {"first_intervals", phase.first_intervals},
          {"second_intervals", phase.second_intervals},
          {"figures", figures}};
}

Json PairJson(const Comparison& comparison) {
  Json settings = Json::array();
  for (const SettingDifference& each : comparison.settings)
    settings.push_back({{"name", each.name}, {"first", each.first}, {"second", each.second}});
  Json phases = Json::array();
  for (const PhaseComparison& phase : comparison.phases) phases.push_back(PhaseJson(phase));
  return {{"first", comparison.first},
          {"second", comparison.second},
          {"settings", settings},
          {"phases", phases},
          {"notes", comparison.notes}};
}

}  // namespace

std::string ComparisonText(const Comparison& comparison) {
  std::string text = "A  " + comparison.first + "\nB  " + comparison.second + "\n\n";
  if (comparison.settings.empty()) {
    text += "settings: no difference\n";
  } else {
    std::vector<TextRow> rows = {{"settings that differ", "A", "B"}};
    for (const SettingDifference& each : comparison.settings)
      rows.push_back({"  " + each.name, Excerpt(each.first), Excerpt(each.second)});
    text += Aligned(rows, 3) + "\n";
  }
  for (const PhaseComparison& phase : comparison.phases) text += "\n" + FigureTable(phase) + "\n";
  for (const std::string& note : comparison.notes) text += "\nnote: " + note;
  return text;
}

Json ComparisonJson(const std::vector<Comparison>& comparisons) {
  Json pairs = Json::array();
  for (const Comparison& comparison : comparisons) pairs.push_back(PairJson(comparison));
  return {
      {"schema", "lkbench-compare"},
      {"schema_version", 1},
      {"test",
       "Welch's t test on the intervals, with as many degrees of freedom as they tell independently, Holm's "
       "correction over the figures of a pair"},
      {"level", kLevel},
      {"pairs", pairs}};
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Comparison.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <random>

#include "TemporaryFolder.h"
#include "lkbench/Failure.h"
#include "lkbench/results/RunFile.h"

using namespace lkbench;

namespace {

// A run whose seconds have about `rate` executions of about `milliseconds`, both with 5 % noise.
Json Drawn(unsigned seed, double rate, double milliseconds, int seconds = 60) {
  std::mt19937 random(seed);
  std::normal_distribution<double> noise(1, 0.05);
  RunRecord record;
  PhaseRecord phase;
  phase.settings.name = "base";
  phase.measured.elapsed = static_cast<std::uint64_t>(seconds) * 1000000000;
  for (int second = 0; second < seconds; ++second) {
    Interval interval;
    interval.begin = static_cast<std::uint64_t>(second) * 1000000000;
    interval.end = interval.begin + 1000000000;
    HistogramData times;
    const auto count = static_cast<std::uint64_t>(rate * noise(random));
    const double level = milliseconds * noise(random);
    for (std::uint64_t i = 0; i < count; ++i)
      times.Record(static_cast<std::uint64_t>(level * 1e6 *
                                              (0.5 + static_cast<double>(i) / static_cast<double>(count))));
    interval.total.executions = count;
    interval.total.response = DigestOf(times);
    record.intervals.Append(interval);
    phase.measured.total.executions += count;
    phase.measured.total.response.Add(times);
  }
  record.phases = {phase};
  record.measured = phase.measured;
  RunFacts facts;
  facts.workload = &record;
  facts.job = {{"users", 4}, {"results", "a"}};
  Json run = Json::parse(RunFileText(RunFileJson(facts)));
  run["lkbench"]["optimised"] = true;  // whatever this program is
  return run;
}

Comparison Pair(const Json& first, const Json& second) {
  return CompareRuns({"one", "", first}, {"two", "", second});
}

const FigureComparison& Figure(const Comparison& comparison, const std::string& name) {
  for (const FigureComparison& figure : comparison.phases.at(0).figures)
    if (figure.name == name) return figure;
  throw std::out_of_range(name);
}

std::string Refusal(const std::function<void()>& action) {
  try {
    action();
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST(Comparison, FindsNoDifferenceBetweenRunsOfTheSameKind) {
  int claimed = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const Comparison comparison = Pair(Drawn(seed, 200, 5), Drawn(seed + 1000, 200, 5));
    bool any = false;
    for (const FigureComparison& figure : comparison.phases.at(0).figures)
      any |= figure.judgement != Judgement::kNoise;
    claimed += any;
  }
  EXPECT_LE(claimed, 5);  // of 40 pairs, with six figures each; 2 are expected
}

TEST(Comparison, FindsALowerThroughputAndSaysThatItIsWorse) {
  const Comparison comparison = Pair(Drawn(1, 200, 5), Drawn(2, 190, 5));
  const FigureComparison& figure = Figure(comparison, "throughput");
  EXPECT_EQ(figure.judgement, Judgement::kLower);
  EXPECT_FALSE(figure.is_better);
  EXPECT_NEAR(figure.change, -0.05, 0.02);
  EXPECT_EQ(Figure(comparison, "p95").judgement, Judgement::kNoise);
}

TEST(Comparison, FindsShorterTimesAndSaysThatTheyAreBetter) {
  const Comparison comparison = Pair(Drawn(1, 200, 5), Drawn(2, 200, 4));
  for (const char* name : {"mean", "p50", "p95", "p99"}) {
    EXPECT_EQ(Figure(comparison, name).judgement, Judgement::kLower) << name;
    EXPECT_TRUE(Figure(comparison, name).is_better) << name;
    EXPECT_NEAR(Figure(comparison, name).change, -0.2, 0.03) << name;
  }
}

TEST(Comparison, SaysWhenRunsAreTooShort) {
  const Comparison comparison = Pair(Drawn(1, 200, 5, 5), Drawn(2, 100, 5, 60));
  EXPECT_EQ(Figure(comparison, "throughput").judgement, Judgement::kTooShort);
  EXPECT_FALSE(Figure(comparison, "throughput").noise);
}

TEST(Comparison, LeavesOutWarmUpsAndAShortRest) {
  Json run = Drawn(1, 200, 5, 8);
  Json& intervals = run["workload"]["intervals"];
  intervals[0]["warm_up"] = true;
  intervals[7]["end_ns"] = 7400000000;
  EXPECT_EQ(Pair(run, run).phases.at(0).first_intervals, 6u);
}

TEST(Comparison, ListsTheSettingsThatDiffer) {
  Json other = Drawn(2, 200, 5);
  other["job"]["users"] = 8;
  other["job"]["results"] = "b";
  other["seeds"]["run"] = 99;
  other["seeds"]["schema"] = 5;
  other["environment"]["server"]["settings"]["sync_binlog"] = "1";
  const Comparison comparison = Pair(Drawn(1, 200, 5), other);
  ASSERT_EQ(comparison.settings.size(), 3u);
  EXPECT_EQ(comparison.settings[0].name, "environment.server.settings.sync_binlog");
  EXPECT_EQ(comparison.settings[0].first, "");
  EXPECT_EQ(comparison.settings[1].name, "job.users");
  EXPECT_EQ(comparison.settings[1].second, "8");
  EXPECT_EQ(comparison.settings[2].name, "seeds.schema");
}

TEST(Comparison, NotesWhatMakesItUnfair) {
  Json other = Drawn(2, 200, 5);
  other["interrupted"] = "SIGINT";
  other["lkbench"]["optimised"] = false;
  other["workload"]["measured"]["total"]["failures"] = 1000;
  const Comparison comparison = Pair(Drawn(1, 200, 5), other);
  ASSERT_EQ(comparison.notes.size(), 3u);
  EXPECT_EQ(comparison.notes.front(), "two was interrupted");
  EXPECT_EQ(comparison.notes[1], "two is of an lkbench that was built without optimisation");
  EXPECT_NE(comparison.notes.back().find("more than 1 % of the executions of two failed"), std::string::npos);
}

TEST(Comparison, AsTextHasALinePerFigureInWords) {
  const std::string text = ComparisonText(Pair(Drawn(1, 200, 5), Drawn(2, 190, 5)));
  EXPECT_EQ(text.find("A  one\nB  two\n\nsettings: no difference\n\nbase"), 0u) << text;
  EXPECT_NE(text.find("lower (worse)"), text.npos) << text;
  EXPECT_NE(text.find("within noise"), text.npos) << text;
}

TEST(Comparison, AsJsonNamesTheTest) {
  const Json json = ComparisonJson({Pair(Drawn(1, 200, 5), Drawn(2, 190, 5))});
  EXPECT_EQ(json["pairs"][0]["phases"][0]["figures"][0]["judgement"], "lower");
  EXPECT_EQ(json["pairs"][0]["phases"][0]["figures"][0]["better"], false);
  EXPECT_EQ(json["level"], 0.05);
}

TEST(Comparison, OfRunsWithNothingInCommonIsRefused) {
  Json other = Drawn(2, 200, 5);
  other["workload"]["phases"][0]["name"] = "burst";
  EXPECT_EQ(Refusal([&] { Pair(Drawn(1, 200, 5), other); }),
            "one and two have no phase of the same name: nothing can be compared");
  other["workload"] = nullptr;
  EXPECT_EQ(Refusal([&] { Pair(Drawn(1, 200, 5), other); }),
            "two measured no workload: there is nothing to compare");
}

TEST(StoredRun, IsRefusedInOneLineWhenItIsNone) {
  const test_support::TemporaryFolder folder;
  const std::string place = folder.Path().string();
  const auto refusal = [&](const std::string& text) {
    std::ofstream(folder.Path() / "run.json") << text;
    return Refusal([&] { ReadRun(folder.Path()); });
  };
  EXPECT_EQ(Refusal([&] { ReadRun(folder.Path()); }),
            place + " holds no results: there is no run.json in it");
  EXPECT_EQ(Refusal([&] { ReadRun(place + "/no"); }), place + "/no: there is no such folder or file");
  EXPECT_EQ(refusal("{\"a\": }"), place + "/run.json is no JSON: byte 7 is not as expected");
  EXPECT_EQ(refusal("[]"), place + "/run.json is no run.json of lkbench: \"schema\" is not \"lkbench-run\"");
  EXPECT_EQ(refusal(R"({"schema":"lkbench-run","schema_version":3})"),
            place + "/run.json has schema version 3, this lkbench reads version 2");
  EXPECT_EQ(refusal(R"({"schema":"lkbench-run","schema_version":2})"), "");
}

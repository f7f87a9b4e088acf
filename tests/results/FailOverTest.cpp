// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/FailOver.h"

#include <gtest/gtest.h>

#include "lkbench/Failure.h"

using namespace lkbench;

namespace {

FigureComparison Figure(const std::string& name, double first, double second, Judgement judgement,
                        bool is_better) {
  FigureComparison figure;
  figure.name = name;
  figure.first = first;
  figure.second = second;
  if (first != 0) figure.change = second / first - 1;
  figure.judgement = judgement;
  figure.is_better = is_better;
  return figure;
}

// A pair whose throughput differs by noise only, and one other figure.
std::vector<Comparison> With(const FigureComparison& figure) {
  PhaseComparison phase;
  phase.name = "base";
  phase.figures = {Figure("throughput", 100, 101, Judgement::kNoise, false), figure};
  return {{"before", "after", {}, {phase}, {}}};
}

bool Fails(const FigureComparison& figure, double percent) {
  return JudgeFailOver(With(figure), percent).failed;
}

}  // namespace

TEST(FailOver, CountsWhatGotWorseByMore) {
  EXPECT_TRUE(Fails(Figure("p99", 100, 106, Judgement::kHigher, false), 5));
  EXPECT_FALSE(Fails(Figure("p99", 100, 106, Judgement::kHigher, false), 7));
  EXPECT_TRUE(Fails(Figure("mean", 100, 80, Judgement::kLower, false), 19));
}

TEST(FailOver, LetsPassWhatIsBetterOrNoise) {
  EXPECT_FALSE(Fails(Figure("p99", 100, 50, Judgement::kLower, true), 5));
  EXPECT_FALSE(Fails(Figure("p99", 100, 150, Judgement::kNoise, false), 5));
}

TEST(FailOver, CountsWhatWasNothingBefore) {
  EXPECT_TRUE(Fails(Figure("failures", 0, 3, Judgement::kHigher, false), 1000));
}

TEST(FailOver, NamesEachFigureWithItsRunAndPhase) {
  EXPECT_EQ(JudgeFailOver(With(Figure("p99", 100, 112.5, Judgement::kHigher, false)), 5).text,
            "FAIL  1 figure got worse by more than 5 % and more than noise\n"
            "  after, base: p99 got worse by 12.5 %");
  EXPECT_EQ(JudgeFailOver(With(Figure("failures", 0, 3, Judgement::kHigher, false)), 5).text,
            "FAIL  1 figure got worse by more than 5 % and more than noise\n"
            "  after, base: failures got worse from 0");
  EXPECT_EQ(JudgeFailOver(With(Figure("p99", 100, 100, Judgement::kNoise, false)), 7.5).text,
            "pass  no figure got worse by more than 7.5 % and more than noise");
}

TEST(FailOver, IsRefusedWhereNothingCanBeTold) {
  auto comparisons = With(Figure("p99", 1, 1, Judgement::kTooShort, false));
  EXPECT_FALSE(JudgeFailOver(comparisons, 5).failed);  // times are missing where nothing succeeded
  PhaseComparison& phase = comparisons[0].phases[0];
  phase.first_intervals = 3;
  phase.second_intervals = 60;
  phase.figures[0].judgement = Judgement::kTooShort;
  try {
    JudgeFailOver(comparisons, 5);
    FAIL() << "not refused";
  } catch (const UsageError& error) {
    EXPECT_STREQ(
        error.what(),
        "--fail-over: phase base has 3 intervals in before and 60 in after, too few to tell a difference "
        "from noise: compare longer runs");
  }
}

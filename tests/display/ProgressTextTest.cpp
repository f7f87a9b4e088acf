// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/ProgressText.h"

#include <gtest/gtest.h>

namespace lkbench {
namespace {

constexpr std::uint64_t kSecond = 1'000'000'000;

std::string Bar(const LoadState& load, std::size_t columns) { return TextOf(LoadBar(load)(columns)); }

TEST(ProgressText, ALineTellsRowsShareAndSpeed) {
  EXPECT_EQ(LoadLine({1200, 4000, 2 * kSecond}), "loaded 1,200 of 4,000 rows (30 %), 600 rows/s");
}

TEST(ProgressText, TheBarIsAsLongAsThereIsRoom) {
  const LoadState load{1200, 4000, 2 * kSecond};
  EXPECT_EQ(Bar(load, 70), "load [###----------]  30 %  1,200 of 4,000 rows  600 rows/s  0:05 left");
  EXPECT_EQ(Bar(load, 200).find(']'), Bar(load, 300).find(']'));
}

TEST(ProgressText, ANarrowWindowShowsTheBarAndWhatFits) {
  const LoadState load{1200, 4000, 2 * kSecond};
  EXPECT_EQ(Bar(load, 46), "load [###-------]  30 %  600 rows/s  0:05 left");
  EXPECT_EQ(Bar(load, 40), "load [####------------]  30 %  0:05 left");
  EXPECT_EQ(Bar(load, 10), "load [###-");
}

TEST(ProgressText, ABeginAndAnEndAreWhole) {
  EXPECT_EQ(Bar({0, 4000, 0}, 40), "load [-----------------]   0 %  0 rows/s");
  EXPECT_EQ(Bar({4000, 4000, kSecond}, 40), "load [################] 100 %  0:00 left");
}

std::string Status(const TablesState& state, std::size_t columns) {
  return TextOf(TablesStatus(state)(columns));
}

TEST(ProgressText, AVerbOfTablesTellsThemItsTimeAndWhatIsLeft) {
  const TablesState state{.verb = "create", .tables = 5, .of = 20, .rows = {}, .elapsed = 10 * kSecond};
  EXPECT_EQ(TablesLine(state), "create: 5 of 20 tables, 0:10");
  EXPECT_EQ(Status(state, 80), "create  5 of 20 tables  0:10  0:30 left");
  EXPECT_EQ(Status(state, 34), "create  5 of 20 tables  0:30 left");
}

TEST(ProgressText, ARefreshTellsTheRowsThatAreGone) {
  const TablesState state{.verb = "refresh", .of = 2, .rows = 4000, .elapsed = kSecond};
  EXPECT_EQ(TablesLine(state), "refresh: 0 of 2 tables, 4,000 rows removed, 0:01");
  EXPECT_EQ(Status(state, 80), "refresh  0 of 2 tables  4,000 rows removed  0:01");
  EXPECT_EQ(Status(state, 46), "refresh  0 of 2 tables  0:01");
}

TEST(ProgressText, AClockShowsHoursWhereThereAreSome) {
  EXPECT_EQ(ClockText(0), "0:00");
  EXPECT_EQ(ClockText(6'500'000'000), "0:07");
  EXPECT_EQ(ClockText(61 * kSecond), "1:01");
  EXPECT_EQ(ClockText(3600 * kSecond), "1:00:00");
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/RunRecord.h"

#include <gtest/gtest.h>

namespace lkbench {
namespace {

TableTotals Table(int number, int columns, std::uint64_t executions) {
  TableTotals table;
  table.number = number;
  table.name = "LK_REP_TABLE" + std::to_string(number);
  table.columns = columns;
  table.executions = executions;
  for (std::uint64_t i = 0; i < executions; ++i) table.response.Record(10);
  return table;
}

TEST(RunRecord, TablesOfOneColumnCountAreAddedUp) {
  const auto groups = ByColumnCount({Table(1, 5, 10), Table(2, 7, 1), Table(3, 5, 4)});
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].name, "5 columns");
  EXPECT_EQ(groups[0].executions, 14u);
  EXPECT_EQ(groups[0].response.Count(), 14u);
  EXPECT_EQ(groups[1].name, "7 columns");
  EXPECT_EQ(groups[1].executions, 1u);
}

TEST(RunRecord, PartsAddUpByTransactionAndByTable) {
  Part first;
  first.elapsed = 10;
  first.xacts.resize(1);
  first.xacts[0].name = "Insert";
  first.xacts[0].executions = first.total.executions = 3;
  first.tables = {Table(2, 5, 3)};
  Part second = first;
  second.tables = {Table(1, 6, 2), Table(2, 5, 1)};
  Part sum;
  sum.Add(first);
  sum.Add(second);
  EXPECT_EQ(sum.elapsed, 20u);
  EXPECT_EQ(sum.total.executions, 6u);
  EXPECT_EQ(sum.xacts[0].name, "Insert");
  EXPECT_EQ(sum.xacts[0].executions, 6u);
  ASSERT_EQ(sum.tables.size(), 2u);
  EXPECT_EQ(sum.tables[0].executions, 2u);
  EXPECT_EQ(sum.tables[1].executions, 4u);
}

TEST(RunRecord, ADigestHasCountMeanAndPercentiles) {
  HistogramData times;
  for (std::uint64_t value = 1; value <= 50; ++value) times.Record(value);
  const TimesDigest digest = DigestOf(times);
  EXPECT_EQ(digest.count, 50u);
  EXPECT_EQ(digest.mean, 25u);
  EXPECT_EQ(digest.p50, 25u);
  EXPECT_EQ(digest.p95, 48u);
  EXPECT_EQ(digest.p99, 50u);
  EXPECT_EQ(digest.max, 50u);
}

TEST(RunRecord, EventKindsHaveNames) {
  EXPECT_STREQ(NameOf(EventKind::kOutage), "outage");
  EXPECT_STREQ(NameOf(EventKind::kInterrupted), "interrupted");
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/LoadPlan.h"

#include <gmock/gmock.h>

#include "lkbench/Failure.h"

namespace lkbench {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TableState Loaded(double scale) {
  TableState table;
  table.exists = true;
  table.scale = scale;
  return table;
}

TableState WithBackup(double scale, double backup_scale) {
  TableState table = Loaded(scale);
  table.has_backup = true;
  table.backup_scale = backup_scale;
  return table;
}

Schema Of(const std::vector<TableState>& tables) {
  Schema schema;
  for (const TableState& table : tables) schema.tables[static_cast<int>(schema.tables.size()) + 1] = table;
  return schema;
}

TEST(LoadPlan, NewTablesAreLoadedWhole) {
  const LoadPlan plan = PlanLoad(Of({Loaded(0), Loaded(0)}), 1, 2, 1.5, false);
  EXPECT_EQ(plan.base, 0);
  EXPECT_EQ(plan.rows, 3000u);
  EXPECT_THAT(plan.cut_back, ElementsAre(Pair(1, 0), Pair(2, 0)));
  EXPECT_THAT(plan.scale_after, ElementsAre(Pair(1, 1.5), Pair(2, 1.5)));
}

TEST(LoadPlan, ARaisedScaleAddsTheDifference) {
  const LoadPlan plan = PlanLoad(Of({Loaded(1.5), Loaded(1.5)}), 1, 2, 2, false);
  EXPECT_EQ(plan.base, 1.5);
  EXPECT_EQ(plan.rows, 1000u);
}

TEST(LoadPlan, ALowerScaleLeavesWhatIsThere) {
  const LoadPlan plan = PlanLoad(Of({Loaded(2)}), 1, 1, 1, false);
  EXPECT_EQ(plan.rows, 0u);
  EXPECT_THAT(plan.scale_after, ElementsAre(Pair(1, 2)));
}

TEST(LoadPlan, TablesOfDifferentScalesAreCutToTheSmallest) {
  const LoadPlan plan = PlanLoad(Of({Loaded(3), Loaded(1), Loaded(2)}), 1, 3, 4, false);
  EXPECT_EQ(plan.base, 1);
  EXPECT_THAT(plan.cut_back, ElementsAre(Pair(1, 1), Pair(2, 1), Pair(3, 1)));
  EXPECT_EQ(plan.rows, 9000u);
}

TEST(LoadPlan, TablesBeforeTheFirstAreLeftAlone) {
  const LoadPlan plan = PlanLoad(Of({Loaded(3), Loaded(0), Loaded(0)}), 2, 3, 1, false);
  EXPECT_THAT(plan.cut_back, ElementsAre(Pair(2, 0), Pair(3, 0)));
  EXPECT_EQ(plan.rows, 2000u);
}

TEST(LoadPlan, WithBackupsOnlyTheirScaleCounts) {
  const LoadPlan plan = PlanLoad(Of({WithBackup(3, 1), WithBackup(3, 1)}), 1, 2, 2, true);
  EXPECT_EQ(plan.base, 1);
  EXPECT_EQ(plan.rows, 2000u);
  EXPECT_THAT(plan.scale_after, ElementsAre(Pair(1, 2), Pair(2, 2)));
}

TEST(LoadPlan, AMissingBackupIsLoadedFromTheFirstRow) {
  const LoadPlan plan = PlanLoad(Of({WithBackup(1, 1), Loaded(1)}), 1, 2, 2, true);
  EXPECT_THAT(plan.cut_back, ElementsAre(Pair(1, 1)));
  EXPECT_EQ(plan.rows, 3000u);
}

TEST(LoadPlan, BackupsAboveTheScaleStayAndAMissingOneGetsTheScale) {
  const LoadPlan plan = PlanLoad(Of({WithBackup(3, 3), Loaded(1)}), 1, 2, 2, true);
  EXPECT_THAT(plan.scale_after, ElementsAre(Pair(1, 3), Pair(2, 2)));
  EXPECT_EQ(plan.rows, 2000u);
}

TEST(LoadPlan, ATableHalfMadeFromItsBackupIsMadeAgain) {
  TableState broken = WithBackup(1, 2);
  broken.loading = "backup 3";
  const LoadPlan plan = PlanLoad(Of({broken, Loaded(2)}), 1, 2, 3, false);
  EXPECT_THAT(plan.repairs, ElementsAre(1));
  EXPECT_EQ(plan.base, 2);
}

TEST(LoadPlan, ALoadOfTheTablesThatBrokeOffNeedsNoRepair) {
  TableState broken = WithBackup(1, 2);
  broken.loading = "tables 3";
  const LoadPlan plan = PlanLoad(Of({broken}), 1, 1, 3, false);
  EXPECT_THAT(plan.repairs, IsEmpty());
  EXPECT_EQ(plan.base, 1);
}

TEST(LoadPlan, AMissingTableIsMadeFromItsBackup) {
  TableState missing = WithBackup(1, 1);
  missing.exists = false;
  EXPECT_THAT(PlanLoad(Of({missing}), 1, 1, 1, false).repairs, ElementsAre(1));
  EXPECT_THAT(PlanLoad(Of({missing}), 1, 1, 1, true).repairs, IsEmpty());
}

TEST(LoadPlan, ATableWithoutBackupThatIsMissingIsRefused) {
  EXPECT_THROW(PlanLoad(Of({TableState{}}), 1, 1, 1, false), UsageError);
  EXPECT_THROW(PlanLoad(Of({TableState{}}), 1, 1, 1, true), UsageError);
}

}  // namespace
}  // namespace lkbench

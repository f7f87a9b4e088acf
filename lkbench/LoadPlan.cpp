// SPDX-License-Identifier: Apache-2.0
#include "lkbench/LoadPlan.h"

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Job.h"

namespace lkbench {
namespace {

// A table that a broken load through the backup may have left missing or half made.
bool IsSuspect(const TableState& table) { return !table.exists || table.IsBackupLoad(); }

// Into the tables: a suspect one is made from its backup first and then holds what the backup holds.
void PlanTables(LoadPlan& plan, const Schema& schema) {
  for (int number = plan.first; number <= plan.last; ++number) {
    const TableState table = schema.Table(number);
    if (!table.exists && !table.has_backup)
      throw UsageError("load: " + TableName(number) +
                       " is missing: run `lkbench drop`, then `lkbench create`");
    const bool is_repaired = IsSuspect(table) && table.has_backup;
    if (is_repaired) plan.repairs.push_back(number);
    plan.cut_back[number] = is_repaired ? table.backup_scale : table.scale;
  }
}

// Into the backups: those that are missing are made by the load itself and start empty.
void PlanBackups(LoadPlan& plan, const Schema& schema) {
  for (int number = plan.first; number <= plan.last; ++number) {
    const TableState table = schema.Table(number);
    if (!table.exists && !table.has_backup)
      throw UsageError("load: " + TableName(number) +
                       " and its backup are missing: run `lkbench drop`, then `lkbench create`");
    if (table.has_backup) plan.cut_back[number] = table.backup_scale;
  }
}

// One scale for all: the transaction takes every table for loaded to the same one.
void LevelOut(LoadPlan& plan) {
  if (plan.cut_back.empty()) return;
  plan.base =
      std::ranges::min_element(plan.cut_back, {}, [](const auto& each) { return each.second; })->second;
  for (auto& [number, scale] : plan.cut_back) scale = plan.base;
}

}  // namespace

LoadPlan PlanLoad(const Schema& schema, int first, int last, double wanted, bool use_backup) {
  LoadPlan plan;
  plan.first = first;
  plan.last = last;
  plan.use_backup = use_backup;
  plan.wanted = wanted;
  if (use_backup)
    PlanBackups(plan, schema);
  else
    PlanTables(plan, schema);
  LevelOut(plan);
  for (int number = first; number <= last; ++number) {
    const double base = plan.cut_back.contains(number) ? plan.base : 0;
    plan.scale_after[number] = std::max(base, wanted);
    const std::int64_t added = RowsAtScale(wanted) - RowsAtScale(base);
    plan.rows += static_cast<std::uint64_t>(std::max<std::int64_t>(added, 0));
  }
  return plan;
}

}  // namespace lkbench

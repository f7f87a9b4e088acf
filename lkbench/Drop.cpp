// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "lkbench/Bench.h"
#include "lkbench/Failure.h"
#include "lkbench/Precondition.h"
#include "lkbench/TablesProgress.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

// Numbers from `first` on of tables that exist, or of backups that have lost their table.
std::vector<int> Left(const Schema& schema, int first, bool TableState::*what) {
  std::vector<int> numbers;
  for (const auto& [number, table] : schema.tables)
    if (number >= first && table.*what) numbers.push_back(number);
  return numbers;
}

// The drop ends at the first number without a table, so it is begun anew behind every gap. Its result says
// nothing (it is 0 also when all went well): what is left in the dictionary does.
void DropTables(Bench& bench, int first) {
  std::vector<int> left = Left(ReadSchema(bench.Admin()), first, &TableState::exists);
  const size_t all = left.size();
  std::optional<TablesProgress> progress;
  if (all > 0) progress.emplace(bench, "drop", all);
  while (!left.empty()) {
    CBenchmarkProperties properties = PropertiesOf(bench.job);
    properties.SetIntAttribute1(left.front());
    const auto xact = bench.Copy(Role::kDropTables, bench.Admin(), Seat{}, properties);
    RunAlone(bench.Admin(), bench.breaker, *xact, [&] { progress->Tick(); });
    bench.ThrowIfInterrupted();
    const std::vector<int> now = Left(ReadSchema(bench.Admin()), first, &TableState::exists);
    if (now.size() == left.size())
      throw PrepareError("drop: " + TableName(left.front()) + " could not be dropped");
    left = now;
  }
  progress.reset();
  for (const int number : Left(ReadSchema(bench.Admin()), first, &TableState::has_backup))
    bench.Admin().Run("DROP TABLE " + BackupName(number));
  if (all > 0) bench.console.Progress("dropped " + Plural(all, "table"));
}

void DropWhole(Bench& bench, const Schema& schema) {
  DropTables(bench, 1);
  const CBenchmarkProperties properties = PropertiesOf(bench.job);
  if (schema.has_properties) bench.RunObject(Role::kDropProperties, properties);
  if (schema.has_sequence) bench.RunObject(Role::kDropSequence, properties);
  if (schema.has_state) DropStateTable(bench.Admin());
  bench.console.Progress("dropped the properties table and the sequence");
}

void DropFrom(Bench& bench, const Schema& schema, int first) {
  StateChanges changes;
  for (const auto& [number, table] : schema.tables)
    if (number >= first) changes.Forget(number);
  changes.Remove("creating");
  bench.job.tables = std::min(first - 1, schema.table_count);
  bench.job.first_table = 1;
  bench.job.scale = std::max(schema.HighestScale(), schema.created_scale.value_or(0));
  DropTables(bench, first);
  bench.RunObject(Role::kRefreshProperties, PropertiesOf(bench.job));
  changes.Write(bench.Admin());
}

}  // namespace

void DropSchema(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  const int first = FirstTable(bench.job);
  if (schema.an_object.empty() && !schema.has_state) {
    bench.console.Progress("nothing to drop");
    return;
  }
  if (first > 1 && schema.has_properties && schema.has_state)
    DropFrom(bench, schema, first);
  else
    DropWhole(bench, schema);
}

}  // namespace lkbench

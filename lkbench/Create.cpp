// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Bench.h"
#include "lkbench/Ddl.h"
#include "lkbench/Failure.h"
#include "lkbench/Precondition.h"
#include "lkbench/TablesProgress.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

// New tables stand either in an empty schema or right behind those that are there.
void RequireRoom(const Bench& bench, const Schema& schema) {
  const int first = FirstTable(bench.job);
  if (schema.status == SchemaStatus::kNone) {
    if (first == 1) return;
    throw UsageError("create: first_table is " + std::to_string(first) +
                     " but there are no tables before it: leave it out for a new schema");
  }
  if (schema.status == SchemaStatus::kReady && first == schema.table_count + 1 && first > 1) return;
  if (schema.status != SchemaStatus::kReady)
    throw UsageError("create: the schema holds " +
                     (schema.an_object.empty() ? "LKBENCH_STATE" : schema.an_object) +
                     " of an earlier create: run `lkbench drop` first");
  throw UsageError("create: the schema has " +
                   Plural(static_cast<std::uint64_t>(schema.table_count), "table") +
                   " already: run `lkbench drop` first, or add to them with first_table " +
                   std::to_string(schema.table_count + 1));
}

void NoteBegin(Bench& bench, bool is_new, int first) {
  if (is_new) CreateStateTable(bench.Admin());
  StateChanges changes;
  changes.Set("creating", std::to_string(first) + ".." + std::to_string(bench.job.tables));
  if (is_new) changes.Set("scale", Short(bench.job.scale));
  for (int number = first; number <= bench.job.tables; ++number) changes.Forget(number);
  changes.Write(bench.Admin());
}

}  // namespace

void MakeObjects(Bench& bench, bool is_new) {
  const CBenchmarkProperties properties = PropertiesOf(bench.job);
  {
    const int tables = bench.job.tables - FirstTable(bench.job) + 1;
    const TablesProgress progress(bench, "create", static_cast<std::size_t>(tables));
    bench.RunObject(Role::kCreateTables, properties, [&] { progress.Tick(); });
  }
  if (is_new) {
    bench.RunObject(Role::kCreateSequence, properties);
    bench.RunObject(Role::kCreateProperties, properties);
  } else {
    bench.RunObject(Role::kRefreshProperties, properties);
  }
}

void CreateSchema(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  RequireRoom(bench, schema);
  const bool is_new = schema.status == SchemaStatus::kNone;
  const int first = FirstTable(bench.job);
  NoteBegin(bench, is_new, first);
  MakeObjects(bench, is_new);
  StateChanges done;
  done.Remove("creating");
  done.Write(bench.Admin());
  const int made = bench.job.tables - first + 1;
  bench.console.Progress("created " + Plural(static_cast<std::uint64_t>(made), "table") +
                         (is_new ? ", the properties table and the sequence" : "") + " (schema seed " +
                         std::to_string(bench.job.schema_seed) + ')');
}

}  // namespace lkbench

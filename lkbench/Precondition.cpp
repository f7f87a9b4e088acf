// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Precondition.h"

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

void RequireReady(const Schema& schema, const std::string& verb) {
  switch (schema.status) {
    case SchemaStatus::kNone:
      throw UsageError(verb + ": there are no replication tables yet: run `lkbench create` first");
    case SchemaStatus::kForeign:
      throw UsageError(
          verb + ": the schema holds " + schema.an_object +
          " but no LKBENCH_STATE, so lkbench did not make it: run `lkbench drop`, then `lkbench create`");
    case SchemaStatus::kCreating:
      throw UsageError(verb + ": an earlier create did not end: run `lkbench drop`, then `lkbench create`");
    case SchemaStatus::kReady:
      return;
  }
}

}  // namespace

int FirstTable(const Job& job) { return std::max(1, job.first_table); }

void RequireSchema(Bench& bench, const Schema& schema, const char* verb) {
  RequireReady(schema, verb);
  Job& job = bench.job;
  if (!bench.IsSet("tables")) job.tables = schema.table_count;
  const std::string has = std::string(verb) + ": the schema has " +
                          Plural(static_cast<std::uint64_t>(schema.table_count), "table");
  if (job.tables != schema.table_count)
    throw UsageError(has + ", the job says " + std::to_string(job.tables) + ": set tables to " +
                     std::to_string(schema.table_count) + ", or run `lkbench drop` and `lkbench create`");
  if (FirstTable(job) > job.tables)
    throw UsageError(has + ", first_table is " + std::to_string(job.first_table) +
                     ": create the tables first");
}

void RequireWholeTables(const Bench& bench, const Schema& schema, const char* verb, Broken allowed) {
  for (int number = 1; number <= bench.job.tables; ++number) {
    const TableState table = schema.Table(number);
    const std::string name = std::string(verb) + ": " + TableName(number);
    const bool is_allowed = allowed == Broken::kTableLoadsToo && !table.IsBackupLoad();
    if (!table.loading.empty() && !is_allowed)
      throw UsageError(name + " was being loaded when lkbench was stopped: run `lkbench load` first");
    if (!table.exists)
      throw UsageError(name + " is missing: run `lkbench drop`, then `lkbench create` and `lkbench load`");
  }
}

double WantedScale(Bench& bench, double otherwise) {
  if (!bench.IsSet("scale")) bench.job.scale = otherwise;
  return bench.job.scale;
}

}  // namespace lkbench

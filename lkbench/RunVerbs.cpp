// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Bench.h"
#include "lkbench/Precondition.h"
#include "lkbench/Report.h"
#include "lkbench/Text.h"
#include "lkbench/Workload.h"

namespace lkbench {
namespace {

std::vector<WorkloadUser> WorkloadUsers(Bench& bench, double scale) {
  Job job = bench.job;
  job.scale = scale;
  const CBenchmarkProperties properties = PropertiesOf(job);
  std::vector<WorkloadUser> users;
  for (VirtualUser* user : bench.users.Open(bench.job.users)) {
    users.push_back({user, {}});
    for (const WorkloadXact& each : WorkloadXacts(bench.benchmark, bench.job.mix)) {
      if (each.weight == 0) continue;
      auto share = std::make_unique<WorkloadShare>();
      share->xact.reset(bench.benchmark.GetNewXactByID(each.id));
      share->weight = each.weight;
      Bind(*share->xact, *user, {user->Number(), bench.job.users}, bench.benchmark, properties, bench.cancel,
           *bench.job.run_seed);
      users.back().shares.push_back(std::move(share));
    }
  }
  return users;
}

// Rows are drawn from 1 .. 1000 * scale: above what is loaded there are none to find.
double WorkloadScale(Bench& bench, const Schema& schema) {
  const double loaded = schema.LowestScale(1, bench.job.tables);
  if (loaded == 0)
    bench.console.Problem(
        "warning: the tables are empty: updates and deletes find no rows until `lkbench load`");
  const double wanted = WantedScale(bench, loaded);
  if (loaded > 0 && wanted > loaded) {
    bench.console.Problem("warning: scale is " + Short(wanted) + " but the tables are loaded to " +
                          Short(loaded) + " only: the workload uses what is there");
    return loaded;
  }
  return wanted;
}

}  // namespace

void RunWorkload(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  RequireSchema(bench, schema, "workload");
  RequireWholeTables(bench, schema, "workload");
  const double scale = WorkloadScale(bench, schema);
  std::vector<WorkloadUser> users = WorkloadUsers(bench, scale);
  bench.console.Progress("workload: " + Plural(users.size(), "user") + ", " +
                         Plural(static_cast<std::uint64_t>(bench.job.tables), "table") + ", scale " +
                         Short(scale) + ", run seed " + std::to_string(*bench.job.run_seed));
  IntervalReport intervals;
  Workload workload(users, bench.cancel, bench.breaker, *bench.job.run_seed);
  bench.workload = workload.Run(bench.job.duration, [&](const WorkloadResult& so_far) {
    bench.console.Progress(intervals.Line(so_far));
  });
}

namespace {

// Whether there is nothing of the benchmark yet, or only the tables before the first one that the job means.
bool NeedsCreate(const Bench& bench, const Schema& schema) {
  const bool adds = FirstTable(bench.job) > 1 && schema.table_count == FirstTable(bench.job) - 1;
  return schema.status == SchemaStatus::kNone || (schema.status == SchemaStatus::kReady && adds);
}

}  // namespace

void RunAll(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  if (NeedsCreate(bench, schema)) {
    CreateSchema(bench);
  } else {
    RequireSchema(bench, schema, "run");
    bench.console.Progress("the schema is there already (" +
                           Plural(static_cast<std::uint64_t>(schema.table_count), "table") + "), using it");
  }
  LoadTables(bench);
  RunWorkload(bench);
  bench.ThrowIfInterrupted();
  RefreshTables(bench);
}

}  // namespace lkbench

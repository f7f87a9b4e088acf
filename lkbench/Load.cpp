// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <chrono>

#include "lkbench/Bench.h"
#include "lkbench/Failure.h"
#include "lkbench/LoadPlan.h"
#include "lkbench/LoadProgress.h"
#include "lkbench/Precondition.h"
#include "lkbench/Refresh.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

CBenchmarkProperties LoadProperties(const Bench& bench, const LoadPlan& plan) {
  Job job = bench.job;
  job.scale = plan.wanted;
  job.first_table = plan.first;
  job.tables = plan.last;
  job.use_backup = plan.use_backup;
  CBenchmarkProperties properties = PropertiesOf(job);
  properties.SetLoadedMaxScale(plan.base);
  return properties;
}

std::int64_t HighestId(Bench& bench, const std::string& table) {
  const std::string text = bench.Admin().Query("SELECT MAX(ID) FROM " + table).at(0).at(0);
  double id = 0;
  ParseReal(text, id);
  return static_cast<std::int64_t>(id);
}

// Lowers what is written down to the plan's base and marks the tables as being loaded: from here on a broken
// load is seen by the next one.
void NoteBegin(Bench& bench, const LoadPlan& plan) {
  StateChanges changes;
  const std::string mark = (plan.use_backup ? "backup " : "tables ") + Short(plan.wanted);
  for (int number = plan.first; number <= plan.last; ++number) {
    changes.SetLoading(number, mark);
    const auto cut = plan.cut_back.find(number);
    if (plan.use_backup)
      changes.SetBackupScale(number, cut == plan.cut_back.end() ? 0 : cut->second);
    else
      changes.SetTableScale(number, cut->second);
  }
  changes.Write(bench.Admin());
}

void NoteEnd(Bench& bench, const LoadPlan& plan) {
  StateChanges changes;
  for (const auto& [number, scale] : plan.scale_after) {
    changes.SetTableScale(number, scale);
    if (plan.use_backup) changes.SetBackupScale(number, scale);
    changes.ClearLoading(number);
  }
  changes.Write(bench.Admin());
}

// What a workload or a broken load left above the base would collide with the rows to come.
void CutSurplus(Bench& bench, const LoadPlan& plan) {
  std::map<int, double> surplus;
  for (const auto& [number, scale] : plan.cut_back) {
    const std::string name = plan.use_backup ? BackupName(number) : TableName(number);
    const std::int64_t highest = HighestId(bench, name);
    if (highest <= RowsAtScale(scale)) continue;
    surplus[number] = scale;
    bench.console.Progress(name + ": removing the rows above ID " + std::to_string(RowsAtScale(scale)) +
                           " that a workload or a broken load left");
  }
  CutBack(bench, "load", surplus, plan.use_backup ? Copies::kBackups : Copies::kTables,
          std::max(plan.base, plan.wanted));
}

StepResult RunLoad(Bench& bench, const LoadPlan& plan, int users) {
  const CBenchmarkProperties properties = LoadProperties(bench, plan);
  auto shares = SharesFor(bench, users);
  std::vector<const CXact*> copies;
  for (StepShare& share : shares) {
    share.xacts.push_back(bench.Copy(Role::kLoad, *share.user, {share.user->Number(), users}, properties));
    copies.push_back(share.xacts.back().get());
  }
  const StatusScope scope(bench.console);
  const LoadProgress progress(bench.views, copies, plan.rows);
  StepResult result = StepRunner(bench.cancel, bench.breaker).Run(shares, [&] { progress.Tick(); });
  progress.End(result.done);
  return result;
}

// The last row tells: rows are written in order, and a failed batch ends its user's share. A table that got
// no row may miss any row by now, a workload deletes them.
void RequireLoaded(Bench& bench, const LoadPlan& plan) {
  for (const auto& [number, scale] : plan.scale_after) {
    if (!plan.use_backup && RowsAtScale(scale) == RowsAtScale(plan.base)) continue;
    const std::int64_t highest = HighestId(bench, TableName(number));
    if (highest != RowsAtScale(scale))
      throw PrepareError("load: " + TableName(number) + " ends with ID " + std::to_string(highest) +
                         " instead of " + std::to_string(RowsAtScale(scale)) + ": run `lkbench load` again");
  }
}

void RunStep(Bench& bench, const LoadPlan& plan, int users) {
  const std::uint64_t problems = bench.log.Problems();
  const StepResult result = RunLoad(bench, plan, users);
  bench.ThrowIfInterrupted();
  if (!result.done) throw PrepareError("load: " + result.failure + ": run `lkbench load` again to go on");
  if (bench.log.Problems() != problems)
    throw PrepareError("load: it ended, but not without a problem: run `lkbench load` again");
  RequireLoaded(bench, plan);
}

// A load that adds nothing through a table's backup makes the table from it. One table at a time, by one
// user.
void Repair(Bench& bench, const Schema& schema, int number) {
  LoadPlan plan = PlanLoad(schema, number, number, schema.Table(number).backup_scale, true);
  bench.console.Progress(TableName(number) + ": making it anew from its backup, a load was broken off");
  CutSurplus(bench, plan);
  RunStep(bench, plan, 1);
  NoteEnd(bench, plan);
}

}  // namespace

void LoadTables(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  RequireSchema(bench, schema, "load");
  const double wanted = WantedScale(bench, std::max(schema.created_scale.value_or(0), schema.HighestScale()));
  const LoadPlan plan =
      PlanLoad(schema, FirstTable(bench.job), bench.job.tables, wanted, bench.job.use_backup);
  if (plan.base > wanted)
    bench.console.Progress("the tables are loaded to scale " + Short(plan.base) +
                           " already: `lkbench refresh --scale " + Short(wanted) + "` cuts them back");
  bench.users.Open(bench.job.users);  // who cannot connect fails before anything is changed
  for (const int number : plan.repairs) Repair(bench, schema, number);
  NoteBegin(bench, plan);
  const double highest = std::max({schema.HighestScale(), plan.base, wanted});
  ResetSequence(bench,
                highest);  // before the rows are there: a break in between leaves no ID to collide with
  const auto begin = std::chrono::steady_clock::now();
  CutSurplus(bench, plan);
  RunStep(bench, plan, bench.job.users);
  NoteEnd(bench, plan);
  ResetProperties(bench, highest);
  const std::chrono::nanoseconds elapsed = std::chrono::steady_clock::now() - begin;
  bench.load = LoadResult{plan.rows, static_cast<std::uint64_t>(elapsed.count())};
  bench.console.Progress(LoadSummary(*bench.load, plan));
}

}  // namespace lkbench

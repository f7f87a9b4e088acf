// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Refresh.h"

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Precondition.h"
#include "lkbench/TablesProgress.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

// One transaction copy: where it sits decides which tables it deals itself.
struct Deal {
  Seat seat;
  double scale;
};

// With one scale for every table of the schema the transaction deals the tables itself, round-robin.
// Otherwise there is one copy per table: on seat N of as many seats as tables it takes table N alone.
std::vector<Deal> DealOut(const Bench& bench, const std::map<int, double>& scales) {
  const int tables = bench.job.tables;
  const double scale = scales.begin()->second;
  const bool is_uniform = static_cast<int>(scales.size()) == tables &&
                          std::ranges::all_of(scales, [&](const auto& each) { return each.second == scale; });
  std::vector<Deal> deals;
  if (is_uniform) {
    const int seats = std::min(bench.job.users, tables);
    for (int seat = 1; seat <= seats; ++seat) deals.push_back({{seat, seats}, scale});
  } else {
    for (const auto& [number, each] : scales) deals.push_back({{number, tables}, each});
  }
  return deals;
}

CBenchmarkProperties PropertiesAt(const Bench& bench, double scale) {
  Job job = bench.job;
  job.scale = scale;
  return PropertiesOf(job);
}

}  // namespace

void CutBack(Bench& bench, const std::string& verb, const std::map<int, double>& scales, Copies copies,
             double highest) {
  if (scales.empty()) return;
  const std::vector<Deal> deals = DealOut(bench, scales);
  auto shares = SharesFor(bench, std::min<int>(bench.job.users, static_cast<int>(deals.size())));
  for (size_t i = 0; i < deals.size(); ++i) {
    StepShare& share = shares[i % shares.size()];
    CBenchmarkProperties properties = PropertiesAt(bench, deals[i].scale);
    properties.SetLoadedMaxScale(highest);
    properties.SetCreateUseBackup(copies == Copies::kBackups);
    properties.SetIntAttribute2(copies == Copies::kBackups ? 1 : 0);
    share.xacts.push_back(bench.Copy(Role::kRefreshTables, *share.user, deals[i].seat, properties));
  }
  StepResult result;
  {
    const TablesProgress progress(bench, verb, scales.size(), RowsRemoved::kTold);
    result = StepRunner(bench.cancel, bench.breaker).Run(shares, [&] { progress.Tick(); });
  }
  bench.ThrowIfInterrupted();
  if (!result.done)
    throw PrepareError(verb + ": " + result.failure + ": run `lkbench " + verb + "` again to go on");
}

void ResetSequence(Bench& bench, double scale) {
  bench.RunObject(Role::kRefreshSequence, PropertiesAt(bench, scale));
}

void ResetProperties(Bench& bench, double scale) {
  bench.RunObject(Role::kRefreshProperties, PropertiesAt(bench, scale));
}

namespace {

// The scales after the refresh, written down before a row goes.
std::map<int, double> LowerScales(Bench& bench, const Schema& schema, double wanted, Copies copies) {
  std::map<int, double> scales;
  StateChanges changes;
  for (int number = FirstTable(bench.job); number <= bench.job.tables; ++number) {
    const TableState table = schema.Table(number);
    if (copies == Copies::kBackups && !table.has_backup) continue;
    const double recorded = copies == Copies::kBackups ? table.backup_scale : table.scale;
    scales[number] = std::min(recorded, wanted);
    if (scales[number] == recorded) continue;
    if (copies == Copies::kBackups)
      changes.SetBackupScale(number, scales[number]);
    else
      changes.SetTableScale(number, scales[number]);
  }
  changes.Write(bench.Admin());
  return scales;
}

}  // namespace

void RefreshTables(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  RequireSchema(bench, schema, "refresh");
  RequireWholeTables(bench, schema, "refresh", Broken::kTableLoadsToo);
  bench.users.Open(std::min(bench.job.users, bench.job.tables));  // before anything is changed
  const double highest = schema.HighestScale();
  const double wanted = WantedScale(bench, highest > 0 ? highest : schema.created_scale.value_or(0));
  const auto scales = LowerScales(bench, schema, wanted, Copies::kTables);
  CutBack(bench, "refresh", scales, Copies::kTables, highest);
  if (bench.job.use_backup)
    CutBack(bench, "refresh", LowerScales(bench, schema, wanted, Copies::kBackups), Copies::kBackups,
            highest);
  StateChanges whole;
  for (const auto& [number, scale] : scales) whole.ClearLoading(number);
  whole.Write(bench.Admin());
  const double left = std::max(wanted, ReadSchema(bench.Admin()).HighestScale());
  ResetSequence(bench, left);
  ResetProperties(bench, left);
  bench.console.Progress("refreshed " + Plural(scales.size(), "table") + " to scale " + Short(wanted) +
                         ", the next new ID is " + std::to_string(RowsAtScale(left) + 1));
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "lkbench/Bench.h"
#include "lkbench/Failure.h"
#include "lkbench/Precondition.h"
#include "lkbench/Text.h"
#include "lkbench/options/PhaseKeys.h"
#include "lkbench/workload/TableWatch.h"
#include "lkbench/workload/Workload.h"

namespace lkbench {
namespace {

// A transaction that any phase has in its mix, with its weight in each.
struct XactWeights {
  int id;
  std::vector<int> weights;
};

std::vector<XactWeights> WeightsOf(const CSSBenchmark& benchmark, const std::vector<Phase>& phases) {
  std::vector<XactWeights> all;
  for (const Phase& phase : phases) {
    const std::vector<WorkloadXact> xacts = WorkloadXacts(benchmark, phase.mix);
    all.resize(xacts.size());
    for (size_t i = 0; i < xacts.size(); ++i) {
      all[i].id = xacts[i].id;
      all[i].weights.push_back(xacts[i].weight);
    }
  }
  std::erase_if(all, [](const XactWeights& each) {
    return std::ranges::all_of(each.weights, [](int weight) { return weight == 0; });
  });
  return all;
}

std::vector<WorkloadUser> WorkloadUsers(Bench& bench, const std::vector<Phase>& phases, double scale) {
  Job job = bench.job;
  job.scale = scale;
  const CBenchmarkProperties properties = PropertiesOf(job);
  const int count = std::ranges::max(phases, {}, &Phase::users).users;
  std::vector<WorkloadUser> users;
  for (VirtualUser* user : bench.users.Open(count)) {
    users.push_back({user, {}});
    for (const XactWeights& each : WeightsOf(bench.benchmark, phases)) {
      auto share = std::make_unique<WorkloadShare>();
      share->xact = NewWorkloadXact(bench.benchmark, each.id);
      share->weights = each.weights;
      Bind(*share->xact, *user, {user->Number(), count}, bench.benchmark, properties, bench.cancel,
           *bench.job.run_seed);
      users.back().shares.push_back(std::move(share));
    }
  }
  return users;
}

// How many columns each table has beside ID, at its number.
std::vector<int> ColumnCounts(Bench& bench) {
  std::vector<int> columns(static_cast<size_t>(bench.job.tables) + 1);
  const auto rows = bench.Admin().Query(
      "SELECT TABLE_NAME, COUNT(*) FROM USER_TAB_COLUMNS WHERE TABLE_NAME LIKE 'LK_REP_TABLE%' GROUP BY "
      "TABLE_NAME");
  for (const auto& row : rows) {
    const auto number = static_cast<size_t>(TableNumberIn(row[0]));
    std::int64_t count = 0;
    if (row[0] == TableName(static_cast<int>(number)) && number < columns.size() &&
        ParseInteger(row[1], count))
      columns[number] = static_cast<int>(count) - 1;
  }
  return columns;
}

// A workload with all that its users' threads use.
struct WorkloadRun {
  WorkloadRun(Bench& bench, std::vector<WorkloadUser> its_users, const std::vector<Phase>& phases)
      : users(std::move(its_users)),
        context{bench.cancel,
                bench.breaker,
                *bench.job.run_seed,
                {bench.job.on_disconnect, bench.job.reconnect_pause, bench.job.reconnect_limit},
                ColumnCounts(bench)},
        workload(users, phases, context, PatienceOf(bench.job)) {}

  std::vector<WorkloadUser> users;
  RunContext context;
  Workload workload;
};

// The threads of users that were given up use it as long as they live.
struct EndUnlessStuck {
  bool& is_stuck;
  void operator()(WorkloadRun* run) const {
    is_stuck = run->workload.HasGivenUp();
    if (!is_stuck) delete run;
  }
};

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

void TellNews(const RunViews& views, const RunNotes::News& news) {
  for (const Event& event : news.events) views.Tell(&RunView::OnEvent, event);
  for (const ErrorRecord& error : news.errors) views.Tell(&RunView::OnNewError, error);
}

}  // namespace

void RunWorkload(Bench& bench) {
  const Schema schema = ReadSchema(bench.Admin());
  RequireSchema(bench, schema, "workload");
  RequireWholeTables(bench, schema, "workload");
  const double scale = WorkloadScale(bench, schema);
  const std::vector<Phase> phases = PhasesOf(bench.job);
  std::vector<WorkloadUser> users = WorkloadUsers(bench, phases, scale);
  bench.console.Progress("workload: " + Plural(users.size(), "user") + ", " +
                         Plural(static_cast<std::uint64_t>(bench.job.tables), "table") + ", scale " +
                         Short(scale) + ", run seed " + std::to_string(*bench.job.run_seed));
  const std::unique_ptr<WorkloadRun, EndUnlessStuck> run(new WorkloadRun(bench, std::move(users), phases),
                                                         EndUnlessStuck{bench.is_stuck});
  const StatusScope scope(bench.console);
  const auto tell_news = [&] { TellNews(bench.views, run->context.notes.TakeNews()); };
  bench.workload = run->workload.Run(
      [&](const Progress& progress) {
        tell_news();
        bench.views.Tell(&RunView::OnInterval, progress);
      },
      [&](const PhaseRecord& phase) { bench.views.Tell(&RunView::OnPhaseEnd, phase); });
  tell_news();
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
  if (bench.workload->given_up_users > 0)
    throw Failure(kRanWithFailures,
                  "the database does not answer: the refresh is left out, run `lkbench refresh` later");
  RefreshTables(bench);
}

}  // namespace lkbench

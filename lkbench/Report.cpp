// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Report.h"

#include <algorithm>

#include "lkbench/BuildFacts.h"
#include "lkbench/Text.h"
#include "lkbench/TextTable.h"
#include "lkbench/display/ProgressText.h"

namespace lkbench {
namespace {

constexpr size_t kTimesColumns = 5;

void AppendTimes(TextRow& row, const HistogramData& times) {
  row.push_back(Milliseconds(times.Mean()));
  for (const double percent : {50.0, 95.0, 99.0}) row.push_back(Milliseconds(times.Percentile(percent)));
  row.push_back(Milliseconds(times.Max()));
}

TextRow CountsRow(const XactTotals& totals, std::uint64_t elapsed) {
  TextRow row = {totals.name, Grouped(totals.executions), Grouped(totals.failures), Grouped(totals.rows),
                 PerSecondText(totals.executions - totals.failures, elapsed)};
  AppendTimes(row, totals.response);
  return row;
}

TextRow DatabaseRow(const XactTotals& totals) {
  TextRow row = {"  database part", "", "", "", ""};
  AppendTimes(row, totals.database);
  return row;
}

std::vector<TextRow> WorkloadRows(const Part& result) {
  std::vector<TextRow> rows = {{"transaction (times in ms)", "executions", "failures", "rows", "per s",
                                "mean", "p50", "p95", "p99", "max"}};
  for (const XactTotals& totals : result.xacts) {
    rows.push_back(CountsRow(totals, result.elapsed));
    rows.push_back(DatabaseRow(totals));
  }
  rows.push_back(CountsRow(result.total, result.elapsed));
  rows.push_back(DatabaseRow(result.total));
  return rows;
}

// The counts, and the times below them, for a window in which the two do not fit side by side.
std::string InTwo(std::vector<TextRow> rows) {
  std::vector<TextRow> counts;
  for (const TextRow& row : rows)
    if (!row[1].empty()) counts.emplace_back(row.begin(), row.end() - kTimesColumns);
  counts.front().front() = "transaction";
  for (TextRow& row : rows) row.erase(row.begin() + 1, row.end() - kTimesColumns);
  rows.front().front() = "times in ms";
  return Aligned(counts) + "\n\n" + Aligned(rows);
}

// How many processors lkbench kept busy.
double BusyProcessors(const Part& part) {
  return part.elapsed == 0 ? 0 : static_cast<double>(part.processor) / static_cast<double>(part.elapsed);
}

}  // namespace

std::string WorkloadTable(const RunRecord& record, size_t columns) {
  const std::vector<TextRow> rows = WorkloadRows(record.measured);
  std::string table = Aligned(rows);
  return table.find('\n') <= columns ? table : InTwo(rows);
}

std::string ProcessorLine(const Part& part) {
  std::string line = "lkbench itself: " + Fixed(BusyProcessors(part), 2) + " processors";
  if (part.total.executions > 0)
    line += ", " +
            Fixed(static_cast<double>(part.processor) / 1e3 / static_cast<double>(part.total.executions), 1) +
            " us an execution";
  return line;
}

std::string ProblemTable(const std::vector<ProblemLine>& problems) {
  std::string text;
  for (const ProblemLine& problem : problems) {
    if (problem.count < 2) continue;
    text += (text.empty() ? "" : "\n") + Grouped(problem.count) + " times: " + problem.text;
  }
  return text;
}

std::vector<std::string> Doubts(const RunRecord& record, unsigned processors) {
  constexpr double kBusy = 0.8;  // beyond that the database waits for lkbench, too
  std::vector<std::string> doubts;
  if (!kIsOptimised)
    doubts.emplace_back("lkbench was built without optimisation: its figures are not representative");
  if (record.lost_users > 0)
    doubts.push_back(Plural(static_cast<std::uint64_t>(record.lost_users), "user") + " of " +
                     std::to_string(record.users) + " lost the session and ended early");
  if (record.given_up_users > 0)
    doubts.push_back(Plural(static_cast<std::uint64_t>(record.given_up_users), "user") + " of " +
                     std::to_string(record.users) + " had a call that never came back and were given up");
  if (BusyProcessors(record.measured) > kBusy * processors)
    doubts.push_back("lkbench itself kept " + Fixed(BusyProcessors(record.measured), 2) + " of " +
                     std::to_string(processors) + " processors busy: it may be what limits the figures");
  std::vector<std::string> few;
  for (const XactTotals& totals : record.measured.xacts)
    if (totals.response.Count() > 0 && totals.response.Count() < 100) few.push_back(totals.name);
  if (!few.empty()) doubts.push_back("p99 of fewer than 100 executions is their maximum: " + Join(few, ", "));
  return doubts;
}

}  // namespace lkbench

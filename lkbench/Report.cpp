// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Report.h"

#include <algorithm>

#include "lkbench/Text.h"

namespace lkbench {
namespace {

std::string Padded(const std::string& text, size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string Rate(std::uint64_t count, std::uint64_t nanoseconds) {
  const double seconds = static_cast<double>(nanoseconds) / 1e9;
  return Fixed(seconds > 0 ? static_cast<double>(count) / seconds : 0, 1);
}

using Row = std::vector<std::string>;

// The first column is left-aligned, the others right-aligned.
std::string Aligned(const std::vector<Row>& rows) {
  std::vector<size_t> widths(rows.front().size());
  for (const Row& row : rows)
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  std::string text;
  for (const Row& row : rows) {
    text += text.empty() ? "" : "\n";
    text += row.front() + std::string(widths[0] - row.front().size(), ' ');
    for (size_t i = 1; i < row.size(); ++i) text += "  " + Padded(row[i], widths[i]);
  }
  return text;
}

void AppendTimes(Row& row, const HistogramData& times) {
  row.push_back(Milliseconds(times.Mean()));
  for (const double percent : {50.0, 95.0, 99.0}) row.push_back(Milliseconds(times.Percentile(percent)));
  row.push_back(Milliseconds(times.Max()));
}

Row CountsRow(const XactTotals& totals, std::uint64_t elapsed) {
  Row row = {totals.name, Grouped(totals.executions), Grouped(totals.failures), Grouped(totals.rows),
             Rate(totals.executions, elapsed)};
  AppendTimes(row, totals.response);
  return row;
}

Row DatabaseRow(const XactTotals& totals) {
  Row row = {"  database part", "", "", "", ""};
  AppendTimes(row, totals.database);
  return row;
}

bool IsOptimised() {
#ifdef __OPTIMIZE__
  return true;
#else
  return false;
#endif
}

}  // namespace

std::string IntervalLine(const Progress& progress) {
  const Interval& interval = progress.interval;
  const TimesDigest& times = interval.total.response;
  std::string line = Padded(Fixed(static_cast<double>(interval.end) / 1e9, 0), 4) + " s  " +
                     Padded(Rate(interval.total.executions, interval.end - interval.begin), 8) +
                     " tx/s  failures " + Grouped(interval.total.failures) + "  p50 " +
                     Milliseconds(times.p50) + "  p95 " + Milliseconds(times.p95) + "  p99 " +
                     Milliseconds(times.p99) + " ms";
  if (progress.phase.settings.rate > 0) line += "  backlog " + Grouped(interval.backlog);
  if (progress.phases > 1) line += "  " + progress.phase.settings.name;
  return interval.warm_up ? line + "  warm-up, not counted" : line;
}

std::string WorkloadTable(const RunRecord& record) {
  const Part& result = record.measured;
  std::vector<Row> rows = {{"transaction (times in ms)", "executions", "failures", "rows", "per s", "mean",
                            "p50", "p95", "p99", "max"}};
  for (const XactTotals& totals : result.xacts) {
    rows.push_back(CountsRow(totals, result.elapsed));
    rows.push_back(DatabaseRow(totals));
  }
  rows.push_back(CountsRow(result.total, result.elapsed));
  rows.push_back(DatabaseRow(result.total));
  return Aligned(rows);
}

std::string ProblemTable(const std::vector<ProblemLine>& problems) {
  std::string text;
  for (const ProblemLine& problem : problems) {
    if (problem.count < 2) continue;
    text += (text.empty() ? "" : "\n") + Grouped(problem.count) + " times: " + problem.text;
  }
  return text;
}

std::vector<std::string> Doubts(const RunRecord& record) {
  std::vector<std::string> doubts;
  if (!IsOptimised())
    doubts.emplace_back("lkbench was built without optimisation: its figures are not representative");
  if (record.lost_users > 0)
    doubts.push_back(Plural(static_cast<std::uint64_t>(record.lost_users), "user") + " of " +
                     std::to_string(record.users) + " lost the session and ended early");
  if (record.given_up_users > 0)
    doubts.push_back(Plural(static_cast<std::uint64_t>(record.given_up_users), "user") + " of " +
                     std::to_string(record.users) + " had a call that never came back and were given up");
  std::vector<std::string> few;
  for (const XactTotals& totals : record.measured.xacts)
    if (totals.response.Count() > 0 && totals.response.Count() < 100) few.push_back(totals.name);
  if (!few.empty()) doubts.push_back("p99 of fewer than 100 executions is their maximum: " + Join(few, ", "));
  return doubts;
}

}  // namespace lkbench

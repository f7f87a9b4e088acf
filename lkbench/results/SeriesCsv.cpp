// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/SeriesCsv.h"

#include <initializer_list>

namespace lkbench {
namespace {

constexpr SeriesColumn kColumns[] = {
    {"begin_ns", "when the interval began, counted from the common start of the users"},
    {"end_ns", "when it ended"},
    {"phase", "the name of its phase"},
    {"warm_up", "1: of the warm-up, which is not counted; 0: measured"},
    {"users", "at work when it ended"},
    {"backlog", "executions that were due and had not begun when it ended; 0 without a rate"},
    {"transaction", "the name of the transaction, or total"},
    {"executions", "failures included"},
    {"failures", "those that failed"},
    {"rows", "rows inserted, updated or deleted"},
    {"undone", "succeeded, but rolled back with a later failure before their common commit"},
    {"response_mean_ns", "response time of those that succeeded"},
    {"response_p50_ns", "its percentiles; 0 where nothing succeeded"},
    {"response_p95_ns", ""},
    {"response_p99_ns", ""},
    {"response_p999_ns", ""},
    {"response_max_ns", "the middle of the bucket of the longest one"},
    {"service_mean_ns", "service time, likewise"},
    {"service_p50_ns", ""},
    {"service_p95_ns", ""},
    {"service_p99_ns", ""},
    {"service_p999_ns", ""},
    {"service_max_ns", ""}};

std::string Head() {
  std::string head;
  for (const SeriesColumn& column : kColumns) head += (head.empty() ? "" : ",") + std::string(column.name);
  return head + '\n';
}

// Quoted where a comma, a quote or a line end would be read as something else.
std::string Field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

void Append(std::string& line, std::initializer_list<std::uint64_t> numbers) {
  for (const std::uint64_t number : numbers) line += ',' + std::to_string(number);
}

void Append(std::string& line, const TimesDigest& times) {
  Append(line, {times.mean, times.p50, times.p95, times.p99, times.p999, times.max});
}

std::string Line(const std::string& interval, const std::string& name, const XactInterval& xact) {
  std::string line = interval + ',' + Field(name);
  Append(line, {xact.executions, xact.failures, xact.rows, xact.undone});
  Append(line, xact.response);
  Append(line, xact.service);
  return line + '\n';
}

}  // namespace

std::span<const SeriesColumn> SeriesColumns() { return kColumns; }

std::string SeriesCsv(const RunRecord& record) {
  std::string text = Head();
  for (const Interval& each : record.intervals) {
    const PhaseRecord& phase = record.phases.at(each.phase);
    std::string interval = std::to_string(each.begin) + ',' + std::to_string(each.end) + ',' +
                           Field(phase.settings.name) + (each.warm_up ? ",1" : ",0") + ',' +
                           std::to_string(each.users) + ',' + std::to_string(each.backlog);
    for (std::size_t number = 0; number < each.xacts.size(); ++number)
      text += Line(interval, phase.measured.xacts.at(number).name, each.xacts[number]);
    text += Line(interval, "total", each.total);
  }
  return text;
}

}  // namespace lkbench

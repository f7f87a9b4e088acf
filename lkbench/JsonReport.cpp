// SPDX-License-Identifier: Apache-2.0
#include "lkbench/JsonReport.h"

#include <cerrno>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>

#include "lkbench/Failure.h"
#include "lkbench/Report.h"

namespace lkbench {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kSchemaVersion = 1;

Json Times(const HistogramData& times) {
  return {{"count", times.Count()},      {"mean", times.Mean()},        {"p50", times.Percentile(50)},
          {"p95", times.Percentile(95)}, {"p99", times.Percentile(99)}, {"max", times.Max()}};
}

double PerSecond(std::uint64_t count, std::uint64_t nanoseconds) {
  return nanoseconds == 0 ? 0 : static_cast<double>(count) * 1e9 / static_cast<double>(nanoseconds);
}

Json Totals(const XactTotals& totals, std::uint64_t elapsed) {
  return {{"executions", totals.executions},
          {"failures", totals.failures},
          {"rows", totals.rows},
          {"rate_per_s", PerSecond(totals.executions, elapsed)},
          {"latency_ns", Times(totals.response)},
          {"database_ns", Times(totals.database)}};
}

Json TablesJson(const std::vector<TableTotals>& tables) {
  Json list = Json::array();
  for (const TableTotals& table : tables)
    list.push_back({{"name", table.name},
                    {"columns", table.columns},
                    {"executions", table.executions},
                    {"failures", table.failures},
                    {"rows", table.rows},
                    {"latency_ns", Times(table.response)}});
  return list;
}

Json WorkloadJson(const RunRecord& record) {
  const Part& workload = record.measured;
  Json xacts = Json::array();
  for (const XactTotals& totals : workload.xacts) {
    Json entry = {{"name", totals.name}, {"class", totals.class_name}, {"id", totals.id}};
    entry.update(Totals(totals, workload.elapsed));
    xacts.push_back(entry);
  }
  return {{"elapsed_ns", workload.elapsed},
          {"users", record.users},
          {"lost_users", record.lost_users},
          {"transactions", xacts},
          {"total", Totals(workload.total, workload.elapsed)},
          {"tables", TablesJson(workload.tables)},
          {"doubts", Doubts(record)}};
}

Json JobJson(const Job& job) {
  Json columns = Json::array();
  for (const ColumnType& column : job.column_types)
    columns.push_back({{"type", column.type}, {"weight", column.weight}, {"nullable", column.nullable}});
  return {{"users", job.users},
          {"duration_ns", job.duration.count()},
          {"scale", job.scale},
          {"tables", job.tables},
          {"first_table", job.first_table},
          {"min_columns", job.min_columns},
          {"max_columns", job.max_columns},
          {"column_types", columns},
          {"use_backup", job.use_backup},
          {"rows_per_commit", job.rows_per_commit},
          {"mix", {{"insert", job.mix.insert}, {"update", job.mix.update}, {"delete", job.mix.remove}}},
          {"schema_seed", job.schema_seed},
          {"run_seed", *job.run_seed}};
}

Json ServerJson(const std::optional<ServerSettings>& settings) {
  if (!settings) return {{"durability", "unknown"}};
  Json json = {{"durability", DurabilityName(settings->Durability())},
               {"innodb_flush_log_at_trx_commit", settings->flush_at_commit},
               {"log_bin", settings->sync_binlog.has_value()}};
  if (settings->sync_binlog) json["sync_binlog"] = *settings->sync_binlog;
  json["innodb_buffer_pool_size"] = settings->buffer_pool;
  json["innodb_log_file_size"] = settings->log_size;
  return json;
}

Json ProblemsJson(const std::vector<ProblemLine>& lines) {
  Json problems = Json::array();
  for (const ProblemLine& line : lines)
    problems.push_back({{"level", line.level == WARNING_LEVEL ? "warning" : "error"},
                        {"number", line.number},
                        {"text", line.text},
                        {"count", line.count}});
  return problems;
}

}  // namespace

std::string JsonText(const Bench& bench, const std::string& verb, const std::string& target, int exit_code) {
  Json json = {{"schema_version", kSchemaVersion},
               {"lkbench_version", LKBENCH_VERSION},
               {"verb", verb},
               {"target", target},
               {"exit_code", exit_code},
               {"interrupted", bench.cancel.Signal() != 0},
               {"job", JobJson(bench.job)},
               {"server", ServerJson(bench.server)}};
  if (bench.load) json["load"] = {{"rows", bench.load->rows}, {"elapsed_ns", bench.load->elapsed}};
  if (bench.workload) json["workload"] = WorkloadJson(*bench.workload);
  json["problems"] = ProblemsJson(bench.log.Lines());
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

void WriteJson(const std::string& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream << text;
  stream.close();
  if (!stream)
    throw UsageError("json: " + file + " cannot be written: " + std::generic_category().message(errno));
}

}  // namespace lkbench

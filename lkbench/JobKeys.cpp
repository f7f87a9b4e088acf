// SPDX-License-Identifier: Apache-2.0
#include "lkbench/JobKeys.h"

#include <algorithm>
#include <limits>

#include "lkbench/ColumnTypes.h"
#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

constexpr int kMostTables = 100000;
constexpr int kMostUsers = 1000;
constexpr int kMostColumns = 999;  // with ID a thousand, the most that a table may have
constexpr int kMostWeight = 10000;

int Int(const JobValue& value, int low, int high) { return static_cast<int>(value.Integer(low, high)); }

// "a=1,b=2" as the table it stands for.
JobValue::Table PairsOf(const JobValue& value) {
  if (const auto* table = std::get_if<JobValue::Table>(&value.value)) return *table;
  if (!value.is_flag)
    value.Refuse("a table of weights is needed, such as { insert = 40, update = 40, delete = 20 }");
  JobValue::Table pairs;
  const std::string& text = value.Text();
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find(',', begin), text.size());
    const std::string pair = text.substr(begin, end - begin);
    const size_t equals = pair.find('=');
    if (equals == std::string::npos)
      value.Refuse("weights are needed, such as insert=40,update=40,delete=20");
    pairs.push_back(
        {pair.substr(0, equals), JobValue{value.key, value.place, pair.substr(equals + 1), value.is_flag}});
    begin = end + 1;
  }
  return pairs;
}

void SetMix(Job& job, const JobValue& value) {
  Mix mix{0, 0, 0};
  for (const auto& [name, weight] : PairsOf(value)) {
    int* slot = name == "insert"   ? &mix.insert
                : name == "update" ? &mix.update
                : name == "delete" ? &mix.remove
                                   : nullptr;
    if (slot == nullptr)
      throw UsageError(weight.place + ": mix has no transaction \"" + Excerpt(name) + "\"" +
                       DidYouMean(name, {"insert", "update", "delete"}) +
                       " (insert, update and delete have weights)");
    *slot = Int(weight, 0, kMostWeight);
  }
  if (mix.insert + mix.update + mix.remove == 0)
    throw UsageError(value.place + ": mix needs at least one weight above 0");
  job.mix = mix;
}

void CheckColumnType(const JobValue& place, const ColumnType& column) {
  const std::string problem = ColumnTypeProblem(column.type);
  if (!problem.empty()) throw UsageError(place.place + ": " + problem);
}

// TYPE, TYPE:WEIGHT or TYPE:WEIGHT:null
ColumnType ColumnFromText(const JobValue& value) {
  const std::string& text = value.Text();
  const size_t first = text.find(':');
  ColumnType column{text.substr(0, first), 1, false};
  if (first != std::string::npos) {
    const size_t second = text.find(':', first + 1);
    const JobValue weight{value.key, value.place, text.substr(first + 1, second - first - 1), true};
    column.weight = Int(weight, 0, kMostWeight);
    column.nullable = second != std::string::npos;
    if (column.nullable && Upper(text.substr(second + 1)) != "NULL")
      value.Refuse("the form is TYPE, TYPE:WEIGHT or TYPE:WEIGHT:null");
  }
  CheckColumnType(value, column);
  return column;
}

ColumnType ColumnFromTable(const JobValue& value) {
  const std::vector<std::string> names = {"type", "weight", "nullable"};
  ColumnType column;
  for (const auto& [name, field] : std::get<JobValue::Table>(value.value)) {
    if (name == "type")
      column.type = field.Text();
    else if (name == "weight")
      column.weight = Int(field, 0, kMostWeight);
    else if (name == "nullable")
      column.nullable = field.Boolean();
    else
      throw UsageError(field.place + ": a column type has no key \"" + Excerpt(name) + "\"" +
                       DidYouMean(name, names));
  }
  if (column.type.empty())
    value.Refuse("a column type needs its type, as in { type = \"NUMBER\", weight = 3 }");
  CheckColumnType(value, column);
  return column;
}

void SetColumnTypes(Job& job, const JobValue& value) {
  const auto* list = std::get_if<JobValue::List>(&value.value);
  if (list == nullptr)
    value.Refuse("a list of column types is needed, such as [{ type = \"NUMBER\", weight = 3 }]");
  std::vector<ColumnType> columns;
  int total = 0;
  for (const JobValue& each : *list) {
    const bool is_table = std::holds_alternative<JobValue::Table>(each.value);
    columns.push_back(is_table ? ColumnFromTable(each) : ColumnFromText(each));
    total += columns.back().weight;
  }
  if (columns.empty())
    throw UsageError(value.place + ": column_types has no column types: at least one is needed");
  if (total == 0)
    throw UsageError(value.place + ": column_types has only weights of 0: at least one must be above 0");
  job.column_types = std::move(columns);
}

void SetDistribution(Job& job, const JobValue& value) {
  job.distribution =
      static_cast<int>(value.OneOf({"none", "absolute", "uniform", "negexp", "normal", "poisson"}));
}

void SetLogLevel(Job& job, const JobValue& value) {
  job.log_level = static_cast<LogLevel>(value.OneOf({"warning", "info", "debug"}));
}

void SetPassword(Job& job, const JobValue& value) {
  const std::string& text = value.Text();
  if (text != "prompt" && !text.starts_with("env:") && !text.starts_with("file:"))
    throw UsageError(value.place + ": password never stands here itself: use env:NAME, file:PATH or prompt");
  job.password = text;
}

using enum KeyShape;

const std::vector<JobKey> kKeys = {
    {"target", "TARGET",
     "local:DIR, mariadb://USER@HOST:PORT/SCHEMA (also ?socket=FILE) or oracle://USER@CONNECT (local:, in "
     "the user's data folder)",
     kOneValue, [](Job& job, const JobValue& value) { job.target = value.Text(); }},
    {"password", "SOURCE", "where the password is: env:NAME, file:PATH or prompt", kOneValue, SetPassword},
    {"users", "N", "virtual users, each with a session of its own (2)", kOneValue,
     [](Job& job, const JobValue& value) { job.users = Int(value, 1, kMostUsers); }},
    {"duration", "TIME", "how long the workload runs: 10s, 500ms, 5m, 1h (10s)", kOneValue,
     [](Job& job, const JobValue& value) { job.duration = value.Duration(); }},
    {"scale", "X", "size of the data: 1000 rows per table and unit (1)", kOneValue,
     [](Job& job, const JobValue& value) { job.scale = value.Real(0); }},
    {"tables", "N", "replication tables (4)", kOneValue,
     [](Job& job, const JobValue& value) { job.tables = Int(value, 1, kMostTables); }},
    {"first_table", "N", "work on the tables from this number on, to add to an existing schema (1)",
     kOneValue, [](Job& job, const JobValue& value) { job.first_table = Int(value, 0, kMostTables); }},
    {"min_columns", "N", "fewest columns of a table beside ID (5)", kOneValue,
     [](Job& job, const JobValue& value) { job.min_columns = Int(value, 1, kMostColumns); }},
    {"max_columns", "N", "most columns of a table beside ID (12)", kOneValue,
     [](Job& job, const JobValue& value) { job.max_columns = Int(value, 1, kMostColumns); }},
    {"column_types", "TYPE[:WEIGHT[:null]]",
     "a column type, how often it is drawn, whether it may hold NULL; repeat it for more types (a mix of "
     "numbers, texts and dates)",
     kRepeated, SetColumnTypes},
    {"distribution", "NAME",
     "recorded with the schema: none, absolute, uniform, negexp, normal, poisson (uniform)", kOneValue,
     SetDistribution},
    {"use_backup", "", "load into backup tables and make the tables from them", kSwitch,
     [](Job& job, const JobValue& value) { job.use_backup = value.Boolean(); }},
    {"rows_per_commit", "N", "rows of one array insert of the load, 1 to 1000 (500)", kOneValue,
     [](Job& job, const JobValue& value) { job.rows_per_commit = Int(value, 1, 1000); }},
    {"mix", "WEIGHTS", "weights of the workload's transactions (insert=40,update=40,delete=20)", kOneValue,
     SetMix},
    {"seed", "N", "seed of the tables' shapes and of the order of transactions (1)", kOneValue,
     [](Job& job, const JobValue& value) {
       job.seed = static_cast<std::uint32_t>(value.Integer(0, std::numeric_limits<std::int32_t>::max()));
     }},
    {"log_level", "LEVEL", "what is printed beside results: warning, info, debug (info)", kOneValue,
     SetLogLevel},
    {"json", "FILE", "write the results as JSON", kOneValue,
     [](Job& job, const JobValue& value) { job.json = value.Text(); }},
    {"plugin", "FILE", "the benchmark plug-in (libCREP_ORA8.so beside lkbench)", kOneValue,
     [](Job& job, const JobValue& value) { job.plugin = value.Text(); }},
    {"oci", "FILE", "the OCI library (the one that the target names)", kOneValue,
     [](Job& job, const JobValue& value) { job.oci = value.Text(); }},
};

std::string PlaceOf(const Job& job, const char* key) {
  const auto found = job.origins.find(key);
  return found == job.origins.end() ? "" : found->second + ": ";
}

}  // namespace

std::string JobKey::Flag() const {
  std::string flag = "--" + name;
  std::ranges::replace(flag, '_', '-');
  return flag;
}

std::span<const JobKey> JobKeys() { return kKeys; }

std::vector<std::string> JobKeyNames() {
  std::vector<std::string> names;
  names.reserve(kKeys.size());
  for (const JobKey& key : kKeys) names.push_back(key.name);
  return names;
}

const JobKey* FindJobKey(const std::string& name) {
  const auto found = std::ranges::find(kKeys, name, &JobKey::name);
  return found == kKeys.end() ? nullptr : &*found;
}

void SetJobKey(Job& job, const JobKey& key, const JobValue& value) {
  key.set(job, value);
  job.origins[key.name] = value.place;
}

void CheckJob(const Job& job, bool builds) {
  if (job.min_columns > job.max_columns) {
    const bool low_was_set = job.origins.contains("min_columns");
    throw UsageError(PlaceOf(job, low_was_set ? "min_columns" : "max_columns") + "min_columns is " +
                     std::to_string(job.min_columns) + " but max_columns is " +
                     std::to_string(job.max_columns) + ": the minimum may not be above the maximum");
  }
  if (job.first_table > job.tables)
    throw UsageError(PlaceOf(job, "first_table") + "first_table is " + std::to_string(job.first_table) +
                     " but there are only " + Plural(static_cast<std::uint64_t>(job.tables), "table") +
                     ": tables is the number of the last one");
  if (builds && job.scale <= 0)
    throw UsageError(PlaceOf(job, "scale") + "scale is 0: tables are created and loaded at a scale above 0");
}

}  // namespace lkbench

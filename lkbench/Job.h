// SPDX-License-Identifier: Apache-2.0
// A Job is everything that one invocation of lkbench is told: what to connect to and what to do there. It is
// a value; JobKeys.h says how it is read and what each key allows.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "lkbench/Patience.h"
#include "lkbench/options/Verbs.h"
#include "lkbench/results/Limits.h"
#include "lkbench/workload/Phase.h"
#include "lkbench/workload/Reconnection.h"
#include "localdb/Settings.h"

namespace lkbench {

struct ColumnType {
  std::string type;  // SQL text, e.g. VARCHAR2(20)
  int weight = 1;    // relative frequency
  bool nullable = false;

  bool operator==(const ColumnType&) const = default;
};

enum class LogLevel { kWarning, kInfo, kDebug };
enum class OutputFormat { kText, kJson };

inline constexpr const char* kNoResults = "none";  // a folder of this name is ./none

// A phase as a job gives it: what it does not set itself is the job's.
struct JobPhase {
  std::string place;  // for messages
  Phase own;
  std::set<std::string> set;  // the keys that it has

  bool operator==(const JobPhase&) const = default;
};

// Beside everything else a job is the one phase that its workload has when it lists none, and what those that
// it lists inherit.
struct Job : Phase {
  std::string target;        // empty: the default, local: in the user's data folder
  std::string password;      // env:NAME, file:PATH or prompt; empty: none
  localdb::Settings server;  // of the private server of a local target
  double scale = 1;          // 1000 rows per table
  int tables = 4;
  int first_table = 1;  // only the tables from this number on
  int min_columns = 5;
  int max_columns = 12;
  std::vector<ColumnType> column_types = {{"NUMBER", 3, false},      {"NUMBER(10,2)", 3, false},
                                          {"VARCHAR2(40)", 4, true}, {"CHAR(10)", 1, false},
                                          {"DATE", 2, false},        {"TIMESTAMP(6)", 1, true}};
  int distribution = 2;  // as the properties table records it: uniform
  bool use_backup = false;
  int rows_per_commit = 500;
  std::uint32_t schema_seed = 1;          // of the tables' shapes
  std::optional<std::uint32_t> run_seed;  // of the order of transactions; DrawRunSeed fills it in
  std::vector<JobPhase> phases;
  OnDisconnect on_disconnect = OnDisconnect::kReconnect;
  std::chrono::nanoseconds reconnect_pause = Reconnection().first;
  std::chrono::nanoseconds reconnect_limit = Reconnection().longest;
  std::chrono::nanoseconds call_timeout = Patience().call;  // 0: none
  std::chrono::nanoseconds break_after = Patience().grace;
  std::chrono::nanoseconds give_up_after = Patience().give_up;
  LogLevel log_level = LogLevel::kInfo;
  OutputFormat format = OutputFormat::kText;  // of standard output
  int metrics = 0;                            // port of 127.0.0.1 that answers Prometheus; 0: none
  std::vector<Limit> limits;
  std::string results;  // folder for the results; empty: a new one in lkbench-results; kNoResults: none
  std::string json;     // file for the results, too; empty: none
  std::string plugin;   // file; empty: the one beside lkbench
  std::string oci;      // file; empty: the one that the target names

  std::map<std::string, std::string> origins;  // key -> where it was set, for messages

  bool operator==(const Job&) const = default;
};

inline Patience PatienceOf(const Job& job) { return {job.break_after, job.give_up_after, job.call_timeout}; }

// The rows that a table holds at a scale, as the transactions count them.
inline std::int64_t RowsAtScale(double scale) { return static_cast<std::int64_t>(scale * 1000.0); }

// Checks what spans several keys, for a verb. Throws UsageError.
void CheckJob(const Job& job, Verbs verb);

// Where a key was set: "job.toml:3", "--users", "LKBENCH_USERS" or, when it was not, "default".
std::string OriginOf(const Job& job, const std::string& key);

// Gives a job that names no run seed one of its own.
void DrawRunSeed(Job& job);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// A Job is everything that one invocation of lkbench is told: what to connect to and what to do there. It is
// a value; JobKeys.h says how it is read and what each key allows.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lkbench/workload/Phase.h"

namespace lkbench {

struct ColumnType {
  std::string type;  // SQL text, e.g. VARCHAR2(20)
  int weight = 1;    // relative frequency
  bool nullable = false;
};

enum class LogLevel { kWarning, kInfo, kDebug };

struct Job {
  std::string target;    // empty: the default, local: in the user's data folder
  std::string password;  // env:NAME, file:PATH or prompt; empty: none
  int users = 2;
  std::chrono::nanoseconds duration = std::chrono::seconds(10);
  double scale = 1;  // 1000 rows per table
  int tables = 4;
  int first_table = 0;  // above 1: only the tables from this number on
  int min_columns = 5;
  int max_columns = 12;
  std::vector<ColumnType> column_types = {{"NUMBER", 3, false},      {"NUMBER(10,2)", 3, false},
                                          {"VARCHAR2(40)", 4, true}, {"CHAR(10)", 1, false},
                                          {"DATE", 2, false},        {"TIMESTAMP(6)", 1, true}};
  int distribution = 2;  // as the properties table records it: uniform
  bool use_backup = false;
  int rows_per_commit = 500;
  Mix mix;
  std::uint32_t seed = 1;
  LogLevel log_level = LogLevel::kInfo;
  std::string json;    // file for the results; empty: none
  std::string plugin;  // file; empty: the one beside lkbench
  std::string oci;     // file; empty: the one that the target names

  std::map<std::string, std::string> origins;  // key -> where it was set, for messages
};

// The rows that a table holds at a scale, as the transactions count them.
inline std::int64_t RowsAtScale(double scale) { return static_cast<std::int64_t>(scale * 1000.0); }

// Checks what spans several keys, for a verb that creates or loads (`builds`) or not. Throws UsageError.
void CheckJob(const Job& job, bool builds);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// run.json: everything that is known of one invocation, as docs/run.schema.json describes it. A RunFacts is a
// plain value that holds copies, apart from the workload's record, which it points to.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "lkbench/ErrorLog.h"
#include "lkbench/results/Json.h"
#include "lkbench/results/Limits.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

inline constexpr int kRunSchemaVersion = 2;

struct LibraryFacts {
  std::string file;
  std::string version;
};

struct RunFacts {
  std::string verb;
  std::vector<std::string> command;  // the words of the command line
  std::vector<std::string> repeat;   // of one that does the same again
  std::chrono::system_clock::time_point started;
  std::uint64_t elapsed = 0;  // ns
  int exit_code = 0;
  int signal = 0;           // that interrupted the run
  std::string failure;      // the line of what ended the verb early; empty: nothing did
  std::string target_kind;  // local, mariadb, oracle
  std::string target;       // without a password
  LibraryFacts plugin;
  LibraryFacts oci;
  std::string server_version;
  Json server_settings = Json::object();
  std::uint32_t schema_seed = 0;
  std::uint32_t run_seed = 0;
  Json job = Json::object();
  std::uint64_t loaded_rows = 0;
  std::uint64_t load_elapsed = 0;  // ns; 0: nothing was loaded
  const RunRecord* workload = nullptr;
  std::vector<ProblemLine> problems;
  std::vector<LimitResult> limits;
  std::vector<std::string> notes;
};

Json RunFileJson(const RunFacts& facts);
std::string RunFileText(const Json& run);
Json ProgramJson();  // the `lkbench` of run.json

// "2026-01-02T03:04:05Z"
std::string UtcText(std::chrono::system_clock::time_point moment);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// Everything that a verb works with, for the time of one invocation. The verbs are the functions below; each
// returns when its work is done and throws a Failure when it could not be done. They run on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "lkbench/Cancel.h"
#include "lkbench/Properties.h"
#include "lkbench/Roles.h"
#include "lkbench/Schema.h"
#include "lkbench/ServerSettings.h"
#include "lkbench/Steps.h"
#include "lkbench/Users.h"
#include "lkbench/display/RunView.h"
#include "lkbench/workload/RunRecord.h"

namespace lkbench {

// How much was loaded how fast; for the summary.
struct LoadResult {
  std::uint64_t rows = 0;
  std::uint64_t elapsed = 0;  // ns
};

struct Bench {
  Job job;  // what the schema says is filled in by the verbs
  Console& console;
  ErrorLog& log;
  CancelSwitch& cancel;
  CallBreaker& breaker;
  CSSBenchmark& benchmark;
  UserPool& users;

  std::optional<LoadResult> load;
  std::optional<RunRecord> workload;
  std::optional<ServerSettings> server;  // missing: not asked yet, or the target does not tell
  std::string server_version;            // empty until the verb has connected
  std::string failure;                   // the line of what ended the verb early
  bool is_stuck = false;                 // calls never came back: their threads still use the sessions
  RunViews views;                        // of what the verb does

  VirtualUser& Admin() { return users.First(); }
  bool IsSet(const char* key) const { return job.origins.contains(key); }

  // A copy bound to a user, sitting on `seat`.
  std::unique_ptr<CXact> Copy(Role role, VirtualUser& user, Seat seat,
                              const CBenchmarkProperties& properties);
  // Runs an object transaction by one user. Throws PrepareError "verb: ..." when it fails.
  void RunObject(Role role, const CBenchmarkProperties& properties, const std::function<void()>& tick = {});
  void ThrowIfInterrupted() const;  // Failure with the signal's exit code
};

// Shares for the first `count` users, without transactions.
std::vector<StepShare> SharesFor(Bench& bench, int count);

void CreateSchema(Bench& bench);
void LoadTables(Bench& bench);
void RunWorkload(Bench& bench);
void RefreshTables(Bench& bench);
void DropSchema(Bench& bench);
void RunAll(Bench& bench);

}  // namespace lkbench

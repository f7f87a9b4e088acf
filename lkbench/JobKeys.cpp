// SPDX-License-Identifier: Apache-2.0
#include "lkbench/JobKeys.h"

#include <algorithm>

#include "lkbench/options/JobReaders.h"
#include "lkbench/options/PhaseKeys.h"
#include "lkbench/options/TextVerbs.h"
#include "lkbench/results/LimitKey.h"

namespace lkbench {
namespace {

constexpr int kMostTables = 100000;
constexpr int kMostPort = 65535;
constexpr int kMostColumns = 999;  // with ID a thousand, the most that a table may have
constexpr std::uint64_t kLeastBufferPool = 32 * localdb::kMebibyte;
constexpr std::uint64_t kMostBufferPool = std::uint64_t{1024} * 1024 * localdb::kMebibyte;
constexpr std::uint64_t kLeastLog = 8 * localdb::kMebibyte;
constexpr std::uint64_t kMostLog = std::uint64_t{512} * 1024 * localdb::kMebibyte;  // the server's own limit

constexpr Verbs kShapeVerbs = kBuildVerbs | kDdlVerb;  // draw the tables

using enum Section;

const std::vector<JobKey> kKeys = {
    {"target", "TARGET",
     "where to work: local:DIR, mariadb://USER@HOST:PORT/SCHEMA (also ?socket=FILE) or oracle://USER@CONNECT",
     kTarget, kDatabaseVerbs, Words(&Job::target), "local:, in the user's data folder", 't'},
    {"password", "SOURCE", "where the password is: env:NAME, file:PATH or prompt", kTarget, kDatabaseVerbs,
     PasswordSource()},
    {"durability", "LEVEL",
     "of a local: target: durable (a commit survives a crash of the machine) or relaxed", kTarget,
     kDatabaseVerbs, ServerDurability()},
    {"buffer_pool", "SIZE", "of a local: target: memory for data, such as 512MiB or 2GiB", kTarget,
     kDatabaseVerbs, ServerSize(&localdb::Settings::buffer_pool, kLeastBufferPool, kMostBufferPool)},
    {"log_size", "SIZE", "of a local: target: size of the redo log, such as 64MiB or 1GiB", kTarget,
     kDatabaseVerbs, ServerSize(&localdb::Settings::log_size, kLeastLog, kMostLog)},
    {"tables", "N", "replication tables", kTables, kSchemaVerbs | kDropVerb | kDdlVerb,
     WholeNumber(&Job::tables, 1, kMostTables)},
    {"first_table", "N", "work on the tables from this number on, to add to an existing schema", kTables,
     kSchemaVerbs | kDropVerb | kDdlVerb, WholeNumber(&Job::first_table, 1, kMostTables)},
    {"scale",
     "X",
     "size of the data: 1000 rows per table and unit",
     kTables,
     kSchemaVerbs | kDdlVerb,
     RealNumber(&Job::scale, 0),
     {},
     's'},
    {"min_columns", "N", "fewest columns of a table beside ID", kTables, kShapeVerbs,
     WholeNumber(&Job::min_columns, 1, kMostColumns)},
    {"max_columns", "N", "most columns of a table beside ID", kTables, kShapeVerbs,
     WholeNumber(&Job::max_columns, 1, kMostColumns)},
    {"column_types", "TYPE[:WEIGHT[:null]]",
     "a column type, how often it is drawn, whether it may hold NULL; repeated for more types", kTables,
     kShapeVerbs, ColumnTypeList(), "a mix of numbers, texts and dates"},
    {"distribution", "NAME", "recorded with the schema: none, absolute, uniform, negexp, normal, poisson",
     kTables, kShapeVerbs,
     OneOf(&Job::distribution, {"none", "absolute", "uniform", "negexp", "normal", "poisson"})},
    {"schema_seed", "N", "seed of the tables' shapes: the same seed gives the same tables everywhere",
     kTables, kShapeVerbs, WholeNumber(&Job::schema_seed, 0)},
    {"use_backup", "", "load into backup tables and make the tables from them", kLoad,
     kBuildVerbs | kLoadVerb | kRefreshVerb, Switch(&Job::use_backup)},
    {"rows_per_commit", "N", "rows of one array insert of the load, 1 to 1000", kLoad, kRunVerb | kLoadVerb,
     WholeNumber(&Job::rows_per_commit, 1, 1000)},
    JobKeyOfPhase("users"),
    JobKeyOfPhase("duration"),
    JobKeyOfPhase("count"),
    JobKeyOfPhase("warm_up"),
    JobKeyOfPhase("ramp"),
    JobKeyOfPhase("mix"),
    JobKeyOfPhase("think"),
    JobKeyOfPhase("rate"),
    JobKeyOfPhase("arrival"),
    JobKeyOfPhase("commit_every"),
    {"phase", "KEY=VALUE...",
     "a phase of the workload with keys of its own, as \"name=burst users=64 duration=1m\"; repeated for "
     "more",
     kWorkload, kWorkVerbs, PhaseList(), "one phase, of the keys above"},
    {"on_disconnect", "POLICY", "what a user does whose session is lost: reconnect or stop", kWorkload,
     kWorkVerbs, OneOf(&Job::on_disconnect, {"reconnect", "stop"})},
    {"reconnect_pause", "TIME", "pause after a failed reconnection; the next one is twice as long", kWorkload,
     kWorkVerbs, TimeSpan(&Job::reconnect_pause)},
    {"reconnect_limit", "TIME", "longest pause between two reconnections", kWorkload, kWorkVerbs,
     TimeSpan(&Job::reconnect_limit)},
    {"run_seed", "N", "seed of the order of transactions, to repeat a run", kWorkload, kWorkVerbs,
     WholeNumber(&Job::run_seed, 0), "drawn anew for every run"},
    {"call_timeout", "TIME",
     "a call of the database that takes longer is broken off and has failed; 0: no limit", kPatience,
     kDatabaseVerbs, TimeSpanOrZero(&Job::call_timeout)},
    {"break_after", "TIME",
     "how long calls may run on after the end of a phase before they are broken off; after a Ctrl-C it is 1s",
     kPatience, kDatabaseVerbs, TimeSpanOrZero(&Job::break_after)},
    {"give_up_after", "TIME",
     "how long after that a call has to come back: then a workload goes on without its user, anything else "
     "ends",
     kPatience, kDatabaseVerbs, TimeSpan(&Job::give_up_after)},
    {"log_level", "LEVEL", "what is printed beside results: warning, info, debug", kOutput, kJobVerbs,
     OneOf(&Job::log_level, {"warning", "info", "debug"})},
    {"format", "FORMAT", "what is printed: text, or json, an object in each line, for programs", kOutput,
     kDatabaseVerbs & ~kCheckVerb, OneOf(&Job::format, {"text", "json"})},
    {"metrics", "PORT", "port of 127.0.0.1 at which Prometheus finds metrics of the run, 0 for none", kOutput,
     kDatabaseVerbs & ~kCheckVerb, WholeNumber(&Job::metrics, 0, kMostPort)},
    {"limits", "LIMIT", "what the workload has to keep to, as insert.p99<20ms; exit code 3 when it does not",
     kWorkload, kWorkVerbs, LimitTable(), "none"},
    {"results", "DIR", "folder for the results, new or empty; none leaves no folder", kOutput, kWorkVerbs,
     FileName(&Job::results), "lkbench-results/TIME-VERB"},
    {"json", "FILE", "write the results as JSON to this file, too", kOutput,
     (kDatabaseVerbs & ~kCheckVerb) | kCompareVerb, FileName(&Job::json)},
    {"plugin", "FILE", "the benchmark plug-in", kLibraries, kJobVerbs, FileName(&Job::plugin),
     "libCREP_ORA8.so beside lkbench"},
    {"oci", "FILE", "the OCI library", kLibraries, kPluginVerbs, FileName(&Job::oci),
     "the one that the target names"},
};

}  // namespace

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
  key.type.set(job, value);
  job.origins[key.name] = value.place;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/PeerNames.h"

#include <algorithm>

#include "lkbench/Text.h"
#include "lkbench/options/Verbs.h"

namespace lkbench {
namespace {

using Names = std::vector<std::string>;

const std::vector<PeerName> kKeys = {
    {{"threads", "client", "clients", "vus", "vu", "connections", "concurrency", "jobs", "numjobs", "workers",
      "sessions", "terminals", "j"},
     {"users"}},
    {{"time", "runtime", "T"}, {"duration"}},
    {{"events", "transactions", "iterations", "requests", "n"}, {"count"}},
    {{"size", "table_size", "rows", "records", "warehouses"}, {"scale"}},
    {{"warmup_time"}, {"warm_up"}},
    {{"rampup", "ramp_up", "ramp_time", "rampup_time"}, {"ramp", "warm_up"}},
    {{"rps", "qps", "tps", "throughput", "R"}, {"rate"}},
    {{"think_time", "delay"}, {"think"}},
    {{"latency_limit", "threshold", "thresholds", "sla"}, {"limits"}},
    {{"stage", "stages"}, {"phase"}},
    {{"random_seed", "rand_seed"}, {"run_seed"}},
    {{"batch", "batch_size"}, {"rows_per_commit"}},
    {{"host", "hostname", "port", "socket", "server", "url", "dsn", "connect", "connection", "db", "dbname",
      "database", "db_driver", "username", "p", "U"},
     {"target"}},
    {{"out", "output_dir"}, {"results"}},
    {{"summary_export"}, {"json"}},
    {{"verbose", "verbosity", "quiet", "v", "q"}, {"log_level"}},
    {{"file", "job", "script", "f"}, {"config"}},
    {{"V"}, {"version"}}};

const std::vector<PeerName> kVerbs = {{{"prepare", "setup", "initialize", "build"}, {"create", "load"}},
                                      {{"cleanup", "clean", "destroy", "delete", "teardown"}, {"drop"}},
                                      {{"start", "exec", "execute", "bench", "benchmark", "test"}, {"run"}},
                                      {{"reset", "restore"}, {"refresh"}},
                                      {{"status", "ping", "info"}, {"check"}},
                                      {{"diff"}, {"compare"}},
                                      {{"new"}, {"init"}},
                                      {{"version"}, {"--version"}}};

// "--Table-Size" is table_size, and so is LKBENCH_TABLE_SIZE; -t and -T stay two.
std::string Plain(std::string_view name) {
  name.remove_prefix(std::min(name.find_first_not_of('-'), name.size()));
  std::string plain(name);
  for (char& c : plain)
    c = c == '-' ? '_' : plain.size() > 1 && c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  constexpr std::string_view kVariable = "lkbench_";
  return plain.starts_with(kVariable) ? plain.substr(kVariable.size()) : plain;
}

Names OursFor(const std::string& name, std::span<const PeerName> peers) {
  const auto found = std::ranges::find_if(
      peers, [&](const PeerName& each) { return std::ranges::count(each.theirs, name) > 0; });
  return found == peers.end() ? Names() : found->ours;
}

// How programs for several databases name what is about one of them: --mysql-host, --pgsql-password.
Names OursForDatabase(const std::string& name) {
  for (const char* prefix : {"mysql_", "mariadb_", "pgsql_", "oracle_"})
    if (name.starts_with(prefix)) return name.ends_with("password") ? Names{"password"} : Names{"target"};
  return {};
}

}  // namespace

std::span<const PeerName> PeerKeys() { return kKeys; }
std::span<const PeerName> PeerVerbs() { return kVerbs; }

std::string DidYouMeanKey(std::string_view name, const std::vector<std::string>& known,
                          const std::function<std::string(const std::string&)>& spell) {
  const std::string plain = Plain(name);
  Names ours = OursFor(plain, kKeys);
  if (ours.empty()) ours = OursForDatabase(plain);
  if (ours.empty()) return DidYouMean(name, known);
  std::ranges::transform(ours, ours.begin(), spell);
  return Question(ours);
}

std::string DidYouMeanVerb(const std::string& name) {
  const Names ours = OursFor(name, kVerbs);
  return ours.empty() ? DidYouMean(name, VerbNames()) : Question(ours);
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include <toml++/toml.h>
#include <thread>

#include <sstream>

#include "lkbench/JobKeys.h"
#include "lkbench/Layers.h"
#include "lkbench/Report.h"
#include "lkbench/Target.h"
#include "lkbench/results/RunResults.h"

namespace lkbench {
namespace {

// A value in TOML as JSON.
Json JsonOfToml(const std::string& text) {
  const toml::table document = toml::parse("value = " + text);
  std::ostringstream json;
  json << toml::json_formatter(document);
  return Json::parse(json.str()).at("value");
}

Json JobJson(const Job& job) {
  Json json = Json::object();
  for (const JobKey& key : JobKeys()) {
    const std::string toml = key.type.toml(job);
    if (!toml.empty()) json[key.name] = JsonOfToml(toml);
  }
  return json;
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

const char* NameOf(TargetKind kind) {
  switch (kind) {
    case TargetKind::kLocal:
      return "local";
    case TargetKind::kMariaDb:
      return "mariadb";
    case TargetKind::kOracle:
      return "oracle";
  }
  return "";
}

}  // namespace

RunFacts FactsOf(Bench& bench, const Layers& layers, const Target& target, const std::string& shown) {
  RunFacts facts;
  facts.signal = bench.cancel.Signal();
  facts.target_kind = NameOf(target.kind);
  facts.target = shown;
  facts.plugin = {layers.Plugin().Path().string(), bench.benchmark.GetName().ToChar()};
  facts.oci = {layers.Oci().Path().string(), layers.OciVersion()};
  facts.server_version = bench.server_version;
  facts.server_settings = ServerJson(bench.server);
  facts.failure = bench.failure;
  facts.schema_seed = bench.job.schema_seed;
  facts.run_seed = bench.job.run_seed.value_or(0);
  facts.job = JobJson(bench.job);
  if (bench.load) {
    facts.loaded_rows = bench.load->rows;
    facts.load_elapsed = bench.load->elapsed;
  }
  facts.problems = bench.log.Lines();
  if (bench.workload) {
    facts.workload = &*bench.workload;
    facts.limits = Judge(bench.job.limits, bench.workload->measured);
    facts.notes = Doubts(*bench.workload, std::thread::hardware_concurrency());
  }
  return facts;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/StreamObjects.h"

#include "lkbench/results/RecordJson.h"

namespace lkbench {
namespace {

Json Typed(const char* type, const Json& rest) {
  Json object = {{"type", type}};
  object.update(rest);
  return object;
}

// Without what is long: it is in run.json.
void Shorten(Json& value) {
  if (value.is_object())
    for (const char* key : {"buckets", "tables", "column_counts", "user_executions"}) value.erase(key);
  if (value.is_structured())
    for (Json& each : value) Shorten(each);
}

Json Short(Json value) {
  Shorten(value);
  return value;
}

Json WorkloadSummary(const Json& workload) {
  if (workload.is_null()) return {};
  Json summary = Short(workload);
  for (const char* key : {"phases", "intervals", "events", "more_events"}) summary.erase(key);
  return summary;
}

}  // namespace

Json BeginObject(const RunFacts& facts) {
  return Typed("begin", {{"schema", "lkbench-stream"},
                         {"schema_version", kStreamSchemaVersion},
                         {"lkbench", ProgramJson()},
                         {"verb", facts.verb},
                         {"started", UtcText(facts.started)},
                         {"target", {{"kind", facts.target_kind}, {"text", facts.target}}},
                         {"seeds", {{"schema", facts.schema_seed}, {"run", facts.run_seed}}}});
}

Json LoadObject(const LoadState& load) {
  return Typed("load",
               {{"rows", load.rows}, {"of", load.of}, {"elapsed_ns", load.elapsed}, {"over", load.is_over}});
}

Json TablesObject(const TablesState& state) {
  Json object = Typed("tables", {{"verb", state.verb}, {"tables", state.tables}, {"of", state.of}});
  if (state.rows) object["rows_removed"] = *state.rows;
  object["elapsed_ns"] = state.elapsed;
  object["over"] = state.is_over;
  return object;
}

Json IntervalObject(const Progress& progress) {
  Json object = Typed("interval", IntervalJson(progress.interval));
  for (std::size_t i = 0; i < progress.part.xacts.size(); ++i) {
    Json named = {{"name", progress.part.xacts[i].name}};
    named.update(object["transactions"][i]);
    object["transactions"][i] = named;
  }
  object["phase_name"] = progress.phase.settings.name;
  return object;
}

Json PhaseObject(const PhaseRecord& phase) { return Typed("phase", Short(PhaseJson(phase))); }

Json EventObject(const Event& event) { return Typed("event", EventJson(event)); }

Json ErrorObject(const ErrorRecord& error) { return Typed("error", ErrorJson(error)); }

Json ProblemObject(const std::string& text) { return {{"type", "problem"}, {"text", text}}; }

Json EndObject(const Json& run, const std::string& folder) {
  return Typed("end", {{"exit_code", run.at("exit_code")},
                       {"verdict", run.at("verdict")},
                       {"interrupted", run.at("interrupted")},
                       {"elapsed_ns", run.at("elapsed_ns")},
                       {"load", run.at("load")},
                       {"workload", WorkloadSummary(run.at("workload"))},
                       {"problems", run.at("problems")},
                       {"limits", run.at("limits")},
                       {"notes", run.at("notes")},
                       {"results", folder.empty() ? Json() : Json(folder)}});
}

Json EndObject(int exit_code, const std::string& failure) {
  return {{"type", "end"}, {"exit_code", exit_code}, {"verdict", {{"result", "error"}, {"text", failure}}}};
}

std::string LineOf(const Json& object) { return object.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/DryRun.h"

#include "lkbench/Failure.h"
#include "lkbench/Precondition.h"
#include "lkbench/Schema.h"
#include "lkbench/Text.h"
#include "lkbench/TextTable.h"
#include "lkbench/metrics/MetricsView.h"
#include "lkbench/options/PhaseKeys.h"
#include "lkbench/options/TomlText.h"
#include "lkbench/results/RunResults.h"
#include "localdb/DataFiles.h"
#include "localdb/Folder.h"
#include "localdb/LocalServer.h"
#include "localdb/Programs.h"

namespace lkbench {
namespace {

bool IsSet(const Job& job, const char* key) { return job.origins.contains(key); }
std::string Count(std::int64_t number) { return Grouped(static_cast<std::uint64_t>(number)); }

std::string ServerText(const Target& target, const localdb::Settings& server) {
  if (target.kind != TargetKind::kLocal) return target.text;
  try {
    const localdb::Folder folder(target.folder);
    folder.RequireUsable();
    const bool is_new = !std::filesystem::exists(folder.Data());
    const std::filesystem::path program = localdb::FindServer();
    if (is_new) localdb::FindScripts(program);
    return "local:" + folder.Path().string() +
           (is_new ? ", a new private server" : ", the private server there") + " (" +
           (server.durability == localdb::Durability::kDurable ? "durable" : "relaxed") + ", buffer pool " +
           SizeText(server.buffer_pool) + ", redo log " + SizeText(server.log_size) + ')';
  } catch (const localdb::LocalServerError& error) {
    throw PrepareError(OneLine(error.what()));
  }
}

// A password in a variable or a file is looked for, and forgotten; nobody is asked.
std::string PasswordText(const Target& target, const std::string& source) {
  if (target.kind == TargetKind::kLocal || source.empty()) return "none";
  if (source != "prompt") {
    (void)ReadPassword(source);
    return "from " + source;
  }
  RequireTerminal();
  return "asked for at the terminal";
}

std::string SchemaText(const Target& target) {
  if (target.kind == TargetKind::kLocal) return localdb::kSchema;
  if (target.kind == TargetKind::kOracle) return target.user;
  const std::string name = target.server.substr(0, target.server.find('?'));
  return name.substr(name.rfind('/') + 1);
}

// `is_known`: the number of tables is the job's, whatever the schema holds.
std::string TablesText(const Job& job, bool is_known) {
  const int first = FirstTable(job);
  if (!is_known && first == 1) return "every table of the schema";
  if (!is_known) return "every table of the schema from " + TableName(first) + " on";
  const std::string names = TableName(first) + (first == job.tables ? "" : " to " + TableName(job.tables));
  const int count = job.tables - first + 1;
  return Plural(static_cast<std::uint64_t>(count), "table") + ", " + names;
}

class Plan {
 public:
  Plan(const Job& job, Verbs verb) : m_job(job), m_verb(verb) {}

  void Create() {
    const bool is_new = FirstTable(m_job) == 1;
    Add("create", (m_verb == kRunVerb ? "where there are none yet: " : "") + TablesText(m_job, true) +
                      ", of " + std::to_string(m_job.min_columns) + " to " +
                      std::to_string(m_job.max_columns) + " columns beside ID, schema seed " +
                      std::to_string(m_job.schema_seed));
    Add("", is_new ? "LK_REP_PROPERTIES, LK_REP_ID_SEQ from " + Count(RowsAtScale(m_job.scale) + 1) +
                         " on, LKBENCH_STATE"
                   : "LK_REP_PROPERTIES is written anew");
  }
  void Load() {
    std::string text = "to " + ScaleText("the scale that the schema was created for") + ": ";
    if (KnowsTables() && KnowsScale())
      text += Count(RowsAtScale(m_job.scale) * (m_job.tables - FirstTable(m_job) + 1)) +
              " rows less those that are there, ";
    Add("load", text + "into " + TablesText(m_job, KnowsTables()) + ", by " + Users(m_job.users) + ", " +
                    std::to_string(m_job.rows_per_commit) + " rows an insert" +
                    (m_job.use_backup ? ", through backup tables" : ""));
  }
  void Workload() {
    const std::string seed =
        IsSet(m_job, "run_seed") ? "run seed " + std::to_string(*m_job.run_seed) : "a run seed drawn anew";
    Add("workload", "on " + TablesText(m_job, IsSet(m_job, "tables")) + ", rows up to " +
                        ScaleText("the scale that is loaded") + ", " + seed);
    for (const Phase& phase : PhasesOf(m_job)) Add("", PhaseText(phase));
    std::vector<std::string> limits;
    for (const Limit& limit : m_job.limits) limits.push_back(limit.name + limit.asked);
    if (!limits.empty()) Add("limits", Join(limits, ", "));
  }
  void Refresh() {
    Add("refresh", "remove the rows above " + ScaleText("the scale that is loaded") + " from " +
                       TablesText(m_job, IsSet(m_job, "tables")) +
                       (m_job.use_backup ? " and their backups" : "") + ", by up to " + Users(m_job.users));
    Add("", "LK_REP_PROPERTIES and LK_REP_ID_SEQ are made anew");
  }
  void Drop() {
    const int first = FirstTable(m_job);
    if (first == 1)
      Add("drop", "every LK_REP_TABLE and its backup, LK_REP_PROPERTIES, LK_REP_ID_SEQ, LKBENCH_STATE");
    else
      Add("drop", TablesText(m_job, false) + ", and their backups; LK_REP_PROPERTIES is written anew");
  }
  void Add(const std::string& label, const std::string& text) { m_rows.push_back({label, text}); }
  std::string Text() const { return Aligned(m_rows, 2); }

 private:
  bool KnowsTables() const { return m_verb == kRunVerb || IsSet(m_job, "tables"); }
  bool KnowsScale() const { return m_verb == kRunVerb || IsSet(m_job, "scale"); }
  static std::string Users(int count) { return Plural(static_cast<std::uint64_t>(count), "user"); }
  std::string ScaleText(const std::string& otherwise) const {
    if (!KnowsScale()) return otherwise;
    return "scale " + Short(m_job.scale) + " (" + Count(RowsAtScale(m_job.scale)) + " rows a table)" +
           (IsSet(m_job, "scale") ? "" : " or that of a schema that is there");
  }
  // Users, time and mix of every phase, and whatever else it has that is not the default.
  static std::string PhaseText(const Phase& phase) {
    std::string text = phase.name + ':';
    for (const Key<Phase>& key : PhaseKeys()) {
      const std::string value = key.type.toml(phase);
      const bool is_told = key.name == "users" || key.name == "duration" || key.name == "mix";
      if (is_told || value != key.type.toml(Phase())) text += ' ' + key.name + '=' + AsFlagValue(value);
    }
    return text;
  }

  const Job& m_job;
  Verbs m_verb;
  std::vector<TextRow> m_rows;
};

}  // namespace

std::string DryRunText(const Invocation& invocation, const Target& target) {
  const Job& job = invocation.job;
  const Verbs verb = FindVerb(invocation.verb)->bit;
  Plan plan(job, verb);
  plan.Add("target", ServerText(target, job.server));
  plan.Add("password", PasswordText(target, job.password));
  plan.Add("schema", SchemaText(target));
  if ((verb & kBuildVerbs) != 0) plan.Create();
  if ((verb & (kRunVerb | kLoadVerb)) != 0) plan.Load();
  if ((verb & kWorkVerbs) != 0) plan.Workload();
  if ((verb & (kRunVerb | kRefreshVerb)) != 0) plan.Refresh();
  if (verb == kDropVerb) plan.Drop();
  if (verb == kCheckVerb) plan.Add("check", "connect once, show versions and settings");
  const std::string results = ResultPlaces(invocation);
  plan.Add("writes", results.empty() ? "no file" : results);
  if (job.metrics > 0) {
    RequireMetricsPort(job.metrics);
    plan.Add("metrics", "http://127.0.0.1:" + std::to_string(job.metrics) + "/metrics");
  }
  return "dry run: what `lkbench " + invocation.verb +
         "` would do; nothing is connected to, started or written\n" + plan.Text();
}

}  // namespace lkbench

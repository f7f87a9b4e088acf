// SPDX-License-Identifier: Apache-2.0
#include "lkbench/App.h"

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <thread>

#include "core/LKConfig.h"
#include "lkbench/Bench.h"
#include "lkbench/CommandLine.h"
#include "lkbench/Ddl.h"
#include "lkbench/DryRun.h"
#include "lkbench/Failure.h"
#include "lkbench/HostSetUp.h"
#include "lkbench/Inspect.h"
#include "lkbench/Layers.h"
#include "lkbench/Report.h"
#include "lkbench/Roles.h"
#include "lkbench/ServerSettings.h"
#include "lkbench/Text.h"
#include "lkbench/TextVerbs.h"
#include "lkbench/VerbThread.h"
#include "lkbench/display/ConsoleView.h"
#include "lkbench/display/StreamObjects.h"
#include "lkbench/display/StreamView.h"
#include "lkbench/metrics/MetricsView.h"
#include "lkbench/results/ResultVerbs.h"
#include "lkbench/results/RunResults.h"
#include "localdb/LocalServer.h"

namespace lkbench {
namespace {

std::string TargetPlace(const Job& job) {
  const auto found = job.origins.find("target");
  return found == job.origins.end() ? "target" : found->second;
}

// The private server, when the target is one, and how the sessions reach the database. The server is started
// before any thread is.
class Database {
 public:
  Database(const Target& target, const Job& job) {
    m_connect.shown = target.text;
    if (target.kind == TargetKind::kLocal) {
      Start(target, job.server);
      return;
    }
    m_connect.server = target.server;
    m_connect.user = target.user;
    m_connect.password = ReadPassword(job.password);
  }
  const ConnectData& Connect() const { return m_connect; }
  // What is likely behind a failure, when something is known of it.
  std::string LikelyReason() const { return m_local ? m_local->SpaceProblem() : std::string(); }
  // Leaves the private server. False when that takes longer.
  bool Leave(std::chrono::nanoseconds patience) {
    return !m_local || EndsWithin(patience, [local = std::shared_ptr(std::move(m_local))] {});
  }
  // A private server that another lkbench has started, with whatever settings that one had.
  bool IsShared() const { return m_local && !m_local->Started(); }
  std::string Note() const {
    if (!m_local) return {};
    return m_local->Started() ? " (private server, started)" : " (private server, joined)";
  }

 private:
  void Start(const Target& target, const localdb::Settings& settings) {
    localdb::Options options;
    options.settings = settings;
    try {
      m_local = std::make_unique<localdb::LocalServer>(target.folder, options);
    } catch (const localdb::LocalServerError& error) {
      throw PrepareError(OneLine(error.what()));
    }
    m_connect.shown = "local:" + m_local->Folder().string();
    m_connect.server = m_local->ConnectString();
    m_connect.user = m_local->User();
    m_connect.password = m_local->Password();
  }

  std::unique_ptr<localdb::LocalServer> m_local;
  ConnectData m_connect;
};

void PrintSummary(Bench& bench) {
  Console& console = bench.console;
  if (bench.workload) {
    console.Result("");
    console.Result(WorkloadTable(*bench.workload, console.Columns()));
    console.Statement("elapsed " + Fixed(static_cast<double>(bench.workload->measured.elapsed) / 1e9, 2) +
                      " s, " + Plural(static_cast<std::uint64_t>(bench.workload->users), "user") + ", " +
                      Plural(bench.workload->measured.total.failures, "failure"));
    console.Statement(ProcessorLine(bench.workload->measured));
    for (const std::string& doubt : Doubts(*bench.workload, std::thread::hardware_concurrency()))
      console.Statement("note: " + doubt);
  }
  if (bench.load || bench.workload) console.Statement("durability: " + DurabilityText(bench.server));
  const std::string problems = ProblemTable(bench.log.Lines());
  if (!problems.empty()) console.Statement(problems);
  if (bench.workload && !bench.job.limits.empty())
    console.Result("\n" + LimitText(Judge(bench.job.limits, bench.workload->measured)), "FAIL");
}

using VerbFunction = void (*)(Bench&);

VerbFunction FunctionOf(const std::string& verb) {
  static const std::map<std::string, VerbFunction> functions = {
      {"run", RunAll},           {"create", CreateSchema},   {"load", LoadTables},
      {"workload", RunWorkload}, {"refresh", RefreshTables}, {"drop", DropSchema}};
  return functions.at(verb);
}

// Asks the server for its settings; those of a private server are compared with what the job says.
void LearnSettings(Bench& bench, TargetKind kind, const Database& database) {
  bench.server_version = bench.Admin().ServerVersion();
  bench.server = ReadServerSettings(kind, bench.Admin());
  if (!database.IsShared() || !bench.server) return;
  const std::string note = SharedServerNote(bench.job, *bench.server, database.Connect().shown);
  if (!note.empty()) bench.console.Problem(note);
}

// The end of a process with calls that never came back: their threads hold sessions and more, so nothing is
// taken down under them. A private server is stopped by its keeper.
[[noreturn]] void LeaveAtOnce(int code) { std::_Exit(code); }

// How long the end of the sessions may take: after a signal, what is left of the time for everything.
std::chrono::nanoseconds PatienceAtEnd(const Bench& bench) {
  constexpr std::chrono::milliseconds kLeast{500};  // for a database that does answer
  const Patience patience = PatienceOf(bench.job);
  if (bench.cancel.Signal() != 0)
    return std::max<std::chrono::nanoseconds>(
        bench.cancel.SignalledAt() + patience.Whole() - std::chrono::steady_clock::now(), kLeast);
  const bool is_limited = patience.call.count() > 0;
  return is_limited ? std::min(patience.Whole(), patience.call + patience.give_up) : patience.Whole();
}

// What the database does not let end is left behind, with the process.
void EndInOrder(Bench& bench, Database& database, int code) {
  if (bench.is_stuck) LeaveAtOnce(code);
  const std::chrono::nanoseconds patience = PatienceAtEnd(bench);
  if (!bench.users.Close(patience)) {
    bench.console.Problem("the sessions cannot be ended in order: the database has not answered for " +
                          Fixed(std::chrono::duration<double>(patience).count(), 1) + " s");
    LeaveAtOnce(code);
  }
  if (bench.cancel.Signal() != 0 && !database.Leave(PatienceAtEnd(bench))) LeaveAtOnce(code);
}

[[noreturn]] void GiveUp(Bench& bench, const std::string& reason) {
  bench.is_stuck = true;
  bench.views.Close();
  bench.console.EraseStatus();
  throw Failure(bench.workload ? kRanWithFailures : kCannotPrepare, reason);
}

// Runs the verb's work; what it throws becomes its one line and the exit code.
int RunVerb(Bench& bench, const std::string& verb, const std::function<void()>& work) {
  int code = kDone;
  try {
    const std::string hanging =
        RunPatiently(work, {verb, PatienceOf(bench.job)}, bench.users.Calls(), bench.cancel, bench.console);
    if (!hanging.empty()) GiveUp(bench, hanging);
    if (bench.workload) code = WorkloadCode(*bench.workload, bench.job.limits);
  } catch (const Failure& failure) {
    code = failure.Code();
    bench.failure = failure.what();
    bench.console.Problem(failure.what());
  }
  if (bench.cancel.Signal() != 0) code = bench.cancel.Signal() == SIGINT ? kInterrupted : kTerminated;
  return code;
}

int Failed(Console& console, int code, const std::string& line) {
  console.Problem(line);
  console.Object(EndObject(code, line));
  return code;
}

RunFigures::Labels RunLabels(const Invocation& invocation) {
  const Job& job = invocation.job;
  return {{"version", LKBENCH_VERSION},
          {"verb", invocation.verb},
          {"schema_seed", std::to_string(job.schema_seed)},
          {"run_seed", std::to_string(job.run_seed.value_or(0))}};
}

// A session is an open file, and the usual limit of a shell is a thousand.
void AllowOpenFiles() {
  constexpr rlim_t kEnough = 65536;
  rlimit files{};
  if (getrlimit(RLIMIT_NOFILE, &files) != 0 || files.rlim_cur >= kEnough) return;
  files.rlim_cur = std::min(files.rlim_max, kEnough);
  setrlimit(RLIMIT_NOFILE, &files);
}

int RunDatabaseVerb(const Invocation& invocation, Console& console, ErrorLog& log) {
  const std::string& verb = invocation.verb;
  const Job& job = invocation.job;
  CheckJob(job, FindVerb(verb)->bit);
  const Target target = ParseTarget(job.target, TargetPlace(job));
  RequireLocalTarget(job, target);
  const Layers layers(target.kind, {job.oci, job.plugin});
  const std::unique_ptr<CSSBenchmark> benchmark = layers.NewBenchmark();
  RequireXacts(*benchmark, job, FindVerb(verb)->bit);
  if (invocation.dry_run) {
    console.Result(DryRunText(invocation, target));
    return kDone;
  }
  LKGetConfig()->WriteProfileInt(L"Settings", L"RowsPerCommit", job.rows_per_commit);
  AllowOpenFiles();
  RunResults results(invocation, console);
  Database database(target, job);
  std::signal(SIGPIPE, SIG_IGN);  // a reader of our output that ends first does not end the run
  CancelSwitch cancel;
  CallBreaker breaker;
  CallWatch calls(breaker);
  UserPool users([&] { return layers.NewDriver(); }, database.Connect(), log, calls);
  const SignalWatch signals(cancel, breaker, console);
  Bench bench{job, console, log, cancel, breaker, *benchmark, users, {}, {}, {}, {}, {}, false, {}};
  if (verb == "check") {
    const int code = RunVerb(bench, verb, [&] {
      LearnSettings(bench, target.kind, database);
      console.Result(CheckText(layers, *benchmark, database.Connect().shown + database.Note(), bench.Admin(),
                               bench.server));
    });
    EndInOrder(bench, database, code);
    return code;
  }
  bench.views.Add(std::make_unique<ConsoleView>(console));
  if (job.format == OutputFormat::kJson) bench.views.Add(std::make_unique<StreamView>(console));
  if (job.metrics > 0) bench.views.Add(std::make_unique<MetricsView>(job.metrics, RunLabels(invocation)));
  results.TellBegin(FactsOf(bench, layers, target, database.Connect().shown));
  int code = RunVerb(bench, verb, [&] {
    LearnSettings(bench, target.kind, database);
    FunctionOf(verb)(bench);
  });
  try {
    if (const std::string reason = database.LikelyReason(); code != kDone && !reason.empty())
      console.Problem(reason);
    PrintSummary(bench);
    RunFacts facts = FactsOf(bench, layers, target, database.Connect().shown);
    facts.exit_code = code;
    results.Write(std::move(facts));
  } catch (const Failure& failure) {
    code = Failed(console, failure.Code(), failure.what());
  }
  EndInOrder(bench, database, code);
  return code;
}

int RunInvocation(Invocation& invocation, Console& console, ErrorLog& log) {
  DrawRunSeed(invocation.job);
  if (invocation.verb == "ddl") {
    console.Result(DdlScript(CreationStatements(invocation.job, console, log)));
    return kDone;
  }
  if (invocation.verb != "list") return RunDatabaseVerb(invocation, console, log);
  const Layers layers(TargetKind::kMariaDb, {invocation.job.oci, invocation.job.plugin});
  console.Result(ListText(*layers.NewBenchmark()));
  return kDone;
}

}  // namespace

int RunApp(int argc, const char* const* argv) {
  Console console;
  try {
    Invocation invocation = ReadCommandLine(argc, argv);
    invocation.words.assign(argv, argv + argc);
    if (!invocation.answer.empty()) {
      console.Result(invocation.answer.substr(0, invocation.answer.find_last_not_of('\n') + 1));
      return kDone;
    }
    if (RunTextVerb(invocation, console)) return kDone;
    console.SetLevel(invocation.job.log_level);
    if (!invocation.dry_run) console.SetFormat(invocation.job.format);
    if (const auto code = RunResultVerb(invocation, console)) return *code;
    ErrorLog log(console);
    const HostSetUp host(console, log);
    return RunInvocation(invocation, console, log);
  } catch (const Failure& failure) {
    return Failed(console, failure.Code(), failure.what());
  } catch (const std::exception& error) {
    return Failed(console, kInternal, std::string("internal error: ") + OneLine(error.what()));
  }
}

}  // namespace lkbench

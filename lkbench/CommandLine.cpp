// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CommandLine.h"

#include <CLI/CLI.hpp>
#include <map>

#include "lkbench/Failure.h"
#include "lkbench/JobFile.h"
#include "lkbench/JobKeys.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

struct Verb {
  const char* name;
  const char* help;
};

constexpr Verb kVerbs[] = {{"run", "create, load, workload and refresh, then a summary"},
                           {"create", "create the tables, the properties table and the sequence"},
                           {"load", "load the tables to the scale"},
                           {"workload", "drive inserts, updates and deletes for the duration"},
                           {"refresh", "remove the rows above the scale, make the sequence anew"},
                           {"drop", "drop everything that create made"},
                           {"list", "list the transactions of the plug-in"},
                           {"check", "show what is loaded from where, and whether it connects"}};

constexpr const char* kFooter =
    "Every flag that sets something is also a key of the job file (TOML, -c FILE), with _ for -: users = 8.\n"
    "Flags win over the file. Exit codes: 0 done, 1 usage or job, 2 ran with failures, 5 cannot connect or\n"
    "prepare, 70 internal error, 130 or 143 interrupted.";

constexpr const char* kVerbFooter = "Flags may stand before or behind the verb; lkbench --help lists them.";

// What CLI11 fills in; read into a Job once the job file is known.
struct Given {
  std::string file;
  bool debug = false;
  std::map<std::string, std::vector<std::string>> values;
  std::map<std::string, bool> switches;
};

void AddKey(CLI::App& app, Given& given, const JobKey& key) {
  if (key.shape == KeyShape::kSwitch) {
    app.add_flag(key.Flag() + ",!--no-" + key.Flag().substr(2), given.switches[key.name], key.help);
    return;
  }
  CLI::Option* option =
      app.add_option(key.Flag(), given.values[key.name], key.help)->type_name(key.value)->expected(1);
  option->multi_option_policy(key.shape == KeyShape::kRepeated ? CLI::MultiOptionPolicy::TakeAll
                                                               : CLI::MultiOptionPolicy::TakeLast);
}

void ApplyFlags(Job& job, const CLI::App& app, const Given& given) {
  for (const JobKey& key : JobKeys()) {
    if (app.get_option(key.Flag())->count() == 0) continue;
    JobValue value{key.name, key.Flag(), std::string(), true};
    if (key.shape == KeyShape::kSwitch) {
      value.value = given.switches.at(key.name);
    } else if (key.shape == KeyShape::kRepeated) {
      JobValue::List list;
      for (const std::string& text : given.values.at(key.name))
        list.push_back({key.name, key.Flag(), text, true});
      value.value = std::move(list);
    } else {
      value.value = given.values.at(key.name).back();
    }
    SetJobKey(job, key, value);
  }
}

std::vector<std::string> FlagNames() {
  std::vector<std::string> names = {"--config", "--debug", "--help", "--version"};
  for (const JobKey& key : JobKeys()) names.push_back(key.Flag());
  return names;
}

// Words that no verb and no flag took.
void RefuseExtras(const std::vector<std::string>& extras, bool has_verb) {
  if (extras.empty()) return;
  const std::string& word = extras.front();
  if (word.starts_with('-')) {
    const std::string flag = word.substr(0, word.find('='));
    throw UsageError("unknown flag " + Excerpt(flag) + DidYouMean(flag, FlagNames()));
  }
  if (!has_verb) throw UsageError("unknown verb \"" + Excerpt(word) + '"' + DidYouMean(word, VerbNames()));
  throw UsageError("unexpected argument \"" + Excerpt(word) + "\": one verb and flags are all there is");
}

void Configure(CLI::App& app, Given& given) {
  app.set_version_flag("--version", std::string("lkbench ") + LKBENCH_VERSION);
  app.add_option("-c,--config", given.file, "job file")->type_name("FILE");
  app.add_flag("--debug", given.debug, "as --log-level debug");
  for (const JobKey& key : JobKeys()) AddKey(app, given, key);
  for (const Verb& verb : kVerbs)
    app.add_subcommand(verb.name, verb.help)->fallthrough()->allow_extras()->footer(kVerbFooter);
  app.require_subcommand(0, 1);
  app.allow_extras();
  app.footer(kFooter);
}

std::string ChosenVerb(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return chosen.empty() ? "" : chosen.front()->get_name();
}

}  // namespace

std::vector<std::string> VerbNames() {
  std::vector<std::string> names;
  for (const Verb& verb : kVerbs) names.emplace_back(verb.name);
  return names;
}

Invocation ReadCommandLine(int argc, const char* const* argv) {
  CLI::App app{"lkbench: a replication benchmark for databases that speak the Oracle Call Interface",
               "lkbench"};
  Given given;
  Configure(app, given);
  Invocation invocation;
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    invocation.answer = app.help();
    return invocation;
  } catch (const CLI::CallForVersion& version) {
    invocation.answer = std::string(version.what()) + "\n";
    return invocation;
  } catch (const CLI::ParseError& error) {
    throw UsageError(OneLine(error.what()));
  }
  invocation.verb = ChosenVerb(app);
  RefuseExtras(app.remaining(true), !invocation.verb.empty());
  if (invocation.verb.empty())
    throw UsageError("a verb is needed: one of " + Join(VerbNames(), ", ") + "; lkbench --help says more");
  if (!given.file.empty()) ReadJobFile(invocation.job, given.file);
  ApplyFlags(invocation.job, app, given);
  if (given.debug) invocation.job.log_level = LogLevel::kDebug;
  return invocation;
}

}  // namespace lkbench

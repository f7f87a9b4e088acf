// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "lkbench/Failure.h"
#include "lkbench/JobFile.h"
#include "lkbench/JobKeys.h"
#include "lkbench/Text.h"
#include "lkbench/options/Environment.h"
#include "lkbench/options/HelpText.h"
#include "lkbench/options/PeerNames.h"
#include "lkbench/options/Templates.h"

namespace lkbench {
namespace {

// What CLI11 fills in; read into the invocation once the verb is known.
struct Given {
  bool help = false;
  bool version = false;
  std::map<std::string, std::vector<std::string>> values;
  std::map<std::string, bool> switches;
};

void AddFlag(CLI::App& app, Given& given, const KeyText& key) {
  const std::string letter = key.letter == 0 ? "" : std::string("-") + key.letter + ',';
  if (key.form.shape == KeyShape::kSwitch) {
    app.add_flag(letter + key.Flag() + ",!--no-" + key.Flag().substr(2), given.switches[key.name]);
    return;
  }
  app.add_option(letter + key.Flag(), given.values[key.name])
      ->type_name(key.value)
      ->expected(1)
      ->multi_option_policy(key.form.shape == KeyShape::kRepeated ? CLI::MultiOptionPolicy::TakeAll
                                                                  : CLI::MultiOptionPolicy::TakeLast);
}

void Configure(CLI::App& app, Given& given) {
  app.set_help_flag();
  app.add_flag("-h,--help", given.help);
  app.add_flag("--version", given.version);
  for (const KeyText& key : AllFlags()) AddFlag(app, given, key);
  for (const VerbInfo& verb : AllVerbs()) {
    CLI::App* sub = app.add_subcommand(verb.name);
    sub->set_help_flag();
    sub->fallthrough()->allow_extras();
  }
  app.require_subcommand(0, 1);
  app.allow_extras();
}

// The settings of one invocation, as far as flags and environment give them.
class Settings {
 public:
  Settings(const CLI::App& app, const Given& given)
      : m_app(app), m_given(given), m_variables(LkbenchVariables()) {}

  // Flags that stand there but that the verb does nothing with would be lost in silence.
  void RefuseUnused(const VerbInfo& verb) const {
    for (const KeyText& key : AllFlags())
      if (IsFlagGiven(key) && (key.verbs & verb.bit) == 0)
        throw UsageError(key.Flag() + ": " + verb.name + " does not use it: `lkbench help " + verb.name +
                         "` shows what it uses");
  }
  // Calls set(key, value) for what the environment says.
  template <class Owner, class Set>
  void FromEnvironment(std::span<const Key<Owner>> keys, Set&& set) const {
    for (const Key<Owner>& key : keys) {
      const KeyText text = TextOf(key);
      const auto found = std::ranges::find(m_variables, text.Variable(), &Variable::name);
      if (found != m_variables.end()) set(key, ValueOfVariable(text, *found));
    }
  }
  // The same for the flags.
  template <class Owner, class Set>
  void FromFlags(std::span<const Key<Owner>> keys, Set&& set) const {
    for (const Key<Owner>& key : keys) {
      const KeyText text = TextOf(key);
      if (IsFlagGiven(text)) set(key, FlagValue(text));
    }
  }
  const std::vector<Variable>& Variables() const { return m_variables; }

 private:
  bool IsFlagGiven(const KeyText& key) const { return m_app.get_option(key.Flag())->count() > 0; }
  JobValue FlagValue(const KeyText& key) const {
    if (key.form.shape != KeyShape::kSwitch)
      return ValueFromText(key, key.Flag(), m_given.values.at(key.name));
    return {key.name, key.Flag(), m_given.switches.at(key.name), true};
  }

  const CLI::App& m_app;
  const Given& m_given;
  std::vector<Variable> m_variables;
};

// --debug is the short form of a log level; both at once must agree.
void ApplyDebug(Invocation& invocation) {
  Job& job = invocation.job;
  if (!invocation.debug) return;
  if (OriginOf(job, "log_level") == "--log-level" && job.log_level != LogLevel::kDebug)
    throw UsageError(
        "--debug: it means --log-level debug, but --log-level says otherwise: leave one of them out");
  job.log_level = LogLevel::kDebug;
}

void ReadSettings(Invocation& invocation, const VerbInfo& verb, const Settings& settings) {
  const auto set_own = [&](const auto& key, const JobValue& value) { key.type.set(invocation, value); };
  const auto set_job = [&](const auto& key, const JobValue& value) { SetJobKey(invocation.job, key, value); };
  settings.FromEnvironment(InvocationFlags(), set_own);
  settings.FromFlags(InvocationFlags(), set_own);
  if ((verb.bit & (kJobVerbs | kCompareVerb)) == 0) return;  // uses no key of a job
  if (!invocation.config.empty()) ReadJobFile(invocation.job, invocation.config);
  settings.FromEnvironment(JobKeys(), set_job);
  settings.FromFlags(JobKeys(), set_job);
  ApplyDebug(invocation);
  RefuseUnknownVariables(settings.Variables(), invocation.job.password);
}

std::vector<std::string> FlagNames() {
  std::vector<std::string> names = {"--help", "--version"};
  for (const KeyText& key : AllFlags()) names.push_back(key.Flag());
  return names;
}

// "-T60" is the flag -T with its value.
std::string FlagOf(const std::string& word) {
  const std::string flag = word.substr(0, word.find('='));
  return flag.starts_with("--") ? flag : flag.substr(0, 2);
}

[[noreturn]] void RefuseFlag(const std::string& flag, const VerbInfo* verb) {
  const std::string nearest = DidYouMeanKey(flag, FlagNames(), FlagOfKey);
  const std::string about =
      verb == nullptr ? "VERB` lists the flags of a verb" : verb->name + "` lists the flags of " + verb->name;
  throw UsageError("unknown flag " + Excerpt(flag) +
                   (nearest.empty() ? ": `lkbench help " + about : nearest));
}

// What somebody may have meant with an argument that the verb does not take.
std::string HintFor(const std::string& argument) {
  if (argument.ends_with(".toml")) return "; a job file is named with -c";
  if (std::ranges::count(TemplateNames(), argument) == 0) return {};
  return "; `lkbench init --template " + argument + "` writes a job of this kind";
}

// Words that no verb and no flag took: the verb's arguments, or mistakes.
std::vector<std::string> Arguments(const std::vector<std::string>& extras, const VerbInfo* verb) {
  for (const std::string& word : extras) {
    if (!word.starts_with('-') || word == "-") continue;
    RefuseFlag(FlagOf(word), verb);
  }
  if (verb == nullptr && !extras.empty()) {
    const std::string nearest = DidYouMeanVerb(extras.front());
    throw UsageError(
        "unknown verb \"" + Excerpt(extras.front()) + '"' +
        (nearest.empty() ? ": one of " + Join(VerbNames(), ", ") + "; `lkbench help` says more" : nearest));
  }
  if (verb == nullptr) return {};
  const std::string form = "the form is lkbench " + verb->name + ' ' +
                           (verb->arguments.empty() ? "[FLAGS]" : verb->arguments + " [FLAGS]");
  if (extras.size() > verb->most)
    throw UsageError("unexpected argument \"" + Excerpt(extras[verb->most]) + "\": " + form +
                     HintFor(extras[verb->most]));
  if (extras.size() < verb->fewest) throw UsageError(verb->name + ": an argument is missing: " + form);
  return extras;
}

// What CLI11 refuses by itself: in practice a flag at the end of the line without its value.
std::string ParseProblem(const std::string& text) {
  const std::string flag = text.substr(0, text.find(':'));
  for (const KeyText& key : AllFlags())
    if (flag == key.Flag() && !key.value.empty())
      return std::string(flag).append(": its value is missing: ").append(flag).append(" ").append(key.value);
  return OneLine(text);
}

const VerbInfo* ChosenVerb(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return chosen.empty() ? nullptr : FindVerb(chosen.front()->get_name());
}

std::string AnswerOf(const Given& given, const VerbInfo* verb, const std::vector<std::string>& arguments) {
  if (given.version) return std::string("lkbench ") + LKBENCH_VERSION + '\n';
  if (given.help) return verb == nullptr ? GeneralHelp() : VerbHelp(*verb);
  const bool is_help = verb != nullptr && verb->bit == kHelpVerb;
  if (is_help && !arguments.empty()) {
    const VerbInfo* about = FindVerb(arguments.front());
    if (about == nullptr && FindJobKey(arguments.front()) != nullptr)
      throw UsageError("help: " + arguments.front() + " is a key: `lkbench man lkbench-job` describes all");
    if (about == nullptr)
      throw UsageError("help: unknown verb \"" + Excerpt(arguments.front()) + '"' +
                       DidYouMeanVerb(arguments.front()));
    return VerbHelp(*about);
  }
  return is_help ? GeneralHelp() : std::string();
}

}  // namespace

Invocation ReadCommandLine(int argc, const char* const* argv) {
  CLI::App app{"lkbench", "lkbench"};
  Given given;
  Configure(app, given);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    throw UsageError(ParseProblem(error.what()));
  }
  Invocation invocation;
  const VerbInfo* verb = ChosenVerb(app);
  if (given.help) {
    invocation.answer = AnswerOf(given, verb, {});
    return invocation;
  }
  invocation.arguments = Arguments(app.remaining(true), verb);
  invocation.answer = AnswerOf(given, verb, invocation.arguments);
  if (!invocation.answer.empty()) return invocation;
  if (verb == nullptr)
    throw UsageError("a verb is needed: one of " + Join(VerbNames(), ", ") + "; `lkbench help` says more");
  const Settings settings(app, given);
  settings.RefuseUnused(*verb);
  invocation.verb = verb->name;
  ReadSettings(invocation, *verb, settings);
  return invocation;
}

}  // namespace lkbench

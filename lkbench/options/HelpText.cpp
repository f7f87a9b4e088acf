// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/HelpText.h"

#include <algorithm>
#include <vector>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/Flags.h"
#include "lkbench/options/Wrap.h"

namespace lkbench {
namespace {

constexpr size_t kLeft = 30;  // where the second column begins

// "  left    right", the right one wrapped; a long left one has a line of its own.
std::string Row(const std::string& left, const std::string& right, size_t width = kLeft) {
  std::string row = "  " + left;
  if (row.size() + 2 > width)
    row += '\n' + std::string(width, ' ');
  else
    row.resize(width, ' ');
  return row + Wrapped(right, std::string(width, ' '));
}

std::string FlagRow(const KeyText& key) {
  const std::string letter = key.letter == 0 ? "    " : std::string("-") + key.letter + ", ";
  const std::string value = key.value.empty() ? "" : ' ' + key.value;
  const std::string standard = key.standard.empty() ? "" : " (" + key.standard + ')';
  return Row(letter + key.Flag() + value, key.help + standard);
}

std::string Examples(const VerbInfo& verb) {
  if (verb.examples.empty()) return {};
  std::string text = "\nExamples:\n";
  for (const Example& example : verb.examples)
    text += "  # " + example.does + "\n  " + example.command + '\n';
  return text;
}

std::string FlagRows(Verbs bit) {
  std::string text;
  const char* title = nullptr;
  for (const KeyText& key : AllFlags()) {
    if ((key.verbs & bit) == 0) continue;
    const char* own = SectionTitle(key.section);
    if (own != title) text += std::string("\n") + own + ":\n";
    title = own;
    text += FlagRow(key);
  }
  return text;
}

const std::vector<ExitStatus> kStatuses = {{kDone, "done"},
                                           {kUsage, "usage or job"},
                                           {kRanWithFailures, "ran with failures"},
                                           {kLimitFailed, "a limit failed"},
                                           {kCannotPrepare, "cannot connect or prepare"},
                                           {kInternal, "internal error"},
                                           {kInterrupted, "interrupted by Ctrl-C"},
                                           {kTerminated, "terminated by a signal"}};

std::string ExitCodesText() {
  std::vector<std::string> codes;
  codes.reserve(std::size(kStatuses));
  for (const ExitStatus& status : kStatuses)
    codes.push_back(std::to_string(status.code) + ' ' + status.meaning);
  return "Exit codes: " + Join(codes, ", ") + '.';
}

}  // namespace

std::span<const ExitStatus> ExitStatuses() { return kStatuses; }

std::string ProgramDescription() {
  return "lkbench measures databases that speak the Oracle Call Interface. It creates generated tables, "
         "loads them "
         "by array inserts from several users, drives single-row inserts, updates and deletes against them, "
         "and puts "
         "everything back to where it was. Without a target it works on a private database in a folder of "
         "its own.";
}

std::string SettingsText() {
  return "Settings are made in the job file (users = 8), in the environment (LKBENCH_USERS=8) or by a flag "
         "(--users 8); the later of these wins. `lkbench help VERB` lists the flags of a verb. A variable "
         "that begins "
         "with LKBENCH_ and is no setting is refused; one that is set to nothing counts as not set.";
}

std::string GeneralHelp() {
  constexpr size_t kVerbWidth = 14;
  std::string text =
      "lkbench: a replication benchmark for databases that speak the Oracle Call Interface\n\n";
  text += "Usage: lkbench VERB [FLAGS]\n\nVerbs:\n";
  for (const VerbInfo& verb : AllVerbs()) text += Row(verb.name, verb.help, kVerbWidth);
  text += "\nFor every verb:\n" + Row("-h, --help", "its flags and examples") +
          Row("    --version", "version of lkbench");
  text += "\n" + Wrapped(SettingsText(), "");
  text += "\n" + Wrapped(ExitCodesText(), "");
  return text + Examples(*FindVerb("run"));
}

std::string VerbHelp(const VerbInfo& verb) {
  std::string text = "lkbench " + verb.name + ": " + verb.help + '\n';
  if (!verb.more.empty()) text += '\n' + Wrapped(verb.more, "");
  const std::string flags = FlagRows(verb.bit);
  text += "\nUsage: lkbench " + verb.name + (verb.arguments.empty() ? "" : ' ' + verb.arguments) +
          (flags.empty() ? "" : " [FLAGS]") + '\n';
  return text + flags + Examples(verb);
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/HelpText.h"

#include <algorithm>

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

constexpr const char* kSettings =
    "Settings are made in the job file (users = 8), in the environment (LKBENCH_USERS=8) or by a flag "
    "(--users 8); the later of these wins. `lkbench help VERB` lists the flags of a verb.";

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 usage or job, 2 ran with failures, 5 cannot connect or prepare, 70 internal "
    "error, 130 or 143 "
    "interrupted.";

}  // namespace

std::string GeneralHelp() {
  constexpr size_t kVerbWidth = 14;
  std::string text =
      "lkbench: a replication benchmark for databases that speak the Oracle Call Interface\n\n";
  text += "Usage: lkbench VERB [FLAGS]\n\nVerbs:\n";
  for (const VerbInfo& verb : AllVerbs()) text += Row(verb.name, verb.help, kVerbWidth);
  text += "\nFor every verb:\n" + Row("-h, --help", "its flags and examples") +
          Row("    --version", "version of lkbench");
  text += "\n" + Wrapped(kSettings, "");
  text += "\n" + Wrapped(kExitCodes, "");
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

// SPDX-License-Identifier: Apache-2.0
#include "Reference.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "lkbench/JobKeys.h"
#include "lkbench/Text.h"
#include "lkbench/options/Flags.h"
#include "lkbench/options/HelpText.h"
#include "lkbench/options/Templates.h"
#include "lkbench/options/Wrap.h"
#include "lkbench/results/SeriesCsv.h"

namespace lkbench {
namespace {

constexpr const char* kOrigin =
    "\n<!-- Made from the tables of the program; docs/README.md says how to make it anew. -->\n";

std::string Code(const std::string& text) { return '`' + text + '`'; }

// A bar would end a cell; a fence of two back quotes would be needed for text that has one, which no help
// has.
std::string Cell(std::string text) {
  for (size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) text.insert(at, 1, '\\');
  return text;
}

std::string Sentence(std::string text) {
  if (!text.empty()) text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + '.';
}

std::string Row(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) row += (cell.empty() ? "" : ' ' + Cell(cell)) + " |";
  return row + '\n';
}

std::string Head(const std::vector<std::string>& cells) {
  std::string line = "|";
  for (size_t i = 0; i < cells.size(); ++i) line += "---|";
  return Row(cells) + line + '\n';
}

std::string FlagCell(const KeyText& key) {
  const std::string letter = key.letter == 0 ? "" : Code(std::string("-") + key.letter) + ", ";
  return letter + Code(key.Flag() + (key.value.empty() ? "" : ' ' + key.value));
}

std::string DefaultCell(const KeyText& key) {
  const bool is_list = key.standard.find('\n') != std::string::npos;
  const bool is_said_in_words = key.standard.find(' ') != std::string::npos;
  if (key.standard.empty() || is_list) return {};
  return is_said_in_words ? key.standard : Code(key.standard);
}

std::string UsedBy(Verbs verbs) {
  std::vector<std::string> names;
  for (const VerbInfo& verb : AllVerbs())
    if ((verb.bit & verbs) != 0) names.push_back('[' + verb.name + "](#" + verb.name + ')');
  return Join(names, ", ");
}

std::string FlagTable(Section section) {
  std::string rows;
  for (const KeyText& key : AllFlags())
    if (key.section == section)
      rows += Row({FlagCell(key), Sentence(key.help), DefaultCell(key), UsedBy(key.verbs)});
  if (rows.empty()) return {};
  return std::string("\n### ") + SectionTitle(section) + "\n\n" +
         Head({"flag", "meaning", "default", "verbs"}) + rows;
}

std::string FlagNames(Verbs bit) {
  std::vector<std::string> names;
  for (const KeyText& key : AllFlags())
    if ((key.verbs & bit) != 0) names.push_back(Code(key.Flag()));
  return Join(names, ", ");
}

std::string VerbPart(const VerbInfo& verb) {
  const std::string flags = FlagNames(verb.bit);
  std::string text = "\n### " + verb.name + "\n\n" +
                     Code("lkbench " + verb.name + (verb.arguments.empty() ? "" : ' ' + verb.arguments) +
                          (flags.empty() ? "" : " [FLAGS]")) +
                     ": " + Wrapped(verb.help + '.', "");
  if (!verb.more.empty()) text += '\n' + Wrapped(verb.more, "");
  if (!flags.empty()) text += '\n' + Wrapped("Flags: " + flags + '.', "");
  if (verb.examples.empty()) return text;
  text += "\n```sh\n";
  for (const Example& example : verb.examples) text += "# " + example.does + '\n' + example.command + '\n';
  return text + "```\n";
}

std::string ExitTable() {
  std::string text = "\n## Exit codes\n\n" + Head({"code", "means"});
  for (const ExitStatus& status : ExitStatuses()) text += Row({std::to_string(status.code), status.meaning});
  return text;
}

std::string KeyPart(const JobKey& key) {
  const KeyText text = TextOf(key);
  const std::string standard = key.type.toml(Job());
  const bool is_list = standard.find('\n') != std::string::npos;
  std::string part = "\n### " + key.name + "\n\n" + Wrapped(Sentence(key.help), "") + "\n" +
                     Head({"flag", "variable", "default", "verbs"});
  std::vector<std::string> verbs;
  for (const VerbInfo& verb : AllVerbs())
    if ((verb.bit & key.verbs) != 0) verbs.push_back(verb.name);
  part +=
      Row({FlagCell(text), Code(text.Variable()), is_list ? "below" : DefaultCell(text), Join(verbs, ", ")});
  return is_list ? part + "\n```toml\n" + key.name + " = " + standard + "\n```\n" : part;
}

std::string TemplateTable() {
  std::string text =
      "\n## Templates\n\n`lkbench init --template NAME` writes a job file with all keys and comments.\n\n" +
      Head({"name", "is for"});
  for (const JobTemplate& each : JobTemplates()) text += Row({Code(each.name), each.help});
  return text;
}

}  // namespace

std::string VerbReference() {
  std::string text = std::string("# lkbench: verbs, flags, exit codes\n") + kOrigin + '\n' +
                     Wrapped(ProgramDescription(), "") + '\n' + Wrapped(SettingsText(), "") + "\n## Verbs\n";
  for (const VerbInfo& verb : AllVerbs()) text += VerbPart(verb);
  text += "\n## Flags\n";
  for (const Section section : kSections) text += FlagTable(section);
  return text + ExitTable();
}

std::string JobReference() {
  std::string text =
      std::string("# Keys of a job file\n") + kOrigin + '\n' +
      Wrapped(
          "A job file is TOML. Every key may be left out; a key that is not known is an error. A "
          "key is a flag and a variable, too: the flag wins over the variable, and that over the "
          "file. [How to write a job](../how-to/write-a-job.md) has examples.",
          "") +
      TemplateTable();
  for (const Section section : kSections) {
    std::string part;
    for (const JobKey& key : JobKeys())
      if (key.section == section) part += KeyPart(key);
    if (!part.empty()) text += std::string("\n## ") + SectionTitle(section) + '\n' + part;
  }
  return text;
}

std::string SeriesColumnNames() {
  std::string head = SeriesCsv(RunRecord());
  std::ranges::replace(head, ',', '\n');
  return head;
}

}  // namespace lkbench

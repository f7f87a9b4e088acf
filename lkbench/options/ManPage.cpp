// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/ManPage.h"

#include "lkbench/JobKeys.h"
#include "lkbench/Text.h"
#include "lkbench/options/Flags.h"
#include "lkbench/options/HelpText.h"
#include "lkbench/options/Roff.h"
#include "lkbench/options/Templates.h"

namespace lkbench {
namespace {

std::string UsedBy(Verbs verbs) {
  std::vector<std::string> names;
  for (const VerbInfo& verb : AllVerbs())
    if ((verb.bit & verbs) != 0) names.push_back(verb.name);
  return Join(names, ", ");
}

std::string Standard(const KeyText& key) {
  return key.standard.empty() ? "" : " Default: " + Roff(key.standard) + '.';
}

std::string FlagEntry(const KeyText& key) {
  const std::string letter = key.letter == 0 ? "" : Bold(std::string("-") + key.letter) + ", ";
  const std::string value = key.value.empty() ? "" : ' ' + Italic(key.value);
  return Entry(letter + Bold(key.Flag()) + value,
               Roff(key.help) + '.' + Standard(key) + " Used by " + Roff(UsedBy(key.verbs)) + '.');
}

std::string VerbEntry(const VerbInfo& verb) {
  std::string text = Roff(verb.help) + '.';
  if (!verb.more.empty()) text += ' ' + Roff(verb.more);
  std::string entry =
      Entry(Bold(verb.name) + (verb.arguments.empty() ? "" : ' ' + Italic(verb.arguments)), text);
  return entry;
}

std::string KeyEntry(const JobKey& key) {
  const KeyText text = TextOf(key);
  const std::string standard = key.type.toml(Job());
  const bool is_list = standard.find('\n') != std::string::npos;
  std::string entry =
      Entry(Bold(key.name), Roff(key.help) + ".\n.br\nFlag " + Bold(text.Flag()) + ", variable " +
                                Bold(text.Variable()) + '.' + (is_list ? "" : Standard(text)));
  if (!is_list) return entry;
  return entry + ".IP\nDefault:\n.IP\n.nf\n\\&" + Roff(standard) + "\n.fi\n";
}

template <class Line>
std::string BySection(const Line& lines) {
  std::string text;
  for (const Section section : kSections) {
    const std::string part = lines(section);
    if (!part.empty()) text += SubHeading(SectionTitle(section)) + part;
  }
  return text;
}

std::string Examples() {
  std::string text;
  for (const VerbInfo& verb : AllVerbs())
    for (const Example& example : verb.examples) text += Entry(Roff(example.does), Bold(example.command));
  return text;
}

}  // namespace

std::string ProgramPage() {
  std::string text =
      PageTitle("LKBENCH", 1, "User Commands") + Heading("NAME") +
      "lkbench \\- replication benchmark for databases that speak the Oracle Call Interface\n" +
      Heading("SYNOPSIS") + Bold("lkbench") + ' ' + Italic("VERB") + " [" + Italic("FLAGS") + "]\n" +
      Heading("DESCRIPTION") + Roff(ProgramDescription()) + '\n' + Heading("VERBS");
  for (const VerbInfo& verb : AllVerbs()) text += VerbEntry(verb);
  text += Heading("FLAGS") + BySection([](Section section) {
            std::string part;
            for (const KeyText& key : AllFlags())
              if (key.section == section) part += FlagEntry(key);
            return part;
          });
  text += Heading("SETTINGS") + Roff(SettingsText()) + '\n' + Heading("EXIT STATUS");
  for (const ExitStatus& status : ExitStatuses())
    text += Entry(Bold(std::to_string(status.code)), Roff(status.meaning) + '.');
  return text + Heading("EXAMPLES") + Examples() + Heading("SEE ALSO") + Bold("lkbench-job") + "(5), " +
         Bold("lkbench-results") + "(5)\n";
}

std::string JobPage() {
  std::string text =
      PageTitle("LKBENCH-JOB", 5, "File Formats") + Heading("NAME") +
      "lkbench\\-job \\- job file of lkbench\n" + Heading("DESCRIPTION") +
      "A job file is TOML. It says what " + Bold("lkbench") +
      "(1) is to do and where. Every key may be left out; a key that is not known is an error. " +
      Bold("lkbench init") + " writes a commented file from one of these templates:\n";
  for (const JobTemplate& each : JobTemplates()) text += Entry(Bold(each.name), Roff(each.help) + '.');
  text += ".PP\n" + Roff(SettingsText()) + '\n' + Heading("KEYS") + BySection([](Section section) {
            std::string part;
            for (const JobKey& key : JobKeys())
              if (key.section == section) part += KeyEntry(key);
            return part;
          });
  return text + Heading("EXAMPLE") +
         Literal(
             "target = \"local:/data/bench\"\nusers = 8\nduration = \"5m\"\nscale = 10\n"
             "mix = { insert = 60, update = 30, delete = 10 }") +
         Heading("SEE ALSO") + Bold("lkbench") + "(1), " + Bold("lkbench-results") + "(5)\n";
}

}  // namespace lkbench

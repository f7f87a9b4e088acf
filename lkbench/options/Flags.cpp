// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Flags.h"

#include <algorithm>

#include "lkbench/JobKeys.h"
#include "lkbench/options/KeyTypes.h"
#include "lkbench/options/Templates.h"

namespace lkbench {
namespace {

using enum Section;

constexpr Verbs kActingVerbs = kDatabaseVerbs | kInitVerb | kReportVerb | kCompareVerb;  // connect or write

// Not a constant of the file: it is made from the templates, which must be there first.
const std::vector<Key<Invocation>>& Flags() {
  static const std::vector<Key<Invocation>> flags = {
      {"config", "FILE", "job file (TOML)", kGeneral, kJobVerbs, FileName(&Invocation::config), {}, 'c'},
      {"dry_run", "", "say what would be done: nothing is connected to, started or written", kGeneral,
       kActingVerbs, Switch(&Invocation::dry_run)},
      {"template", "NAME", "what the job is for: smoke, oltp, wide, many-tables, failover", kGeneral,
       kInitVerb, OneOf(&Invocation::job_template, TemplateNames())},
      {"output",
       "FILE",
       "the job file to write; - prints it",
       kGeneral,
       kInitVerb,
       FileName(&Invocation::output),
       {},
       'o'},
      {"fail_over", "PERCENT",
       "exit with 3 when a figure got worse by more than this, as 5%, and by more than noise", kOutput,
       kCompareVerb, Percent(&Invocation::fail_over), "whatever differs, the exit code is 0"},
      {"html", "FILE", "write the comparison as a page", kOutput, kCompareVerb, FileName(&Invocation::html)},
      {"debug", "", "as --log-level debug", kOutput, kJobVerbs, Switch(&Invocation::debug)},
  };
  return flags;
}

}  // namespace

std::span<const Key<Invocation>> InvocationFlags() { return Flags(); }

std::vector<KeyText> AllFlags() {
  std::vector<KeyText> flags;
  for (const auto& key : Flags()) flags.push_back(TextOf(key));
  for (const auto& key : JobKeys()) flags.push_back(TextOf(key));
  std::ranges::stable_sort(flags, {}, &KeyText::section);
  return flags;
}

JobValue ValueFromText(const KeyText& key, const std::string& place, const std::vector<std::string>& texts) {
  JobValue value{key.name, place, std::string(), true};
  if (key.form.shape != KeyShape::kRepeated) {
    value.value = texts.back();
    return value;
  }
  JobValue::List list;
  for (const std::string& text : texts) list.push_back({key.name, place, text, true});
  value.value = std::move(list);
  return value;
}

}  // namespace lkbench

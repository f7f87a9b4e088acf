// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Templates.h"

#include <algorithm>

#include "lkbench/JobKeys.h"
#include "lkbench/options/Wrap.h"

namespace lkbench {
namespace {

const std::vector<JobTemplate>& Templates() {
  static const std::vector<JobTemplate> templates = {
      {"smoke",
       "a few seconds on a private database: whether everything works",
       {{"tables", "2"}, {"scale", "1"}, {"users", "2"}, {"duration", "\"5s\""}}},
      {"oltp",
       "a steady mix of single-row changes by many users on tables of ordinary width",
       {{"tables", "16"},
        {"scale", "100"},
        {"rows_per_commit", "1000"},
        {"users", "16"},
        {"duration", "\"5m\""},
        {"mix", "{ insert = 30, update = 60, delete = 10 }"}}},
      {"wide",
       "few tables of many columns, texts above all: what row size costs",
       {{"tables", "4"},
        {"scale", "10"},
        {"min_columns", "100"},
        {"max_columns", "150"},
        {"column_types",
         "[\n  { type = \"NUMBER(12,2)\", weight = 2 },\n  { type = \"VARCHAR2(80)\", weight = 5, nullable = "
         "true "
         "},\n  { type = \"DATE\" },\n  { type = \"TIMESTAMP(6)\", nullable = true },\n]"},
        {"rows_per_commit", "100"},
        {"users", "4"},
        {"duration", "\"2m\""}}},
      {"many-tables",
       "hundreds of small tables: what the number of tables costs",
       {{"tables", "500"},
        {"scale", "1"},
        {"min_columns", "3"},
        {"max_columns", "8"},
        {"users", "16"},
        {"duration", "\"2m\""}}},
      {"failover",
       "inserts and updates for long on a server that will be lost and come back",
       {{"target", "\"mariadb://bench@127.0.0.1:3306/bench\""},
        {"password", "\"env:BENCH_PASSWORD\""},
        {"tables", "8"},
        {"scale", "10"},
        {"users", "8"},
        {"duration", "\"10m\""},
        {"mix", "{ insert = 50, update = 50, delete = 0 }"},
        {"on_disconnect", "\"reconnect\""},
        {"reconnect_pause", "\"50ms\""},
        {"reconnect_limit", "\"1s\""},
        {"call_timeout", "\"30s\""}}},
  };
  return templates;
}

std::string Commented(const std::string& text) {
  std::string commented = "# ";
  for (const char c : text) commented += c == '\n' ? std::string("\n# ") : std::string(1, c);
  return commented;
}

const JobTemplate::Setting* Find(const JobTemplate& job_template, const std::string& key) {
  const auto found = std::ranges::find(job_template.settings, key, &JobTemplate::Setting::key);
  return found == job_template.settings.end() ? nullptr : &*found;
}

std::string KeyLines(const JobKey& key, const JobTemplate::Setting* set) {
  const std::string standard = key.type.toml(Job());
  const std::string help = key.help + (key.otherwise.empty() ? "" : " (default: " + key.otherwise + ')');
  std::string text = "# " + Wrapped(help, "# ");
  if (set != nullptr) return text + key.name + " = " + set->value + "\n";
  return text + Commented(key.name + " = " + (standard.empty() ? key.value : standard)) + "\n";
}

}  // namespace

std::span<const JobTemplate> JobTemplates() { return Templates(); }

std::vector<std::string> TemplateNames() {
  std::vector<std::string> names;
  for (const JobTemplate& each : Templates()) names.push_back(each.name);
  return names;
}

std::string TemplateText(const JobTemplate& job_template) {
  std::string text =
      "# " + Wrapped("A job for lkbench: " + job_template.help + ".", "# ") +
      "# Run it with: lkbench run -c FILE. Lines that are commented out show what holds without them.\n"
      "# A variable (LKBENCH_USERS) wins over this file, a flag (--users) over both.\n";
  for (const Section section : kSections) {
    std::string lines;
    for (const JobKey& key : JobKeys())
      if (key.section == section) lines += '\n' + KeyLines(key, Find(job_template, key.name));
    if (!lines.empty()) text += std::string("\n# --- ") + SectionTitle(section) + " ---\n" + lines;
  }
  return text;
}

}  // namespace lkbench

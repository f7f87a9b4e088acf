// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/EffectiveJob.h"

#include <filesystem>

#include "lkbench/JobKeys.h"
#include "lkbench/Target.h"

namespace lkbench {
namespace {

void MakeAbsolute(std::string& file) {
  if (!file.empty()) file = std::filesystem::absolute(file).lexically_normal();
}

// The same job for a reader in any folder.
Job Placed(Job job) {
  const Target target = ParseTarget(job.target, OriginOf(job, "target"));
  if (target.kind == TargetKind::kLocal) job.target = "local:" + target.folder.string();
  for (std::string* file : {&job.json, &job.plugin, &job.oci}) MakeAbsolute(*file);
  if (job.results != kNoResults) MakeAbsolute(job.results);
  const std::string source = "file:";
  if (job.password.starts_with(source)) {
    std::string file = job.password.substr(source.size());
    MakeAbsolute(file);
    job.password = source + file;
  }
  return job;
}

// A value of several lines has the place behind its first.
std::string Line(const std::string& name, const std::string& value, const std::string& place) {
  const size_t first = std::min(value.find('\n'), value.size());
  return name + " = " + value.substr(0, first) + "  # " + place + value.substr(first) + '\n';
}

}  // namespace

std::string EffectiveJobText(const Job& given) {
  const Job job = Placed(given);
  std::string text =
      "# What this run was told, with the place of each setting; `lkbench run -c FILE` repeats it.\n";
  std::string tables;  // of TOML; what follows one belongs to it
  for (const Section section : kSections) {
    std::string lines;
    for (const JobKey& key : JobKeys()) {
      const std::string value = key.section == section ? key.type.toml(job) : "";
      if (value.starts_with("[["))
        tables += '\n' + value + '\n';
      else if (!value.empty())
        lines += Line(key.name, value, OriginOf(job, key.name));
    }
    if (!lines.empty()) text += std::string("\n# ") + SectionTitle(section) + '\n' + lines;
  }
  return text + tables;
}

}  // namespace lkbench

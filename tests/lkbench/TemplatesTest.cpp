// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Templates.h"

#include <gmock/gmock.h>

#include <sstream>

#include "Told.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

// Without "# " at the beginning of lines that set something: the defaults as settings.
std::string Uncommented(const std::string& text, const JobKey& key) {
  const std::string line = "\n# " + key.name + " = ";
  std::string live = text;
  if (const size_t at = live.find(line); at != std::string::npos) live.erase(at + 1, 2);
  return live;
}

TEST(Templates, AreJobsThatSetWhatTheySay) {
  for (const JobTemplate& each : JobTemplates()) {
    const Job job = ReadJob(TemplateText(each));
    EXPECT_EQ(job.origins.size(), each.settings.size()) << each.name;
    for (const auto& setting : each.settings) EXPECT_TRUE(job.origins.contains(setting.key)) << setting.key;
    EXPECT_NO_THROW(CheckJob(job, kRunVerb)) << each.name;
  }
}

TEST(Templates, NameEveryKeyWithItsHelp) {
  for (const JobTemplate& each : JobTemplates())
    for (const JobKey& key : JobKeys()) {
      EXPECT_THAT(TemplateText(each), HasSubstr(key.name + " = ")) << each.name;
      EXPECT_THAT(TemplateText(each), HasSubstr("\n# " + key.help.substr(0, 30))) << each.name;
    }
}

TEST(Templates, ShowDefaultsThatHold) {
  const std::string text = TemplateText({"", "nothing set", {}});
  EXPECT_TRUE(ReadJob(text).origins.empty());
  for (const JobKey& key : JobKeys()) {
    const std::string standard = key.type.toml(Job());
    if (standard.empty() || standard.find('\n') != std::string::npos) continue;
    Job job = ReadJob(Uncommented(text, key));
    EXPECT_EQ(job.origins.erase(key.name), 1u) << key.name;
    EXPECT_TRUE(job == Job()) << key.name;
  }
}

TEST(Templates, FitAHundredColumns) {
  for (const JobTemplate& each : JobTemplates()) {
    std::istringstream lines(TemplateText(each));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100u) << line;
  }
}

}  // namespace
}  // namespace lkbench

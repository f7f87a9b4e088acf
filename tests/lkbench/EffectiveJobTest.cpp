// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/EffectiveJob.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "Told.h"
#include "UnusualJob.h"
#include "lkbench/JobKeys.h"
#include "lkbench/options/PhaseKeys.h"

namespace lkbench {
namespace {

using testing::HasSubstr;
using testing::Not;

Job WithoutOrigins(Job job) {
  job.origins.clear();
  job.phases.clear();  // written complete: they are compared as what they mean
  return job;
}

Job WrittenAndRead(const Job& job) {
  return WithoutOrigins(ReadJob(EffectiveJobText(job), "effective.toml"));
}

TEST(EffectiveJob, EveryKeyReadsBackAsItWas) {
  const Job job = ReadJob(kUnusualJob);
  for (const JobKey& key : JobKeys())
    EXPECT_NE(key.type.toml(job), key.type.toml(Job())) << key.name << " is missing in kUnusualJob";
  EXPECT_TRUE(WrittenAndRead(job) == WithoutOrigins(job)) << EffectiveJobText(job);
  EXPECT_EQ(PhasesOf(ReadJob(EffectiveJobText(job))), PhasesOf(job));
}

TEST(EffectiveJob, DefaultsReadBackAsTheyWere) {
  Job job = ReadJob("target = \"local:/data/db\"");
  job.run_seed = 5;
  EXPECT_TRUE(WrittenAndRead(job) == WithoutOrigins(job)) << EffectiveJobText(job);
}

TEST(EffectiveJob, NamesTheOriginOfEverySetting) {
  const std::string text = EffectiveJobText(ReadJob("users = 3\n"));
  EXPECT_THAT(text, HasSubstr("\nusers = 3  # job.toml:1\n"));
  EXPECT_THAT(text, HasSubstr("\ntables = 4  # default\n"));
}

TEST(EffectiveJob, LeavesOutWhatIsUnset) {
  EXPECT_THAT(EffectiveJobText(Job()), Not(HasSubstr("password")));
  EXPECT_THAT(EffectiveJobText(Job()), Not(HasSubstr("run_seed")));
}

TEST(EffectiveJob, HoldsNoFileThatDependsOnTheFolder) {
  const std::string here = std::filesystem::current_path();
  const std::string text = EffectiveJobText(
      ReadJob("target = \"local:db\"\npassword = \"file:pw\"\nresults = \"r\"\njson = \"a.json\"\nplugin = "
              "\"p.so\"\noci = \"./o.so\""));
  for (const char* line : {"target = \"local:%/db\"", "password = \"file:%/pw\"", "results = \"%/r\"",
                           "json = \"%/a.json\"", "plugin = \"%/p.so\"", "oci = \"%/o.so\""}) {
    std::string wanted = line;
    wanted.replace(wanted.find('%'), 1, here);
    EXPECT_THAT(text, HasSubstr('\n' + wanted + "  # "));
  }
}

TEST(EffectiveJob, NamesTheDefaultTarget) {
  EXPECT_THAT(EffectiveJobText(Job()), HasSubstr("/lkbench/db\"  # default\n"));
}

}  // namespace
}  // namespace lkbench

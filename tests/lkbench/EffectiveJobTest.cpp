// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/EffectiveJob.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "Told.h"
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

// A job in which every key has a value that is not its default.
Job Unusual() {
  return ReadJob(R"toml(
target = "local:/a b/\"c\"\\d"
durability = "relaxed"
buffer_pool = "64MiB"
log_size = "1.5GiB"
password = "env:PW"
users = 8
duration = "1500ms"
scale = 2.25
tables = 7
first_table = 3
min_columns = 1
max_columns = 4
column_types = [ { type = "NUMBER(5)", weight = 2, nullable = true }, "DATE:3" ]
distribution = "poisson"
use_backup = true
rows_per_commit = 100
mix = { insert = 1, delete = 2 }
schema_seed = 9
run_seed = 11
limits = { "insert.p99" = "<20ms", errors = "<1%" }
results = "/tmp/a"
count = 5000
warm_up = "1200ms"
ramp = 2
think = "10ms:50ms"
rate = 0.5
arrival = "poisson"
commit_every = 20
phase = [{ name = "base" }, { name = "burst", users = 64, duration = "1m" }]
on_disconnect = "stop"
reconnect_pause = "200ms"
reconnect_limit = "2s"
call_timeout = "30s"
break_after = "1s"
give_up_after = "3s"
log_level = "debug"
format = "json"
metrics = 9180
json = "/tmp/a.json"
plugin = "/lib/p.so"
oci = "/lib/o.so"
)toml");
}

TEST(EffectiveJob, EveryKeyReadsBackAsItWas) {
  const Job job = Unusual();
  for (const JobKey& key : JobKeys())
    EXPECT_NE(key.type.toml(job), key.type.toml(Job())) << key.name << " is missing in this test's job";
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

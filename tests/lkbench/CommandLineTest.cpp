// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CommandLine.h"

#include <gmock/gmock.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "lkbench/Failure.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

Invocation Read(const std::vector<std::string>& words) {
  std::vector<const char*> arguments = {"lkbench"};
  for (const std::string& word : words) arguments.push_back(word.c_str());
  return ReadCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

std::string Refusal(const std::vector<std::string>& words) {
  try {
    Read(words);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "not refused";
}

TEST(CommandLine, AVerbAloneHasTheDefaults) {
  const Invocation invocation = Read({"run"});
  EXPECT_EQ(invocation.verb, "run");
  EXPECT_EQ(invocation.job.users, 2);
  EXPECT_TRUE(invocation.job.origins.empty());
}

TEST(CommandLine, FlagsStandBeforeOrBehindTheVerb) {
  EXPECT_EQ(Read({"load", "--users", "3"}).job.users, 3);
  EXPECT_EQ(Read({"--users=3", "load"}).job.users, 3);
}

TEST(CommandLine, FlagsWinOverTheFile) {
  const test_support::TemporaryFolder folder;
  const std::string file = folder.Path() / "job.toml";
  std::ofstream(file) << "users = 5\nscale = 3\nuse_backup = true\n";
  const Job job = Read({"run", "-c", file, "--users", "7", "--no-use-backup"}).job;
  EXPECT_EQ(job.users, 7);
  EXPECT_EQ(job.scale, 3);
  EXPECT_FALSE(job.use_backup);
}

TEST(CommandLine, MixesAndColumnTypesAreReadFromFlags) {
  const Job job = Read({"run", "--mix", "insert=1,delete=9", "--column-types", "NUMBER(10,2):3",
                        "--column-types", "VARCHAR2(20):2:null"})
                      .job;
  EXPECT_EQ(job.mix.insert, 1);
  EXPECT_EQ(job.mix.update, 0);
  EXPECT_EQ(job.mix.remove, 9);
  ASSERT_EQ(job.column_types.size(), 2u);
  EXPECT_EQ(job.column_types[0].type, "NUMBER(10,2)");
  EXPECT_EQ(job.column_types[1].weight, 2);
  EXPECT_TRUE(job.column_types[1].nullable);
}

TEST(CommandLine, DebugIsALogLevel) { EXPECT_EQ(Read({"run", "--debug"}).job.log_level, LogLevel::kDebug); }

TEST(CommandLine, AnUnknownFlagIsNamedWithTheNearest) {
  EXPECT_EQ(Refusal({"run", "--user", "3"}), "unknown flag --user: did you mean \"--users\"?");
  EXPECT_EQ(Refusal({"run", "--row-per-commit=3"}),
            "unknown flag --row-per-commit: did you mean \"--rows-per-commit\"?");
}

TEST(CommandLine, AnUnknownOrMissingVerbIsNamed) {
  EXPECT_EQ(Refusal({"lod"}), "unknown verb \"lod\": did you mean \"load\"?");
  EXPECT_THAT(Refusal({}), HasSubstr("a verb is needed: one of run, create"));
  EXPECT_THAT(Refusal({"run", "fast"}), HasSubstr("unexpected argument \"fast\""));
}

TEST(CommandLine, AWrongValueNamesTheFlag) {
  EXPECT_EQ(Refusal({"run", "--users", "0"}),
            "--users: cannot be \"0\": a whole number from 1 to 1000 is needed");
  EXPECT_THAT(Refusal({"run", "--scale", "nan"}), HasSubstr("--scale: cannot be \"nan\""));
  EXPECT_THAT(Refusal({"run", "--mix", "insert=0"}), HasSubstr("at least one weight above 0"));
  EXPECT_THAT(Refusal({"run", "--mix", "insert"}), HasSubstr("weights are needed"));
  EXPECT_THAT(Refusal({"run", "--column-types", "BLOB"}), HasSubstr("column type \"BLOB\" cannot be loaded"));
  EXPECT_THAT(Refusal({"run", "--users"}), HasSubstr("--users"));
}

TEST(CommandLine, HelpNamesEveryKey) {
  const Invocation help = Read({"--help"});
  EXPECT_EQ(help.verb, "");
  for (const JobKey& key : JobKeys()) EXPECT_THAT(help.answer, HasSubstr(key.Flag()));
  const Invocation verb_help = Read({"run", "--help"});
  EXPECT_EQ(verb_help.verb, "");
  EXPECT_THAT(verb_help.answer, HasSubstr("lkbench --help lists them"));
}

}  // namespace
}  // namespace lkbench

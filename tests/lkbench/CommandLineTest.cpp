// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CommandLine.h"

#include <gmock/gmock.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "Told.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

std::string Refusal(const std::vector<std::string>& words) {
  return RefusalOf([&] { ReadWords(words); });
}

TEST(CommandLine, AVerbAloneHasTheDefaults) {
  const Invocation invocation = ReadWords({"run"});
  EXPECT_EQ(invocation.verb, "run");
  EXPECT_EQ(invocation.job.users, 2);
  EXPECT_TRUE(invocation.job.origins.empty());
}

TEST(CommandLine, FlagsStandBeforeOrBehindTheVerb) {
  EXPECT_EQ(ReadWords({"load", "--users", "3"}).job.users, 3);
  EXPECT_EQ(ReadWords({"--users=3", "load"}).job.users, 3);
}

TEST(CommandLine, FlagsWinOverTheFile) {
  const test_support::TemporaryFolder folder;
  const std::string file = folder.Path() / "job.toml";
  std::ofstream(file) << "users = 5\nscale = 3\nuse_backup = true\n";
  const Job job = ReadWords({"run", "-c", file, "--users", "7", "--no-use-backup"}).job;
  EXPECT_EQ(job.users, 7);
  EXPECT_EQ(job.scale, 3);
  EXPECT_FALSE(job.use_backup);
}

TEST(CommandLine, MixesAndColumnTypesAreReadFromFlags) {
  const Job job = ReadWords({"run", "--mix", "insert=1,delete=9", "--column-types", "NUMBER(10,2):3",
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

TEST(CommandLine, DebugIsALogLevel) {
  EXPECT_EQ(ReadWords({"run", "--debug"}).job.log_level, LogLevel::kDebug);
}

TEST(CommandLine, AnUnknownFlagIsNamedWithTheNearest) {
  EXPECT_EQ(Refusal({"run", "--user", "3"}), "unknown flag --user: did you mean \"--users\"?");
  EXPECT_EQ(Refusal({"run", "--row-per-commit=3"}),
            "unknown flag --row-per-commit: did you mean \"--rows-per-commit\"?");
}

TEST(CommandLine, AnUnknownOrMissingVerbIsNamed) {
  EXPECT_EQ(Refusal({"lod"}), "unknown verb \"lod\": did you mean \"load\"?");
  EXPECT_THAT(Refusal({}), HasSubstr("a verb is needed: one of init, run, create"));
}

TEST(CommandLine, AWrongValueNamesTheFlag) {
  EXPECT_EQ(Refusal({"run", "--users", "0"}),
            "--users: cannot be \"0\": a whole number from 1 to 1000 is needed");
  EXPECT_THAT(Refusal({"run", "--scale", "nan"}), HasSubstr("--scale: cannot be \"nan\""));
  EXPECT_THAT(Refusal({"run", "--mix", "insert=0"}), HasSubstr("at least one weight above 0"));
  EXPECT_THAT(Refusal({"run", "--mix", "insert"}), HasSubstr("weights are needed"));
  EXPECT_THAT(Refusal({"run", "--column-types", "BLOB"}), HasSubstr("column type \"BLOB\" cannot be loaded"));
}

TEST(CommandLine, TheVerbsArgumentsAreCounted) {
  EXPECT_EQ(Refusal({"run", "fast"}), "unexpected argument \"fast\": the form is lkbench run [FLAGS]");
  EXPECT_EQ(Refusal({"help", "run", "load"}),
            "unexpected argument \"load\": the form is lkbench help [VERB] [FLAGS]");
}

TEST(CommandLine, AFlagThatTheVerbDoesNotUseIsRefused) {
  EXPECT_EQ(Refusal({"list", "--users", "3"}),
            "--users: list does not use it: `lkbench help list` shows what it uses");
  EXPECT_EQ(Refusal({"-d", "5s", "load"}),
            "--duration: load does not use it: `lkbench help load` shows what it uses");
}

TEST(CommandLine, AFlagWithoutItsValueIsNamedWithIt) {
  EXPECT_EQ(Refusal({"run", "--users"}), "--users: its value is missing: --users N");
  EXPECT_EQ(Refusal({"run", "-c"}), "--config: its value is missing: --config FILE");
}

TEST(CommandLine, AFormerNameLeadsToBothThatTookItsPlace) {
  EXPECT_EQ(Refusal({"run", "--seed", "4"}),
            "unknown flag --seed: did you mean \"--schema-seed\" or \"--run-seed\"?");
}

TEST(CommandLine, DebugAgainstALogLevelFlagIsRefused) {
  EXPECT_THAT(Refusal({"run", "--debug", "--log-level", "warning"}), HasSubstr("--log-level says otherwise"));
  EXPECT_EQ(ReadWords({"run", "--debug", "--log-level", "debug"}).job.log_level, LogLevel::kDebug);
}

TEST(CommandLine, EveryVerbHasAShortFlagForHelp) {
  for (const VerbInfo& verb : AllVerbs()) {
    const Invocation help = ReadWords({verb.name, "-h"});
    EXPECT_EQ(help.verb, "");
    EXPECT_EQ(help.answer, ReadWords({"help", verb.name}).answer);
  }
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Environment.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "Told.h"

namespace lkbench {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Sets a variable for the time of a test.
class SetVariable {
 public:
  SetVariable(const char* name, const std::string& value) : m_name(name) { setenv(name, value.c_str(), 1); }
  ~SetVariable() { unsetenv(m_name); }
  SetVariable(const SetVariable&) = delete;
  SetVariable& operator=(const SetVariable&) = delete;

 private:
  const char* m_name;
};

std::string Refusal(const std::vector<std::string>& words) {
  return RefusalOf([&] { ReadWords(words); });
}

TEST(Environment, WinsOverTheFileAndYieldsToFlags) {
  const test_support::TemporaryFolder folder;
  const std::string file = folder.Path() / "job.toml";
  std::ofstream(file) << "users = 5\nscale = 3\ntables = 9\n";
  const SetVariable users("LKBENCH_USERS", "6"), scale("LKBENCH_SCALE", "4");
  const Job job = ReadWords({"run", "-c", file, "--users", "7"}).job;
  EXPECT_EQ(job.users, 7);
  EXPECT_EQ(job.scale, 4);
  EXPECT_EQ(job.tables, 9);
  EXPECT_EQ(OriginOf(job, "users"), "--users");
  EXPECT_EQ(OriginOf(job, "scale"), "LKBENCH_SCALE");
  EXPECT_EQ(OriginOf(job, "tables"), file + ":3");
  EXPECT_EQ(OriginOf(job, "duration"), "default");
}

TEST(Environment, NamesTheJobFile) {
  const test_support::TemporaryFolder folder;
  const std::string file = folder.Path() / "job.toml";
  std::ofstream(file) << "users = 5\n";
  const SetVariable config("LKBENCH_CONFIG", file);
  EXPECT_EQ(ReadWords({"run"}).job.users, 5);
}

TEST(Environment, GivesEveryShapeOfValue) {
  const SetVariable mix("LKBENCH_MIX", "insert=1,delete=2"), backup("LKBENCH_USE_BACKUP", "true"),
      types("LKBENCH_COLUMN_TYPES", "NUMBER(10,2):3;VARCHAR2(20):1:null"), time("LKBENCH_DURATION", "5m");
  const Job job = ReadWords({"run"}).job;
  EXPECT_EQ(job.mix, (Mix{1, 0, 2}));
  EXPECT_TRUE(job.use_backup);
  EXPECT_EQ(job.column_types,
            (std::vector<ColumnType>{{"NUMBER(10,2)", 3, false}, {"VARCHAR2(20)", 1, true}}));
  EXPECT_EQ(job.duration, std::chrono::minutes(5));
}

TEST(Environment, AWrongValueNamesTheVariable) {
  const SetVariable users("LKBENCH_USERS", "many");
  EXPECT_EQ(Refusal({"run"}), "LKBENCH_USERS: cannot be \"many\": a whole number from 1 to 1000 is needed");
}

TEST(Environment, ASwitchIsTrueOrFalse) {
  const SetVariable backup("LKBENCH_USE_BACKUP", "0");
  EXPECT_FALSE(ReadWords({"run"}).job.use_backup);
  const SetVariable wrong("LKBENCH_USE_BACKUP", "maybe");
  EXPECT_EQ(Refusal({"run"}), "LKBENCH_USE_BACKUP: cannot be \"maybe\": true or false is needed");
}

TEST(Environment, AVariableSetToNothingIsNotSet) {
  const SetVariable users("LKBENCH_USERS", ""), unknown("LKBENCH_USRS", "");
  EXPECT_EQ(ReadWords({"run"}).job.users, 2);
}

TEST(Environment, AnUnknownVariableIsRefusedWithTheNearest) {
  const SetVariable users("LKBENCH_USER", "3");
  EXPECT_THAT(Refusal({"run"}),
              StartsWith("environment: unknown variable LKBENCH_USER: did you mean \"LKBENCH_USERS\"?"));
}

TEST(Environment, AVariableNamedAsElsewhereLeadsToOurs) {
  const SetVariable threads("LKBENCH_THREADS", "3");
  EXPECT_THAT(Refusal({"run"}),
              StartsWith("environment: unknown variable LKBENCH_THREADS: did you mean \"LKBENCH_USERS\"?"));
}

TEST(Environment, TheTableOfLkbenchsOwnIsNoVariable) {
  const SetVariable state("LKBENCH_STATE", "x");
  EXPECT_THAT(Refusal({"run"}), HasSubstr("unknown variable LKBENCH_STATE"));
}

TEST(Environment, ThePasswordMayComeFromAVariableOfAnyName) {
  const SetVariable password("LKBENCH_MY_PASSWORD", "secret");
  EXPECT_THAT(Refusal({"run"}), HasSubstr("unknown variable LKBENCH_MY_PASSWORD"));
  EXPECT_EQ(ReadWords({"run", "--password", "env:LKBENCH_MY_PASSWORD"}).job.password,
            "env:LKBENCH_MY_PASSWORD");
}

TEST(Environment, HelpAndVersionAskNothingOfIt) {
  const SetVariable users("LKBENCH_USRS", "3");
  EXPECT_THAT(ReadWords({"help"}).answer, HasSubstr("Verbs:"));
  EXPECT_THAT(ReadWords({"--version"}).answer, StartsWith("lkbench "));
}

}  // namespace
}  // namespace lkbench

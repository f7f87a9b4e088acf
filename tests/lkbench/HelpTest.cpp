// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <set>
#include <sstream>

#include "lkbench/JobKeys.h"
#include "lkbench/options/Flags.h"
#include "lkbench/options/HelpText.h"

namespace lkbench {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Keys, HaveNamesAndLettersOfTheirOwn) {
  std::set<std::string> names;
  std::set<char> letters;
  for (const KeyText& key : AllFlags()) {
    EXPECT_TRUE(names.insert(key.Flag()).second) << key.name;
    const bool is_new = key.letter == 0 || letters.insert(key.letter).second;
    EXPECT_TRUE(is_new) << key.name;
  }
}

TEST(Keys, HaveHelpAndAVerbThatUsesThem) {
  for (const KeyText& key : AllFlags()) {
    EXPECT_NE(key.help, "") << key.name;
    EXPECT_NE(key.verbs, 0u) << key.name;
    EXPECT_EQ(key.value.empty(), key.form.shape == KeyShape::kSwitch) << key.name;
  }
}

TEST(Keys, AreSpelledForEachPlaceTheyStandIn) {
  const KeyText key = TextOf(*FindJobKey("first_table"));
  EXPECT_EQ(key.Flag(), "--first-table");
  EXPECT_EQ(key.Variable(), "LKBENCH_FIRST_TABLE");
}

TEST(Keys, ShowTheirDefaultAsAFlagGivesIt) {
  EXPECT_EQ(TextOf(*FindJobKey("users")).standard, "2");
  EXPECT_EQ(TextOf(*FindJobKey("duration")).standard, "10s");
  EXPECT_EQ(TextOf(*FindJobKey("mix")).standard, "insert=40,update=40,delete=20");
  EXPECT_EQ(TextOf(*FindJobKey("distribution")).standard, "uniform");
  EXPECT_EQ(TextOf(*FindJobKey("use_backup")).standard, "");
}

TEST(Help, NamesEveryVerb) {
  for (const VerbInfo& verb : AllVerbs()) EXPECT_THAT(GeneralHelp(), HasSubstr("\n  " + verb.name + ' '));
}

TEST(Help, OfAVerbHasThoseFlagsThatItUses) {
  for (const VerbInfo& verb : AllVerbs())
    for (const KeyText& key : AllFlags()) {
      const std::string flag = ' ' + key.Flag() + (key.value.empty() ? " " : ' ' + key.value);
      if ((key.verbs & verb.bit) != 0)
        EXPECT_THAT(VerbHelp(verb), HasSubstr(flag)) << verb.name;
      else
        EXPECT_THAT(VerbHelp(verb), Not(HasSubstr("  " + key.Flag()))) << verb.name << ' ' << key.name;
    }
}

TEST(Help, OfAVerbHasItsExamples) {
  for (const VerbInfo& verb : AllVerbs()) {
    EXPECT_FALSE(verb.examples.empty()) << verb.name;
    for (const Example& example : verb.examples) EXPECT_THAT(VerbHelp(verb), HasSubstr(example.command));
  }
}

TEST(Help, FitsAHundredColumns) {
  std::string all = GeneralHelp();
  for (const VerbInfo& verb : AllVerbs()) all += VerbHelp(verb);
  std::istringstream lines(all);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100u) << line;
}

}  // namespace
}  // namespace lkbench

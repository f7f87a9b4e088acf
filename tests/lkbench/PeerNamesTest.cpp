// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/PeerNames.h"

#include <gmock/gmock.h>

#include "Told.h"

namespace lkbench {
namespace {

using testing::Contains;
using testing::Not;

std::vector<std::string> Keys() {
  std::vector<std::string> keys = {"version"};
  for (const KeyText& key : AllFlags()) {
    keys.push_back(key.name);
    if (key.letter != 0) keys.emplace_back(1, key.letter);
  }
  return keys;
}

TEST(PeerNames, LeadToKeysThatExist) {
  for (const PeerName& each : PeerKeys())
    for (const std::string& key : each.ours) EXPECT_THAT(Keys(), Contains(key));
}

TEST(PeerNames, LeadToVerbsThatExist) {
  for (const PeerName& each : PeerVerbs())
    for (const std::string& verb : each.ours) EXPECT_TRUE(FindVerb(verb) || verb == "--version") << verb;
}

TEST(PeerNames, AreNotOurs) {
  for (const PeerName& each : PeerKeys())
    for (const std::string& name : each.theirs) EXPECT_THAT(Keys(), Not(Contains(name)));
  for (const PeerName& each : PeerVerbs())
    for (const std::string& name : each.theirs) EXPECT_THAT(VerbNames(), Not(Contains(name)));
}

TEST(PeerNames, AreReadInAnySpelling) {
  for (const char* flag : {"--table-size=7", "--table_size=7", "--Table-Size"})
    EXPECT_THAT(RefusalOf([&] {
                  ReadWords({"run", flag});
                }),
                testing::EndsWith(": did you mean \"--scale\"?"));
}

TEST(PeerNames, OfASingleLetterMindTheCase) {
  EXPECT_EQ(RefusalOf([] {
              ReadWords({"run", "-T", "60"});
            }),
            "unknown flag -T: did you mean \"--duration\"?");
  EXPECT_EQ(RefusalOf([] { ReadWords({"run", "-R100"}); }), "unknown flag -R: did you mean \"--rate\"?");
  EXPECT_EQ(RefusalOf([] { ReadWords({"run", "-V"}); }), "unknown flag -V: did you mean \"--version\"?");
}

TEST(PeerNames, OfOneDatabaseLeadToTheTarget) {
  EXPECT_EQ(RefusalOf([] {
              ReadWords({"run", "--mysql-host=db1"});
            }),
            "unknown flag --mysql-host: did you mean \"--target\"?");
  EXPECT_EQ(RefusalOf([] {
              ReadWords({"run", "--pgsql-password=x"});
            }),
            "unknown flag --pgsql-password: did you mean \"--password\"?");
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// What the built library shows to the dynamic linker, as nm lists it.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>
#include <vector>

namespace {

// The demangled names of one kind of dynamic symbols, without their addresses and kinds.
std::vector<std::string> DynamicSymbols(const std::string& kind) {
  const std::string command = std::string(NM_PROGRAM) + " -D -C " + kind + " '" + PLUGIN_FILE + "'";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::vector<std::string> names;
  char line[8192];
  while (fgets(line, sizeof line, pipe) != nullptr) {
    std::string text(line);
    text.erase(text.find_last_not_of('\n') + 1);
    static const std::regex kPrefix("^[0-9a-f ]* [A-Za-z] ");
    names.push_back(std::regex_replace(text, kPrefix, ""));
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return names;
}

bool IsOfAPluginClass(const std::string& name) {
  static const std::regex kClass(
      "((vtable|VTT|typeinfo|typeinfo name) for |(non-virtual|virtual) thunk to )?"
      "(CREP_\\w+|CXact_\\w+|CColumns?|CRepTable|CTableLoader|IBind|C(Str)?Bind<.*>|IDataGenerator|C\\w+"
      "Generator)"
      "(::.*)?");
  return std::regex_match(name, kClass);
}

TEST(Exports, AreTheEntryFunctionAndTheClassesAndNothingElse) {
  std::vector<std::string> names = DynamicSymbols("--defined-only");
  EXPECT_EQ(std::ranges::count(names, "GetBenchmarkClassInfo"), 1);
  std::erase(names, "GetBenchmarkClassInfo");
  for (const std::string& name : names) EXPECT_TRUE(IsOfAPluginClass(name)) << name;
}

TEST(Exports, HoldTheMembersTablesAndTypeInformationOfAClass) {
  EXPECT_THAT(
      DynamicSymbols("--defined-only"),
      testing::IsSupersetOf({"CREP_ORA8::CREP_ORA8()", "CREP_ORA8::ms_classInfo",
                             "CREP_ORA8::RegisterTransactions(int)", "vtable for CREP_ORA8",
                             "typeinfo for CREP_ORA8", "CXact_Insert::Execute()", "vtable for CXact_Insert",
                             "CTableLoader::~CTableLoader()", "vtable for CStrBind<char>"}));
}

TEST(Exports, LeaveTheOciCallsToWhoeverLoadsTheLibrary) {
  std::vector<std::string> names = DynamicSymbols("--undefined-only");
  for (std::string& name : names) name.erase(0, name.find_first_not_of(" U"));
  EXPECT_THAT(names, testing::IsSupersetOf({"OCIHandleAlloc", "OCIHandleFree", "OCIStmtPrepare",
                                            "OCIStmtExecute", "OCIAttrGet", "OCIErrorGet"}));
}

}  // namespace

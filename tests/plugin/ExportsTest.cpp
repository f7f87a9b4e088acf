// SPDX-License-Identifier: Apache-2.0
// What the built library holds and shows to the dynamic linker, as nm lists it.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::Each;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;

constexpr size_t kNameColumn = 19;  // behind the address and the kind

// The demangled names that nm lists with these options.
std::vector<std::string> Symbols(const std::string& options) {
  const std::string command = std::string(NM_PROGRAM) + " -C " + options + " '" + PLUGIN_FILE + "'";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::vector<std::string> names;
  char line[8192];
  while (fgets(line, sizeof line, pipe) != nullptr) {
    std::string text(line);
    text.erase(text.find_last_not_of('\n') + 1);
    if (text.size() > kNameColumn) names.push_back(text.substr(kNameColumn));
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return names;
}

constexpr char kOfAPluginClass[] =
    "((vtable|typeinfo|typeinfo name) for |non-virtual thunk to )?"
    "(CREP_\\w+|CXact_\\w+|CColumns?|CRepTable|CTableLoader|IBind|C(Str)?Bind<.*>|IDataGenerator|C\\w+"
    "Generator)"
    "(::.*)?";

TEST(Exports, AreTheEntryFunctionAndTheClassesAndNothingElse) {
  std::vector<std::string> names = Symbols("-D --defined-only");
  EXPECT_EQ(std::erase(names, "GetBenchmarkClassInfo"), 1u);
  EXPECT_THAT(names, Each(MatchesRegex(kOfAPluginClass)));
}

TEST(Exports, HoldTheMembersTablesAndTypeInformationOfAClass) {
  EXPECT_THAT(Symbols("-D --defined-only"),
              IsSupersetOf({"CREP_ORA8::CREP_ORA8()", "CREP_ORA8::ms_classInfo",
                            "CREP_ORA8::RegisterTransactions(int)", "vtable for CREP_ORA8",
                            "typeinfo for CREP_ORA8", "CXact_Insert::Execute()", "vtable for CXact_Insert",
                            "CTableLoader::~CTableLoader()", "vtable for CStrBind<char>"}));
}

TEST(Exports, LeaveTheOciCallsToWhoeverLoadsTheLibrary) {
  EXPECT_THAT(
      Symbols("-D --undefined-only"),
      IsSupersetOf({"OCIHandleAlloc", "OCIHandleFree", "OCIStmtPrepare", "OCIStmtExecute", "OCIBindByPos",
                    "OCIBindArrayOfStruct", "OCIDefineByPos", "OCIAttrGet", "OCIParamGet", "OCIErrorGet"}));
}

TEST(Exports, BuildTheMessagesOfAnErrorHandlerIntoTheLibrary) {
  EXPECT_THAT(Symbols("-D --undefined-only"), Not(Contains(testing::StartsWith("CErrorHandler::Handle"))));
}

TEST(SourceFiles, HaveAnIdentifierAndAMapOfGlobalsEach) {
  const std::vector<std::string> names = Symbols("--defined-only");
  EXPECT_EQ(std::ranges::count(names, "BLANK_TRKGUID"), PLUGIN_SOURCES);
  EXPECT_EQ(std::ranges::count(names, "m_GlobalVars"), PLUGIN_SOURCES);
}

}  // namespace

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
using testing::UnorderedElementsAre;

constexpr size_t kKindColumn = 17;  // behind the address
constexpr size_t kNameColumn = 19;  // behind the kind

// The demangled names that nm lists with these options, behind their kind where that is asked for.
std::vector<std::string> Symbols(const std::string& options, size_t column = kNameColumn) {
  const std::string command = std::string(NM_PROGRAM) + " -C " + options + " '" + PLUGIN_FILE + "'";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::vector<std::string> names;
  char line[8192];
  while (fgets(line, sizeof line, pipe) != nullptr) {
    std::string text(line);
    text.erase(text.find_last_not_of('\n') + 1);
    if (text.size() > kNameColumn) names.push_back(text.substr(column));
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

// Of every class of the benchmark's: what objects of it are made of and told apart by.
constexpr const char* kClasses[] = {"CREP_ORA8",
                                    "CXact_Create_RepTables",
                                    "CXact_Create_Sequence",
                                    "CXact_Create_Replication_Properties_Table",
                                    "CXact_Drop_RepTables",
                                    "CXact_Drop_Sequence",
                                    "CXact_Drop_Replication_Properties_Table",
                                    "CXact_LoadTable_ORA8",
                                    "CREP_Refresh_Base",
                                    "CREP_RefreshTable_ORA8",
                                    "CREP_Refresh_Properties_Table",
                                    "CREP_Refresh_Sequence",
                                    "CXact_Insert",
                                    "CXact_Update",
                                    "CXact_Delete"};

TEST(Exports, HoldTablesTypeAndClassInformationOfEveryTransactionAndTheBenchmark) {
  const std::vector<std::string> symbols = Symbols("-D --defined-only");
  for (const std::string name : kClasses)
    EXPECT_THAT(symbols,
                IsSupersetOf({"vtable for " + name, "typeinfo for " + name, "typeinfo name for " + name,
                              name + "::ms_classInfo", name + "::wxCreateObject()",
                              name + "::GetClassInfo() const", name + "::~" + name + "()"}));
}

TEST(Exports, HoldTablesAndTypeInformationOfTheClassesWithoutClassInformation) {
  const std::vector<std::string> symbols = Symbols("-D --defined-only");
  EXPECT_THAT(symbols, IsSupersetOf({"typeinfo for IBind", "typeinfo for IDataGenerator"}));
  for (const std::string name :
       {"CXact_LoadTableBase_ORA8", "CBind<double, 4>", "CBind<char, 5>", "CStrBind<char>",
        "CSequenceGenerator", "CNumberGenerator", "CStrGenerator", "CDateGenerator"})
    EXPECT_THAT(symbols, IsSupersetOf({"vtable for " + name, "typeinfo for " + name}));
}

TEST(Exports, HoldTheMembersOfClassesWithoutATable) {
  EXPECT_THAT(Symbols("-D --defined-only"),
              IsSupersetOf({"CREP_ORA8::CREP_ORA8()", "CREP_ORA8::RegisterTransactions(int)",
                            "CXact_Insert::Execute()", "CColumn::Initialize()", "CColumns::~CColumns()",
                            "CRepTable::Initialize()", "CTableLoader::~CTableLoader()"}));
}

// A symbol that is unique in the process would keep the library loaded for good.
TEST(Exports, HoldNothingThatIsUniqueInTheProcess) {
  EXPECT_THAT(Symbols("-D --defined-only", kKindColumn), Each(MatchesRegex("[BDRTVW] .*")));
}

TEST(Exports, LeaveTheOciCallsToWhoeverLoadsTheLibrary) {
  std::vector<std::string> names = Symbols("-D --undefined-only");
  std::erase_if(names, [](const std::string& name) { return !name.starts_with("OCI"); });
  EXPECT_THAT(names,
              UnorderedElementsAre("OCIHandleAlloc", "OCIHandleFree", "OCIStmtPrepare", "OCIStmtExecute",
                                   "OCIBindByPos", "OCIBindArrayOfStruct", "OCIDefineByPos", "OCIAttrGet",
                                   "OCIParamGet", "OCIBreak", "OCIErrorGet"));
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

// SPDX-License-Identifier: Apache-2.0
// The virtual tables of the plug-in's classes: which operations of the host each transaction overrides, and
// the order of the operations that the plug-in itself introduces.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "Benchmarks/CREP_ORA8/Bind.h"
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "VtableSlot.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A pointer to a member is of the class that declares it.
template <class C, class R, class D, class... A>
constexpr bool IsDeclaredIn(R (D::*)(A...)) {
  return std::is_same_v<C, D>;
}
template <class C, class D>
constexpr bool DeclaresExecute(int (D::*)()) {  // the refreshes have another one, which takes a text
  return std::is_same_v<C, D>;
}

// The virtual operations of the host that the class declares anew, GetClassInfo and the destructor left out.
template <class C>
std::vector<std::string> Overrides() {
  std::vector<std::string> names;
  if (DeclaresExecute<C>(&C::Execute)) names.push_back("Execute");
#define OVERRIDES(name) \
  if (IsDeclaredIn<C>(&C::name)) names.push_back(#name)
  OVERRIDES(Serialize);
  OVERRIDES(SetProperty);
  OVERRIDES(SetChildObject);
  OVERRIDES(GetDriverType);
  OVERRIDES(CalculateResults);
  OVERRIDES(CanSearchReplace);
  OVERRIDES(GlobalSearchReplace);
  OVERRIDES(ClearResults);
  OVERRIDES(ClearDistributions);
  OVERRIDES(GetXactResults);
  OVERRIDES(SetDriver);
  OVERRIDES(SetBenchmark);
  OVERRIDES(InitializeForTest);
  OVERRIDES(OpenResultsFile);
  OVERRIDES(CloseResultsFile);
  OVERRIDES(PreExecute);
  OVERRIDES(PostExecute);
  OVERRIDES(PreBenchmark);
  OVERRIDES(PostBenchmark);
  OVERRIDES(PreIteration);
  OVERRIDES(PostIteration);
  OVERRIDES(IsUserXact);
  OVERRIDES(IsInUserXact);
  OVERRIDES(GetNextXactToExecute);
  OVERRIDES(SetScriptEngine);
  OVERRIDES(GetScript);
  OVERRIDES(GetXactCount);
  OVERRIDES(GetXacts);
  OVERRIDES(GetFileName);
  OVERRIDES(ConvertToSQLStatement);
  OVERRIDES(GetPreparedSQLName);
  OVERRIDES(SetFreeAfterExecute);
  OVERRIDES(IsFreeAfterExecute);
  OVERRIDES(GetDetailInformation);
  OVERRIDES(GetExecuteSQL);
  OVERRIDES(GetNextObject);
  OVERRIDES(CopyObject);
  OVERRIDES(DoGet);
  OVERRIDES(DoPut);
  OVERRIDES(DoPost);
  OVERRIDES(DoDelete);
  OVERRIDES(IsValid);
  OVERRIDES(Apply);
  OVERRIDES(ProcessRequest);
  OVERRIDES(GetPropertyTable);
#undef OVERRIDES
  return names;
}

TEST(Overrides, OfTheCreatesAndDrops) {
  EXPECT_THAT(Overrides<CXact_Create_RepTables>(), ElementsAre("Execute", "GetExecuteSQL"));
  EXPECT_THAT(Overrides<CXact_Create_Sequence>(), ElementsAre("Execute"));
  EXPECT_THAT(Overrides<CXact_Create_Replication_Properties_Table>(), ElementsAre("Execute"));
  EXPECT_THAT(Overrides<CXact_Drop_RepTables>(), ElementsAre("Execute"));
  EXPECT_THAT(Overrides<CXact_Drop_Sequence>(), ElementsAre("Execute"));
  EXPECT_THAT(Overrides<CXact_Drop_Replication_Properties_Table>(), ElementsAre("Execute"));
}

TEST(Overrides, OfTheLoadAndTheWorkload) {
  const auto all_four = ElementsAre("Execute", "PreBenchmark", "PostBenchmark", "PreIteration");
  EXPECT_THAT(Overrides<CXact_LoadTableBase_ORA8>(), all_four);
  EXPECT_THAT(Overrides<CXact_LoadTable_ORA8>(), all_four);
  EXPECT_THAT(Overrides<CXact_Insert>(), all_four);
  EXPECT_THAT(Overrides<CXact_Update>(), all_four);
  EXPECT_THAT(Overrides<CXact_Delete>(), all_four);
}

TEST(Overrides, OfTheRefreshes) {
  EXPECT_THAT(Overrides<CREP_Refresh_Base>(), ElementsAre("Execute", "PostBenchmark"));
  EXPECT_THAT(Overrides<CREP_RefreshTable_ORA8>(), ElementsAre("Execute", "PreBenchmark"));
  EXPECT_THAT(Overrides<CREP_Refresh_Properties_Table>(), ElementsAre("Execute"));
  EXPECT_THAT(Overrides<CREP_Refresh_Sequence>(), ElementsAre("Execute"));
  EXPECT_TRUE(IsDeclaredIn<CREP_RefreshTable_ORA8>(&CREP_RefreshTable_ORA8::GetRowInfo));
}

TEST(Overrides, AreSeenByThisTestAtAll) { EXPECT_THAT(Overrides<CXact>(), testing::SizeIs(40)); }

TEST(Overrides, OfTheBenchmarkIsTheRegistration) {
  EXPECT_TRUE(IsDeclaredIn<CREP_ORA8>(&CREP_ORA8::RegisterTransactions));
  EXPECT_FALSE(IsDeclaredIn<CREP_ORA8>(&CREP_ORA8::GetNewXactByID));
  EXPECT_FALSE(IsDeclaredIn<CREP_ORA8>(&CREP_ORA8::GetPropertyPages));
}

TEST(PluginSlotOrder, OfTheRefreshesAddsOneSlotBehindThoseOfTheHost) {
  EXPECT_EQ(VtableSlot(&CREP_Refresh_Base::GetRowInfo), 46);
  EXPECT_EQ(VtableSlot(&CREP_RefreshTable_ORA8::GetRowInfo), 46);
  EXPECT_EQ(VtableSlot(static_cast<int (CREP_Refresh_Base::*)(const char*)>(&CREP_Refresh_Base::Execute)),
            -1);
}

TEST(PluginSlotOrder, KeepsTheHelpersOfTransactionsOutOfTheTable) {
  EXPECT_EQ(VtableSlot(&CXact_Create_RepTables::BuildCreationSQL), -1);
  EXPECT_EQ(VtableSlot(&CXact_LoadTableBase_ORA8::GetRowsPerCommit), -1);
  EXPECT_EQ(VtableSlot(&CXact_LoadTableBase_ORA8::ReloadFromBackup), -1);
  EXPECT_EQ(VtableSlot(&CXact_LoadTable_ORA8::InitializeTables), -1);
  EXPECT_EQ(VtableSlot(&CXact_LoadTable_ORA8::DropAllBackupTables), -1);
  EXPECT_EQ(VtableSlot(&CXact_Insert::GenerateNextID), -1);
  EXPECT_EQ(VtableSlot(&CXact_Insert::Cleanup), -1);
  EXPECT_EQ(VtableSlot(&CXact_Update::BuildSQL), -1);
  EXPECT_EQ(VtableSlot(&CXact_Delete::BuildSQL), -1);
}

// The destructor has the slots 0 and 1.
TEST(PluginSlotOrder, OfABind) {
  EXPECT_EQ(VtableSlot(&IBind::Initialize), 2);
  EXPECT_EQ(VtableSlot(&IBind::BindColumn), 3);
  EXPECT_EQ(VtableSlot(&IBind::SetData), 4);
  EXPECT_EQ(VtableSlot(&IBind::GetDataGenerator), 5);
  EXPECT_EQ(VtableSlot(&IBind::GetColumn), -1);
  EXPECT_EQ((VtableSlot(&CBind<double, SQLT_FLT>::Cleanup)), -1);
}

TEST(PluginSlotOrder, OfADataGenerator) {
  EXPECT_EQ(VtableSlot(&IDataGenerator::GenerateData), 2);
  EXPECT_EQ(VtableSlot(&IDataGenerator::SetStartingRow), 3);
  EXPECT_EQ(VtableSlot(&IDataGenerator::GetValue), 4);
  EXPECT_EQ(VtableSlot(&IDataGenerator::NeedNull), -1);
  EXPECT_EQ(VtableSlot(&IDataGenerator::SetAllowNull), -1);
  EXPECT_EQ(VtableSlot(&IDataGenerator::SetRandGen), -1);
}

}  // namespace

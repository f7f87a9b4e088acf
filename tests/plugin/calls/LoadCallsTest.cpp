// SPDX-License-Identifier: Apache-2.0
// Everything a load does, in order: when all goes well, at each call that can fail, and when it is cancelled.
#include "ForeignDriver.h"
#include "LoadCalls.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const IdTable kTable1("LK_REP_TABLE1", 1);
const Events kTimerRead = {"Read()"};  // a table of which nothing is loaded
const Events kTwoRowsOfTheThirdSet = Loaded({kTable1.Started(" (set 3 of 3)"),
                                             kTable1.Describe(),
                                             kTable1.Bind(),
                                             {kTable1.Batch(2), "Read()"},
                                             kTable1.Free(),
                                             kTable1.Completed("(set 3 of 3)")});

TEST_F(LoadCalls, OfALifeWithoutBackupsAreTheInsertsOnly) {
  HaveIdTables(1);
  const auto pUser = User(1, 1);
  EXPECT_EQ(PreBenchmark(*pUser), Events({"returned 1"}));
  EXPECT_EQ(PreIteration(*pUser), Events({"returned 1"}));
  EXPECT_EQ(Execute(*pUser), Loaded({kTable1.Load(TwoBatches(kTable1))}));
  EXPECT_EQ(PostBenchmark(*pUser), Events({"returned 1"}));
  EXPECT_EQ(pUser->GetRowsProcessed(), 2);  // kept: without the partial batch
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 3));
}

TEST_F(LoadCalls, OfTwoTablesAreOneTableAfterTheOther) {
  HaveIdTables(2);
  const auto pUser = ReadyUser(1, 1);
  const IdTable second("LK_REP_TABLE2", 2);
  EXPECT_EQ(Execute(*pUser), Loaded({kTable1.Load(TwoBatches(kTable1)), second.Load(TwoBatches(second))}));
  EXPECT_EQ(pUser->GetRowsProcessed(), 4);
}

TEST_F(LoadCalls, OfASecondIterationCountOn) {
  HaveIdTables(1);
  const auto pUser = ReadyUser(1, 1);
  Execute(*pUser);
  Execute(*pUser);
  EXPECT_EQ(pUser->GetRowsProcessed(), 4);
}

TEST_F(LoadCalls, OfASetNameItAndLoadItsRows) {
  HaveIdTables(1);
  m_properties.SetScale(0.008);
  const auto pUser = ReadyUser(1, 3);  // set 2 of 3: two rows
  EXPECT_EQ(Execute(*pUser), Loaded({kTable1.Started(" (set 2 of 3)"),
                                     kTable1.Describe(),
                                     kTable1.Bind(),
                                     {kTable1.Batch(2), "Read()"},
                                     kTable1.Free(),
                                     kTable1.Completed("(set 2 of 3)")}));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(3, 4));
  EXPECT_EQ(pUser->GetRowsProcessed(), 2);
}

TEST_F(LoadCalls, OfTheFirstOfTwoSetsNameItToo) {
  HaveIdTables(1);
  m_properties.SetScale(0.005);
  const auto pUser = ReadyUser(2, 2);
  EXPECT_EQ(Execute(*pUser), Loaded({kTable1.Started(" (set 1 of 2)"),
                                     kTable1.Describe(),
                                     kTable1.Bind(),
                                     {kTable1.Batch(2), "Read()"},
                                     kTable1.Free(),
                                     kTable1.Completed("(set 1 of 2)")}));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 2));
}

TEST_F(LoadCalls, OfATableThatIsLoadedReadTheTimerOnly) {
  HaveIdTables(2);
  m_properties.SetLoadedMaxScale(0.003);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(Execute(*pUser), Events({"SetStartTime()", "Read()", "Read()", "Reset()", "returned 1"}));
  EXPECT_EQ(pUser->GetRowsProcessed(), 6);
}

TEST_F(LoadCalls, OfATableThatIsLoadedHigherReadTheTimerOnlyInEverySet) {
  HaveIdTables(1);
  m_properties.SetScale(1.0);
  m_properties.SetLoadedMaxScale(1.5);
  for (const int nUserID : {1, 2}) {
    const auto pUser = ReadyUser(nUserID, 2);
    EXPECT_EQ(Execute(*pUser), Loaded({kTimerRead})) << pUser->Set();
    EXPECT_EQ(pUser->GetRowsProcessed(), 750) << pUser->Set();
  }
}

TEST_F(LoadCalls, OfFewerRowsThanSetsAreTheInsertsOfTheLastSet) {
  HaveIdTables(1);
  m_properties.SetScale(0.002);
  for (const int nUserID : {3, 1}) {
    const auto pUser = ReadyUser(nUserID, 3);
    EXPECT_EQ(Execute(*pUser), Loaded({kTimerRead})) << pUser->Set();
    EXPECT_EQ(pUser->GetRowsProcessed(), 0) << pUser->Set();
  }
  EXPECT_EQ(Execute(*ReadyUser(2, 3)), kTwoRowsOfTheThirdSet);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 2));
}

TEST_F(LoadCalls, OfFewerNewRowsThanSetsCountTheRowsThatAreThereInTheOtherSets) {
  HaveIdTables(1);
  m_properties.SetScale(0.011);
  m_properties.SetLoadedMaxScale(0.009);
  for (const int nUserID : {3, 1}) {
    const auto pUser = ReadyUser(nUserID, 3);
    EXPECT_EQ(Execute(*pUser), Loaded({kTimerRead})) << pUser->Set();
    EXPECT_EQ(pUser->GetRowsProcessed(), 3) << pUser->Set();
  }
  const auto pLast = ReadyUser(2, 3);
  EXPECT_EQ(Execute(*pLast), kTwoRowsOfTheThirdSet);
  EXPECT_EQ(pLast->GetRowsProcessed(), 2);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(10, 11));
}

TEST_F(LoadCalls, WithoutTablesAreTheTimersOnly) {
  const auto pUser = User(1, 1);
  EXPECT_EQ(Execute(*pUser), Events({"SetStartTime()", "Reset()", "returned 1"}));
}

TEST_F(LoadCalls, WithoutADriverAreNone) {
  HaveIdTables(1);
  const auto pUser = ReadyUser(1, 1);
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    pUser->SetDriver(pDriver);
    EXPECT_THAT(PreBenchmark(*pUser),
                ElementsAre(AssertIn("CREP_InitObjects_ORA8.cpp", "PreBenchmark", "pDriver != __null"),
                            "returned 0"));
    EXPECT_EQ(PreIteration(*pUser), Events({"returned 0"}));
    EXPECT_EQ(Execute(*pUser), Events({"returned 0"}));
    EXPECT_EQ(PostBenchmark(*pUser), Events({"returned 0"}));
    m_journal.Clear();
    pUser->DropAllBackupTables();
    EXPECT_THAT(m_journal.All(), IsEmpty());
  }
}

TEST_F(LoadCalls, WithNoTableToDealEndPreBenchmarkBeforeTheDriverIsLookedAt) {
  HaveIdTables(2);
  m_properties.SetIntAttribute3(2);
  const auto pUser = User(1, 1);
  pUser->SetDriver(nullptr);
  EXPECT_THAT(PreBenchmark(*pUser),
              ElementsAre(AssertIn("CREP_InitObjects_ORA8.cpp", "PreBenchmark", "nNumberOfTable >= 1"),
                          "returned 0"));
}

TEST_F(LoadCalls, WithACancelBeforeTheFirstRowEndAfterTheBinds) {
  HaveIdTables(2);
  const auto pUser = ReadyUser(1, 1);
  pUser->RequestCancel();
  EXPECT_EQ(Execute(*pUser), Together({{"SetStartTime()"},
                                       kTable1.Started(),
                                       kTable1.Describe(),
                                       kTable1.Bind(),
                                       {"Reset()", "OCIBreak(svc#1, err#1)"},
                                       kTable1.Free(),
                                       {"returned 0"}}));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadCalls, WithACancelButWithoutTheOptionDropNoBackup) {
  HaveIdTables(1);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  const auto pUser = ReadyUser(1, 1);
  pUser->RequestCancel();
  EXPECT_EQ(PostBenchmark(*pUser), Events({"returned 1"}));
}

TEST_F(LoadCalls, WithACancelInASecondTableKeepWhatWasSent) {
  HaveIdTables(2);
  const auto pUser = ReadyUser(1, 1);
  const IdTable second("LK_REP_TABLE2", 2);
  Oci().After("OCIStmtExecute", 5, [&] { pUser->RequestCancel(); });  // the second table's full batch
  Oci().FailCall("OCIBreak", 1, StatusFault(kHighStatus));            // not looked at
  EXPECT_EQ(Execute(*pUser), Together({{"SetStartTime()"},
                                       kTable1.Load(TwoBatches(kTable1)),
                                       second.Started(),
                                       second.Describe(),
                                       second.Bind(),
                                       {second.Batch(2), "Read()"},
                                       {"Reset()", "OCIBreak(svc#1, err#1)"},
                                       second.Free(),
                                       {"returned 0"}}));
  EXPECT_EQ(pUser->GetRowsProcessed(), 4);
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadCalls, WithACancelAtTheLastRowAreThoseOfASuccess) {
  HaveIdTables(1);
  const auto pUser = ReadyUser(1, 1);
  Oci().After("OCIStmtExecute", 3, [&] { pUser->RequestCancel(); });  // the partial batch
  EXPECT_EQ(Execute(*pUser), Loaded({kTable1.Load(TwoBatches(kTable1))}));
}

const Events kSuccess = Loaded({kTable1.Load(TwoBatches(kTable1))});

class LoadFailures : public LoadCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(LoadFailures, EndTheExecutionAsListed) {
  HaveIdTables(2);
  const auto pUser = ReadyUser(1, 1);
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  EXPECT_EQ(Execute(*pUser), Together({UpToCall(kSuccess, GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
  EXPECT_EQ(pUser->GetRowsProcessed(), GetParam().nCall == 17 ? 2 : 0);
}

// kept: the timer is reset after a failed batch only.
std::vector<FailingCalls> ExecuteFailures() {
  const Events freeTable = {kTable1.FreeTable()};
  const Events failed = {"returned 0"};
  return {
      {"DescribeHandle", 1, 1, Together({{"HandleErrorMsg(\"Unable allocate statement handle!\")"}, failed}),
       0},
      {"DescribePrepare", 2, 2,
       Together({Reported(kHighStatus, "Unable Prepare statement while Initialize."), freeTable, failed}), 0},
      {"Describe", 3, 3,
       Together({Reported(kHighStatus, "Unable Describe table while Initialize!"), freeTable, failed}), 0},
      {"Columns", 4, 11, Together({Reported(-1, "Unable to initialize columns"), freeTable, failed}), 0},
      {"LoaderHandle", 12, 12,
       Together(
           {Reported(kHighStatus, "Unable create statement handle for TableLoader!"), freeTable, failed}),
       0},
      {"Bind", 13, 15, Together({kTable1.Free(), failed}), 0},
      {"Batch", 16, 17, Together({Reported(kHighStatus), {"Reset()"}, kTable1.Free(), failed}), 0}};
}
INSTANTIATE_TEST_SUITE_P(Execute, LoadFailures, testing::ValuesIn(EachCall(ExecuteFailures())), NameOfPath);

TEST_F(LoadCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  HaveIdTables(1);
  ReturnHighBitsOnly();
  EXPECT_EQ(Execute(*ReadyUser(1, 1)), kSuccess);
}

TEST_F(LoadCalls, AreAllFollowedToTheirFailureButTheFrees) {
  EXPECT_EQ(CountOciCalls(kSuccess), 17 + 2);
  EXPECT_EQ(EachCall(ExecuteFailures()).size(), 17U);
}

TEST_F(LoadCalls, ThatFreeAreNotLookedAt) {
  HaveIdTables(1);
  for (const int nCall : {18, 19}) {
    Oci().FailAnyCall(nCall, StatusFault(kHighStatus));
    EXPECT_EQ(Execute(*ReadyUser(1, 1)).size(), kSuccess.size());
  }
}

}  // namespace
}  // namespace scripted

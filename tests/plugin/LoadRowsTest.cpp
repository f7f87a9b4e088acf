// SPDX-License-Identifier: Apache-2.0
// The load itself: which rows go where, in which batches, with which calls and messages.
#include "ForeignDriver.h"
#include "LoadFixture.h"

namespace {

using scripted::IdColumn;
using scripted::Ids;
using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::IsEmpty;

using LoadRows = scripted::LoadTest;

TEST_F(LoadRows, AnUnloadedTableIsFilledFromRowOne) {
  HaveTables(2);
  m_properties.SetScale(1.2);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 1200));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE2"), Ids(1, 1200));
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_THAT(Oci().Violations(), IsEmpty());
}

TEST_F(LoadRows, TwoSetsHalveAnEvenTable) {
  HaveTables(1);
  m_properties.SetScale(1.5);
  const auto pFirstSet = ReadyUser(2, 2);
  ASSERT_EQ(pFirstSet->Set(), "1 of 2");
  EXPECT_EQ(pFirstSet->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 750));
  const auto pSecondSet = ReadyUser(1, 2);
  EXPECT_EQ(pSecondSet->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(751, 1500));
}

TEST_F(LoadRows, TheLastSetTakesTheRemainder) {
  HaveTables(1);
  m_properties.SetScale(1.0);
  const std::vector<long> firsts = {334, 667, 1};  // of the users 1, 2 and 3
  const std::vector<long> lasts = {666, 1000, 333};
  for (int nUser = 1; nUser <= 3; ++nUser) {
    EXPECT_EQ(ReadyUser(nUser, 3)->Execute(), 1);
    EXPECT_EQ(InsertedIds("LK_REP_TABLE1"),
              Ids(firsts[static_cast<size_t>(nUser) - 1], lasts[static_cast<size_t>(nUser) - 1]));
  }
}

TEST_F(LoadRows, ARaisedScaleAddsTheRowsAboveTheLoadedOne) {
  HaveTables(1);
  m_properties.SetScale(2.0);
  m_properties.SetLoadedMaxScale(1.5);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1501, 2000));
}

TEST_F(LoadRows, AnyNumberOfUsersLoadsEveryRowOnce) {
  HaveTables(3);
  m_properties.SetScale(0.1);
  for (int nUsers = 1; nUsers <= 11; ++nUsers) {
    Oci().ClearCalls();
    for (int nUser = 1; nUser <= nUsers; ++nUser) {
      auto pUser = User(nUser, nUsers);
      ASSERT_EQ(pUser->PreBenchmark(), 1);
      ASSERT_EQ(pUser->Execute(), 1);
    }
    for (const char* szTable : {"LK_REP_TABLE1", "LK_REP_TABLE2", "LK_REP_TABLE3"}) {
      std::vector<long> ids = InsertedIds(szTable);
      std::ranges::sort(ids);
      ASSERT_EQ(ids, Ids(1, 100)) << szTable << " " << nUsers;
    }
  }
}

TEST_F(LoadRows, AFractionOfARowIsCutOff) {
  HaveTables(1);
  m_properties.SetScale(0.0129);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 12));
}

TEST_F(LoadRows, TheLastPartialBatchIsNotCountedAsProcessed) {
  HaveTables(1);
  m_properties.SetScale(1.0015);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 500, 1));
  EXPECT_EQ(pUser->GetRowsProcessed(), 1000);
}

TEST_F(LoadRows, AFullLastBatchIsCounted) {
  HaveTables(1);
  m_properties.SetScale(1.0);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 500));
  EXPECT_EQ(pUser->GetRowsProcessed(), 1000);
}

TEST_F(LoadRows, TheTimerIsReadAfterFullBatchesAndSkippedTablesOnly) {
  HaveTables(1);
  const int kNotRead = -1;
  const auto TimeReadAfter = [&](double fScale, double fLoadedScale) {
    m_properties.SetScale(fScale);
    m_properties.SetLoadedMaxScale(fLoadedScale);
    const auto pUser = ReadyUser(1, 1);
    pUser->m_nLastReadTime = kNotRead;
    EXPECT_EQ(pUser->Execute(), 1);
    return pUser->m_nLastReadTime;
  };
  EXPECT_NE(TimeReadAfter(0.5, 0.0), kNotRead);
  EXPECT_NE(TimeReadAfter(0.5, 0.5), kNotRead);
  EXPECT_EQ(TimeReadAfter(0.1, 0.0), kNotRead);
}

TEST_F(LoadRows, ASequenceBehindTheFirstColumnStartsAtTheFirstRowLoaded) {
  m_properties.GetRepBenchmarkProperties().SetTableNumber(1);
  scripted::DescribeTable("LK_REP_TABLE1", {scripted::NumberColumn("KEY", 9, 0), IdColumn()});
  m_properties.SetScale(0.02);
  m_properties.SetLoadedMaxScale(0.015);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  const auto& rows = Oci().Executions().back().rows;
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_THAT(rows.front(), ElementsAre("16", "16"));
  EXPECT_THAT(rows.back(), ElementsAre("20", "20"));
}

TEST_F(LoadRows, RowsPerCommitIsReadAgainForEveryTable) {
  HaveTables(2);
  m_properties.SetScale(0.3);
  SetRowsPerCommit(200);
  const auto pUser = ReadyUser(1, 1);
  Oci().After("OCIStmtExecute", 3, [] { SetRowsPerCommit(150); });  // the second batch of the first table
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(200, 100, 150, 150));
}

TEST_F(LoadRows, ALoadedScaleEqualToTheScaleLoadsNothingAndCountsTheRowsThatAreThere) {
  HaveTables(1);
  m_properties.SetScale(1.5);
  m_properties.SetLoadedMaxScale(1.5);
  const auto pUser = ReadyUser(2, 2);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_EQ(pUser->GetRowsProcessed(), 750);
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
}

TEST_F(LoadRows, AnEmptyTableListIsASuccessWithTheTimerReset) {
  const auto pUser = User(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(LoadRows, MessagesNameTheTable) {
  HaveTables(2);
  m_properties.SetScale(0.001);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Started loading table LK_REP_TABLE1.",
                                               "INFO 0: Completed loading table LK_REP_TABLE1.",
                                               "INFO 0: Started loading table LK_REP_TABLE2.",
                                               "INFO 0: Completed loading table LK_REP_TABLE2."));
  for (const CError& error : m_reports.Errors()) EXPECT_EQ(error.m_bAlwaysDisplay, 0);
}

// Notes at each report how many statement handles have been freed.
class FreeCounter final : public CErrorHandler {
 public:
  int HandleError(CError*) override {
    m_freed.push_back(Oci().CountCalls("OCIHandleFree"));
    return 1;
  }
  std::vector<int> m_freed;
};

TEST_F(LoadRows, ATableIsReportedAsCompletedOnceItsLoaderIsGone) {
  HaveTables(1);
  m_properties.SetScale(0.001);
  FreeCounter counter;
  m_driver.AddHandler(&counter);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  ASSERT_EQ(counter.m_freed.size(), 2U);
  EXPECT_EQ(counter.m_freed[0], 0);
  EXPECT_GE(counter.m_freed[1], 1);
}

TEST_F(LoadRows, MessagesNameTheSetWhenThereAreSeveral) {
  HaveTables(1);
  m_properties.SetScale(0.01);
  EXPECT_EQ(ReadyUser(1, 3)->Execute(), 1);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Started loading table LK_REP_TABLE1 (set 2 of 3).",
                                               "INFO 0: Completed loading table LK_REP_TABLE1(set 2 of 3)."));
}

TEST_F(LoadRows, ASuccessMakesExactlyTheseCalls) {
  scripted::DescribeTable("LK_REP_TABLE1", {IdColumn()});
  m_properties.GetRepBenchmarkProperties().SetTableNumber(1);
  m_properties.SetScale(0.003);
  SetRowsPerCommit(2);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(
      Oci().Calls(),
      ElementsAre("OCIHandleAlloc(env#1, 4, 0, null)",
                  "OCIStmtPrepare(stmt#1, err#1, \"SELECT * FROM LK_REP_TABLE1\", 27, 1, 0)",
                  "OCIStmtExecute(svc#1, stmt#1, err#1, 0, 0, null, null, 16)",
                  "OCIAttrGet(stmt#1, 4, null, 18, err#1)", "OCIParamGet(stmt#1, 4, err#1, 1)",
                  "OCIAttrGet(par#1, 53, &, 4, err#1)", "OCIAttrGet(par#1, 53, null, 2, err#1)",
                  "OCIAttrGet(par#1, 53, null, 1, err#1)", "OCIAttrGet(par#1, 53, null, 7, err#1)",
                  "OCIAttrGet(par#1, 53, null, 5, err#1)", "OCIAttrGet(par#1, 53, null, 6, err#1)",
                  "OCIHandleAlloc(env#1, 4, 0, null)",
                  "OCIStmtPrepare(stmt#2, err#1, \"INSERT INTO LK_REP_TABLE1 (ID) VALUES (:ID)\", 43, 1, 0)",
                  "OCIBindByPos(stmt#2, err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
                  "OCIBindArrayOfStruct(bind#1, err#1, 8, 0, 0, 0)",
                  "OCIStmtExecute(svc#1, stmt#2, err#1, 2, 0, null, null, 32)",
                  "OCIStmtExecute(svc#1, stmt#2, err#1, 1, 0, null, null, 32)", "OCIHandleFree(stmt#2, 4)",
                  "OCIHandleFree(stmt#1, 4)"));
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
}

TEST_F(LoadRows, AnyFailingCallEndsTheLoadWithNothingLeftBehind) {
  scripted::DescribeTable("LK_REP_TABLE1", {IdColumn()});
  m_properties.GetRepBenchmarkProperties().SetTableNumber(1);
  m_properties.SetScale(0.003);
  SetRowsPerCommit(2);
  for (int nCall = 1; nCall <= 17; ++nCall) {
    const auto pUser = ReadyUser(1, 1);
    Oci().FailAnyCall(nCall, OraFault(600));
    EXPECT_EQ(pUser->Execute(), 0) << nCall;
    EXPECT_EQ(ExtraHandles(), 0) << nCall;
  }
  EXPECT_THAT(Oci().Violations(), IsEmpty());
}

TEST_F(LoadRows, ATableThatCannotBeDescribedEndsTheLoadWithTheTimerRunning) {
  m_properties.GetRepBenchmarkProperties().SetTableNumber(1);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_TRUE(pUser->GetTimer().IsStarted());
  ASSERT_EQ(m_reports.Reports().size(), 2U);
  EXPECT_EQ(m_reports.Reports()[0], "INFO 0: Started loading table LK_REP_TABLE1.");
  EXPECT_THAT(m_reports.Reports()[1], testing::HasSubstr("Unable Describe table while Initialize!"));
}

TEST_F(LoadRows, AFailedBindEndsTheLoadSilentlyWithTheTimerRunning) {
  HaveTables(1);
  const auto pUser = ReadyUser(1, 1);
  Oci().FailCall("OCIBindByPos", 1, OraFault(1036));
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_TRUE(pUser->GetTimer().IsStarted());
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Started loading table LK_REP_TABLE1."));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadRows, AFailedBatchEndsTheLoadWithTheTimerReset) {
  HaveTables(2);
  m_properties.SetScale(1.2);
  const auto pUser = ReadyUser(1, 1);
  Oci().FailSql("INSERT", 2, OraFault(1653, "unable to extend table"));
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 500));  // the second one failed
  EXPECT_EQ(pUser->GetRowsProcessed(), 500);
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
  ASSERT_EQ(m_reports.Reports().size(), 2U);
  EXPECT_THAT(m_reports.Reports()[1], testing::HasSubstr("ORA-01653: unable to extend table"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadRows, AFailedPartialBatchEndsTheLoadWithTheTimerReset) {
  HaveTables(1);
  m_properties.SetScale(0.6);
  const auto pUser = ReadyUser(1, 1);
  Oci().FailSql("INSERT", 2, OraFault(1653));
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 100));
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadRows, ACancelBreaksTheSessionAndKeepsWhatWasSent) {
  HaveTables(2);
  m_properties.SetScale(2.0);
  const auto pUser = ReadyUser(1, 1);
  Oci().After("OCIStmtExecute", 2, [&] { pUser->RequestCancel(); });  // the first batch
  bool bTimerAtBreak = true;
  Oci().After("OCIBreak", 1, [&] { bTimerAtBreak = pUser->GetTimer().IsStarted(); });
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_FALSE(bTimerAtBreak);
  EXPECT_THAT(BatchSizes(), ElementsAre(500));
  EXPECT_EQ(pUser->GetRowsProcessed(), 500);
  EXPECT_FALSE(pUser->GetTimer().IsStarted());
  const std::vector<std::string> calls = Oci().Calls();
  ASSERT_GE(calls.size(), 3U);
  EXPECT_THAT(std::vector(calls.end() - 3, calls.end()),
              ElementsAre("OCIBreak(svc#1, err#1)", "OCIHandleFree(stmt#2, 4)", "OCIHandleFree(stmt#1, 4)"));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Started loading table LK_REP_TABLE1."));
}

TEST_F(LoadRows, ACancelBeforeTheFirstRowInsertsNothing) {
  HaveTables(1);
  const auto pUser = ReadyUser(1, 1);
  pUser->RequestCancel();
  EXPECT_EQ(pUser->Execute(), 0);
  EXPECT_THAT(BatchSizes(), IsEmpty());
  EXPECT_EQ(Oci().CountCalls("OCIBreak"), 1);
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(LoadRows, WithoutADriverOrWithAnotherDatabasesNothingIsTouched) {
  HaveTables(1);
  scripted::ForeignDriver foreign;
  const auto pUser = ReadyUser(1, 1);
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    pUser->SetDriver(pDriver);
    EXPECT_EQ(pUser->PreBenchmark(), 0);
    EXPECT_EQ(pUser->PreIteration(), 0);
    EXPECT_EQ(pUser->Execute(), 0);
    EXPECT_EQ(pUser->PostBenchmark(), 0);
    pUser->DropAllBackupTables();
  }
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("pDriver != __null", "pDriver != __null"));
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(LoadRows, WithBackupsTheRowsGoIntoTheBackupTable) {
  HaveTables(1);
  UseBackup();
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetScale(2.0);
  m_properties.SetLoadedMaxScale(1.5);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), Ids(1501, 2000));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1, 0));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Started loading table LK_REP_TABLE1_BAK.",
                                               "INFO 0: Completed loading table LK_REP_TABLE1_BAK."));
}

TEST_F(LoadRows, AMissingBackupIsFilledFromRowOneAlthoughTheTableIsLoaded) {
  HaveTables(2);
  UseBackup();
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetScale(2.0);
  m_properties.SetLoadedMaxScale(1.5);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), Ids(1501, 2000));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE2_BAK"), Ids(1, 2000));
}

TEST_F(LoadRows, ABackupThatIsThereByNowIsNeitherCreatedNorFilledFromRowOne) {
  HaveTables(1);
  UseBackup();
  m_properties.SetScale(2.0);
  m_properties.SetLoadedMaxScale(1.5);
  const auto pUser = ReadyUser(1, 1);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  EXPECT_EQ(pUser->PreBenchmark(), 1);
  ASSERT_EQ(pUser->m_BackupTableMap.GetCount(), 1);  // of the first time
  m_driver.m_operations.clear();
  EXPECT_EQ(pUser->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), Ids(1501, 2000));
}

TEST_F(LoadRows, WithoutTheOptionAnyMoreTheTableItselfIsFilledAboveTheLoadedScale) {
  HaveTables(1);
  UseBackup();
  m_properties.SetScale(2.0);
  m_properties.SetLoadedMaxScale(1.5);
  const auto pUser = ReadyUser(1, 1);
  m_properties.SetCreateUseBackup(false);
  pUser->SetBenchmarkProperties(m_properties);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1"), Ids(1501, 2000));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// The load itself: which rows go where, in which batches.
#include "LoadFixture.h"

namespace {

using scripted::IdColumn;
using scripted::Ids;
using scripted::Oci;
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

TEST_F(LoadRows, TheTimersReadingIsKeptAfterFullBatchesAndSkippedTablesOnly) {
  HaveTables(1);
  const int kNotRead = -1;
  const auto readingAfter = [&](double fScale, double fLoadedScale) {
    m_properties.SetScale(fScale);
    m_properties.SetLoadedMaxScale(fLoadedScale);
    const auto pUser = ReadyUser(1, 1);
    pUser->m_nLastReadTime = kNotRead;
    EXPECT_EQ(pUser->Execute(), 1);
    return pUser->m_nLastReadTime;
  };
  EXPECT_NE(readingAfter(0.5, 0.0), kNotRead);
  EXPECT_NE(readingAfter(0.5, 0.5), kNotRead);
  EXPECT_EQ(readingAfter(0.1, 0.0), kNotRead);
}

TEST_F(LoadRows, AFullLastBatchIsCounted) {
  HaveTables(1);
  m_properties.SetScale(1.0);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 500));
  EXPECT_EQ(pUser->GetRowsProcessed(), 1000);
}

TEST_F(LoadRows, BatchesAreOf500RowsUnlessSetAndOf1000AtMost) {
  HaveTables(1);
  m_properties.SetScale(1.2);
  SetRowsPerCommit(0);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(500, 500, 200));
  SetRowsPerCommit(1200);
  EXPECT_EQ(ReadyUser(1, 1)->Execute(), 1);
  EXPECT_THAT(BatchSizes(), ElementsAre(1000, 200));
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

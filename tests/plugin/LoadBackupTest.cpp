// SPDX-License-Identifier: Apache-2.0
// Backups around the load, by the load of many tables and by the base for a single one.
#include "LoadFixture.h"

namespace {

using scripted::LoadUser;
using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::IsEmpty;

using LoadBackup = scripted::LoadTest;

TEST_F(LoadBackup, WithoutTheOptionNothingIsAskedOrDone) {
  HaveTables(2);
  const auto pUser = User(1, 1);
  EXPECT_EQ(pUser->PreBenchmark(), 1);
  EXPECT_EQ(pUser->PreIteration(), 1);
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_FALSE(pUser->m_bCreateBackup);
}

TEST_F(LoadBackup, PreBenchmarkNotesTheTablesWithoutABackup) {
  HaveTables(3);
  UseBackup();
  m_driver.m_backups = {"LK_REP_TABLE2"};
  const auto pUser = User(1, 1);
  EXPECT_EQ(pUser->PreBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("BackupExists(LK_REP_TABLE1)", "BackupExists(LK_REP_TABLE2)",
                                                 "BackupExists(LK_REP_TABLE3)"));
  EXPECT_TRUE(pUser->m_bCreateBackup);
  EXPECT_EQ(pUser->m_BackupTableMap.GetCount(), 2);
  int nMissing = 0;
  EXPECT_TRUE(pUser->m_BackupTableMap.Lookup(L"LK_REP_TABLE1", nMissing));
  EXPECT_EQ(nMissing, 1);
  EXPECT_TRUE(pUser->m_BackupTableMap.Lookup(L"LK_REP_TABLE3", nMissing));
  EXPECT_EQ(pUser->m_szTableName, LKString(L"LK_REP_TABLE3"));
}

TEST_F(LoadBackup, PreBenchmarkForgetsThatABackupWasNeeded) {
  HaveTables(1);
  UseBackup();
  const auto pUser = User(1, 1);
  pUser->PreBenchmark();
  ASSERT_TRUE(pUser->m_bCreateBackup);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  pUser->PreBenchmark();
  EXPECT_FALSE(pUser->m_bCreateBackup);
}

TEST_F(LoadBackup, PreIterationCreatesMissingBackupsInKeyOrder) {
  HaveTables(11);
  UseBackup();
  m_properties.SetIntAttribute3(8);
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("CreateBackupTable(LK_REP_TABLE10, \"\")",
                                                 "CreateBackupTable(LK_REP_TABLE11, \"\")",
                                                 "CreateBackupTable(LK_REP_TABLE9, \"\")"));
  EXPECT_EQ(
      m_reports.Reports()[0],
      "INFO 0: Backup for table LK_REP_TABLE10 could not be found.  Recreating backup using normal inserts.");
  EXPECT_EQ(m_reports.Reports().size(), 3U);
  EXPECT_EQ(pUser->m_szTableName, LKString(L"LK_REP_TABLE9"));
}

TEST_F(LoadBackup, PreIterationStopsAtABackupThatCannotBeCreated) {
  HaveTables(2);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  m_driver.m_failing = {"CreateBackupTable(LK_REP_TABLE1, \"\")"};
  EXPECT_EQ(pUser->PreIteration(), 0);
  EXPECT_EQ(m_driver.m_operations.size(), 1U);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("INFO 0: Backup for table LK_REP_TABLE1 could not be found.  Recreating backup "
                          "using normal inserts.",
                          "ERROR -1: Failed to create initial backup for table LK_REP_TABLE1"));
}

TEST_F(LoadBackup, OnlyTheUserOfTheLastSetCreatesRestoresAndDropsBackups) {
  HaveTables(1);
  UseBackup();
  const auto pOther = ReadyUser(1, 3);
  ASSERT_EQ(pOther->Set(), "2 of 3");
  EXPECT_EQ(pOther->PreIteration(), 1);
  EXPECT_EQ(pOther->PostBenchmark(), 1);
  pOther->RequestCancel();
  EXPECT_EQ(pOther->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());

  const auto pLast = ReadyUser(2, 3);
  ASSERT_EQ(pLast->Set(), "3 of 3");
  EXPECT_EQ(pLast->PreIteration(), 1);
  EXPECT_EQ(pLast->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations,
              ElementsAre("CreateBackupTable(LK_REP_TABLE1, \"\")", "RestoreFromBackup(LK_REP_TABLE1)"));
}

TEST_F(LoadBackup, PreIterationWithAllBackupsThereCreatesNone) {
  HaveTables(1);
  UseBackup();
  m_driver.m_backups = {"LK_REP_TABLE1"};
  EXPECT_EQ(ReadyUser(1, 1)->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(LoadBackup, PostBenchmarkCreatesEveryTableFromItsBackup) {
  HaveTables(2);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations,
              ElementsAre("RestoreFromBackup(LK_REP_TABLE1)", "RestoreFromBackup(LK_REP_TABLE2)"));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Creating table LK_REP_TABLE1 from backup.",
                                               "INFO 0: LK_REP_TABLE1 created successfully from backup.",
                                               "INFO 0: Creating table LK_REP_TABLE2 from backup.",
                                               "INFO 0: LK_REP_TABLE2 created successfully from backup."));
}

TEST_F(LoadBackup, ATableThatCannotBeCreatedFromItsBackupIsAWarningAndTheNextOneFollows) {
  HaveTables(2);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  m_driver.m_failing = {"RestoreFromBackup(LK_REP_TABLE1)"};
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Creating table LK_REP_TABLE1 from backup.",
                                               "WARNING 0: Failed to create table LK_REP_TABLE1 from backup.",
                                               "INFO 0: Creating table LK_REP_TABLE2 from backup.",
                                               "INFO 0: LK_REP_TABLE2 created successfully from backup."));
}

TEST_F(LoadBackup, AfterACancelAllBackupsAreDropped) {
  HaveTables(2);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  pUser->RequestCancel();
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations,
              ElementsAre("DropBackupTable(LK_REP_TABLE1)", "DropBackupTable(LK_REP_TABLE2)"));
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(LoadBackup, ACancelDuringTheWalkEndsItAndDropsAllBackups) {
  HaveTables(3);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  m_driver.m_onRestore = [&] { pUser->RequestCancel(); };
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations,
              ElementsAre("RestoreFromBackup(LK_REP_TABLE1)", "DropBackupTable(LK_REP_TABLE1)",
                          "DropBackupTable(LK_REP_TABLE2)", "DropBackupTable(LK_REP_TABLE3)"));
}

TEST_F(LoadBackup, ACancelDuringTheLastTableLeavesTheBackups) {
  HaveTables(1);
  UseBackup();
  const auto pUser = ReadyUser(1, 1);
  m_driver.m_onRestore = [&] { pUser->RequestCancel(); };
  EXPECT_EQ(pUser->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("RestoreFromBackup(LK_REP_TABLE1)"));
}

// The base, for the one table named by m_szTableName.
class SingleTableBackup : public scripted::LoadTest {
 protected:
  using BaseLoad = scripted::Opened<CXact_LoadTableBase_ORA8>;
  std::unique_ptr<BaseLoad> Load(const wchar_t* szTable = L"T") {
    auto pLoad = User<BaseLoad>(1, 1);
    pLoad->m_szTableName = szTable;
    return pLoad;
  }
  void ReloadLastBackup() {
    m_properties.SetLastIsBackupOption(true);
    m_properties.SetLastLoadFailed(true);
  }
};

TEST_F(SingleTableBackup, WithoutATableNameOnlyTheHostsOperationsRun) {
  UseBackup();
  const auto pLoad = Load(L"");
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(pLoad->PreBenchmark(), 1);
  EXPECT_EQ(pLoad->PreIteration(), 1);
  EXPECT_TRUE(pLoad->m_bCreateBackup);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(SingleTableBackup, PreBenchmarkAsksForTheBackupOnlyWithTheOption) {
  const auto pLoad = Load();
  EXPECT_EQ(pLoad->PreBenchmark(), 1);
  EXPECT_FALSE(pLoad->m_bCreateBackup);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());

  UseBackup();
  const auto pWithOption = Load();
  EXPECT_EQ(pWithOption->PreBenchmark(), 1);
  EXPECT_TRUE(pWithOption->m_bCreateBackup);
  m_driver.m_backups = {"T"};
  EXPECT_EQ(pWithOption->PreBenchmark(), 1);
  EXPECT_FALSE(pWithOption->m_bCreateBackup);
}

TEST_F(SingleTableBackup, AReloadNeedsBothFlagsOfTheLastLoad) {
  for (const bool bOption : {false, true}) {
    for (const bool bFailed : {false, true}) {
      m_properties.SetLastIsBackupOption(bOption);
      m_properties.SetLastLoadFailed(bFailed);
      const auto pLoad = Load();
      EXPECT_EQ(pLoad->PreBenchmark(), 1);
      EXPECT_EQ(pLoad->m_bReloadLastBackup, bOption && bFailed ? TRUE : FALSE);
    }
  }
}

TEST_F(SingleTableBackup, PreIterationCreatesTheMissingBackup) {
  UseBackup();
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  m_driver.m_operations.clear();
  EXPECT_EQ(pLoad->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("CreateBackupTable(T, \"\")"));
  EXPECT_THAT(
      m_reports.Reports(),
      ElementsAre("INFO 0: Backup for table T could not be found.  Recreating backup using normal inserts."));
}

TEST_F(SingleTableBackup, PreIterationFailsWhenTheBackupCannotBeCreated) {
  UseBackup();
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  m_driver.m_failing = {"CreateBackupTable(T, \"\")"};
  EXPECT_EQ(pLoad->PreIteration(), 0);
  EXPECT_EQ(m_reports.Reports().back(), "ERROR -1: Failed to create initial backup for table T");
}

TEST_F(SingleTableBackup, PreIterationReloadsTheLastBackupByRenamingIt) {
  ReloadLastBackup();
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  EXPECT_EQ(pLoad->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("PrepareRenameFromBackup(T)"));
  ASSERT_EQ(Oci().ExecutedSql().size(), 1U);
  EXPECT_THAT(Oci().ExecutedSql()[0], testing::ContainsRegex("T_BAK.* T$"));
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(SingleTableBackup, PreIterationFailsWhenTheRenameFails) {
  ReloadLastBackup();
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  Oci().FailCall("OCIStmtExecute", 1, OraFault(942));
  EXPECT_EQ(pLoad->PreIteration(), 0);
  EXPECT_EQ(m_reports.Reports().back(), "ERROR -1: Failed to change from backup name for table T");
}

TEST_F(SingleTableBackup, WithTheOptionTheLastBackupIsNotRenamed) {
  UseBackup();
  ReloadLastBackup();
  m_driver.m_backups = {"T"};
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  m_driver.m_operations.clear();
  EXPECT_EQ(pLoad->PreIteration(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
  EXPECT_THAT(Oci().ExecutedSql(), IsEmpty());
}

TEST_F(SingleTableBackup, OnlyTheLastSetDoesAnything) {
  UseBackup();
  const auto pLoad = Load();
  pLoad->PreBenchmark();
  m_driver.m_operations.clear();
  pLoad->m_nSetNumber = 1;
  pLoad->m_nNumberOfSets = 2;
  EXPECT_EQ(pLoad->PreIteration(), 1);
  EXPECT_EQ(pLoad->PostBenchmark(), 1);
  pLoad->m_bCreateBackup = FALSE;
  EXPECT_EQ(pLoad->ReloadFromBackup(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(SingleTableBackup, ExecuteRecreatesTheTableFromItsBackup) {
  UseBackup();
  const auto pLoad = Load();
  EXPECT_EQ(pLoad->Execute(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("RestoreFromBackup(T)"));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Recreating table T from backup"));
}

TEST_F(SingleTableBackup, ExecuteSucceedsAlsoWhenTheRestoreFails) {
  UseBackup();
  const auto pLoad = Load();
  m_driver.m_failing = {"RestoreFromBackup(T)"};
  EXPECT_EQ(pLoad->ReloadFromBackup(), 1);
  EXPECT_EQ(pLoad->Execute(), 1);
  EXPECT_EQ(m_reports.Reports().back(), "ERROR -1: Failed to restore backup of table T");
}

TEST_F(SingleTableBackup, NoReloadIsDueWithoutTheOptionOrWhileABackupIsBuiltOrReloaded) {
  EXPECT_EQ(Load()->ReloadFromBackup(), 0);
  UseBackup();
  const auto pLoad = Load();
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(pLoad->ReloadFromBackup(), 0);
  pLoad->m_bCreateBackup = FALSE;
  pLoad->m_bReloadLastBackup = TRUE;
  EXPECT_EQ(pLoad->ReloadFromBackup(), 0);
  EXPECT_EQ(pLoad->Execute(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(SingleTableBackup, PostBenchmarkCreatesTheTableFromANewBackup) {
  const auto pLoad = Load();
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(pLoad->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("RestoreFromBackup(T)"));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("INFO 0: Creating table T from backup.",
                                               "INFO 0: T created successfully from backup."));
}

TEST_F(SingleTableBackup, PostBenchmarkOfAReloadNeedsTheOption) {
  const auto pLoad = Load();
  pLoad->m_bReloadLastBackup = TRUE;
  EXPECT_EQ(pLoad->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
  UseBackup();
  const auto pWithOption = Load();
  pWithOption->m_bReloadLastBackup = TRUE;
  m_driver.m_failing = {"RestoreFromBackup(T)"};
  EXPECT_EQ(pWithOption->PostBenchmark(), 1);
  EXPECT_EQ(m_reports.Reports().back(), "WARNING 0: Failed to create table T from backup.");
}

TEST_F(SingleTableBackup, PostBenchmarkDoesNothingAfterACancel) {
  const auto pLoad = Load();
  pLoad->m_bCreateBackup = TRUE;
  pLoad->RequestCancel();
  EXPECT_EQ(pLoad->PostBenchmark(), 1);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(SingleTableBackup, WithoutADriverEveryStepThatNeedsOneFails) {
  UseBackup();
  const auto pLoad = Load();
  pLoad->SetDriver(nullptr);
  EXPECT_EQ(pLoad->PreBenchmark(), 0);
  EXPECT_EQ(pLoad->ReloadFromBackup(), 0);
  EXPECT_EQ(pLoad->Execute(), 0);
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(pLoad->PreIteration(), 0);
  EXPECT_EQ(pLoad->PostBenchmark(), 0);
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

}  // namespace

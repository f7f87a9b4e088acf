// SPDX-License-Identifier: Apache-2.0
// Everything a load by way of backups does, in order, over the life of its users: backups that are missing,
// that are there, that cannot be made or made into tables, and cancels.
#include "LoadCalls.h"

namespace scripted {
namespace {

const Events kDone = {"returned 1"};

class LoadBackupCalls : public LoadCalls {
 protected:
  LoadBackupCalls() { UseBackup(); }
  // A user whose PreBenchmark found no backup.
  std::unique_ptr<LoadUser> UserWithoutBackups(int nTables, int nUserID = 1, int nTotalUsers = 1) {
    HaveIdTables(nTables);
    return ReadyUser(nUserID, nTotalUsers);
  }
};

TEST_F(LoadBackupCalls, OfANewBackupMakeItFillItAndMakeTheTableFromIt) {
  HaveIdTables(1);
  m_properties.SetLoadedMaxScale(0.002);  // of the table, which says nothing of its backup
  const auto pUser = User(1, 1);
  const IdTable backup("LK_REP_TABLE1_BAK", 1);
  EXPECT_EQ(PreBenchmark(*pUser), Events({"BackupExists(LK_REP_TABLE1)", "returned 1"}));
  EXPECT_EQ(PreIteration(*pUser), Together({CreateBackup("LK_REP_TABLE1"), kDone}));
  EXPECT_EQ(Execute(*pUser), Loaded({backup.Load(TwoBatches(backup))}));
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), kDone}));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), Ids(1, 3));
}

TEST_F(LoadBackupCalls, OfABackupThatIsThereAddTheRowsAboveTheLoadedScale) {
  HaveIdTables(1);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetLoadedMaxScale(0.002);
  const auto pUser = User(1, 1);
  const IdTable backup("LK_REP_TABLE1_BAK", 1);
  EXPECT_EQ(PreBenchmark(*pUser), Events({"BackupExists(LK_REP_TABLE1)", "returned 1"}));
  EXPECT_EQ(PreIteration(*pUser), kDone);
  EXPECT_EQ(Execute(*pUser), Loaded({backup.Load({backup.Batch(1)})}));
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), kDone}));
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), Ids(3, 3));
  EXPECT_EQ(pUser->GetRowsProcessed(), 0);  // a partial batch only
}

TEST_F(LoadBackupCalls, OfAFullBackupMakeTheTableFromItWithoutInserts) {
  HaveIdTables(1);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetLoadedMaxScale(0.003);
  const auto pUser = User(1, 1);
  PreBenchmark(*pUser);
  EXPECT_EQ(PreIteration(*pUser), kDone);
  EXPECT_EQ(Execute(*pUser), Events({"SetStartTime()", "Read()", "Reset()", "returned 1"}));
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), kDone}));
  EXPECT_EQ(pUser->GetRowsProcessed(), 3);
}

TEST_F(LoadBackupCalls, OfOneMissingBackupOfTwoMakeThatOne) {
  HaveIdTables(2);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetLoadedMaxScale(0.003);
  const auto pUser = User(1, 1);
  const IdTable backup("LK_REP_TABLE2_BAK", 1);
  EXPECT_EQ(PreBenchmark(*pUser),
            Events({"BackupExists(LK_REP_TABLE1)", "BackupExists(LK_REP_TABLE2)", "returned 1"}));
  EXPECT_EQ(PreIteration(*pUser), Together({CreateBackup("LK_REP_TABLE2"), kDone}));
  EXPECT_EQ(Execute(*pUser), Loaded({{"Read()"}, backup.Load(TwoBatches(backup))}));
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), Restored("LK_REP_TABLE2"), kDone}));
}

TEST_F(LoadBackupCalls, OfThreeUsersOfATableMakeTheBackupOnceByTheLastSet) {
  HaveIdTables(1);
  m_properties.SetScale(0.007);
  const int kSetOfUser[] = {2, 3, 1};
  for (int nUserID = 1; nUserID <= 3; ++nUserID) {
    const auto pUser = User(nUserID, 3);
    const int nSet = kSetOfUser[nUserID - 1];
    const bool bLastSet = nSet == 3;
    EXPECT_EQ(PreBenchmark(*pUser), Events({"BackupExists(LK_REP_TABLE1)", "returned 1"}));
    EXPECT_EQ(PreIteration(*pUser), Together({bLastSet ? CreateBackup("LK_REP_TABLE1") : Events(), kDone}));
    const IdTable backup("LK_REP_TABLE1_BAK", nUserID);
    Events sent = {backup.Batch(2), "Read()"};
    if (bLastSet) sent.push_back(backup.Batch(1));
    const std::string set = "(set " + std::to_string(nSet) + " of 3)";
    EXPECT_EQ(Execute(*pUser), Loaded({backup.Started(" " + set), backup.Describe(), backup.Bind(), sent,
                                       backup.Free(), backup.Completed(set)}));
    EXPECT_EQ(PostBenchmark(*pUser), Together({bLastSet ? Restored("LK_REP_TABLE1") : Events(), kDone}));
  }
  EXPECT_EQ(InsertedIds("LK_REP_TABLE1_BAK"), std::vector<long>({3, 4, 5, 6, 7, 1, 2}));
}

TEST_F(LoadBackupCalls, OfPreBenchmarkNoteTheTablesWithoutABackup) {
  m_driver.m_backups = {"LK_REP_TABLE2"};
  const auto pUser = UserWithoutBackups(3);
  EXPECT_TRUE(pUser->m_bCreateBackup);
  EXPECT_EQ(pUser->m_BackupTableMap.GetCount(), 2);
  for (const wchar_t* szTable : {L"LK_REP_TABLE1", L"LK_REP_TABLE3"}) {
    int nMissing = 0;
    EXPECT_TRUE(pUser->m_BackupTableMap.Lookup(szTable, nMissing));
    EXPECT_EQ(nMissing, 1);
  }
  EXPECT_EQ(pUser->m_szTableName, LKString(L"LK_REP_TABLE3"));
  m_driver.m_backups = {"LK_REP_TABLE1", "LK_REP_TABLE2", "LK_REP_TABLE3"};
  PreBenchmark(*pUser);
  EXPECT_FALSE(pUser->m_bCreateBackup);
}

TEST_F(LoadBackupCalls, OfAnotherSetNeitherMakeNorDropAnything) {
  const auto pUser = UserWithoutBackups(1, 1, 3);
  pUser->RequestCancel();
  EXPECT_EQ(PreIteration(*pUser), kDone);
  EXPECT_EQ(PostBenchmark(*pUser), kDone);
}

TEST_F(LoadBackupCalls, OfMissingBackupsAreInTheOrderOfTheirNames) {
  const auto pUser = UserWithoutBackups(10);
  Events expected;
  for (const char* szNumber : {"1", "10", "2", "3", "4", "5", "6", "7", "8", "9"})
    expected = Together({expected, CreateBackup(std::string("LK_REP_TABLE") + szNumber)});
  EXPECT_EQ(PreIteration(*pUser), Together({expected, kDone}));
  EXPECT_EQ(pUser->m_szTableName, LKString(L"LK_REP_TABLE9"));
}

TEST_F(LoadBackupCalls, OfABackupThatCannotBeMadeEndPreIteration) {
  for (const int nFailing : {1, 2}) {
    const auto pUser = UserWithoutBackups(3);
    m_driver.m_failing = {"CreateBackupTable(LK_REP_TABLE" + std::to_string(nFailing) + ", \"\")"};
    EXPECT_EQ(PreIteration(*pUser),
              Together({nFailing == 2 ? CreateBackup("LK_REP_TABLE1") : Events(),
                        CreateBackup("LK_REP_TABLE" + std::to_string(nFailing)),
                        {"HandleErrorMsg(\"Failed to create initial backup for table LK_REP_TABLE" +
                             std::to_string(nFailing) + "\")",
                         "returned 0"}}));
  }
}

TEST_F(LoadBackupCalls, OfATableThatCannotBeMadeFromItsBackupGoOnWithTheNext) {
  const auto pUser = UserWithoutBackups(2);
  m_driver.m_failing = {"RestoreFromBackup(LK_REP_TABLE1)"};
  EXPECT_EQ(PostBenchmark(*pUser),
            Together({NotRestored("LK_REP_TABLE1"), Restored("LK_REP_TABLE2"), kDone}));
  EXPECT_EQ(pUser->m_szTableName, LKString(L"LK_REP_TABLE2"));
}

TEST_F(LoadBackupCalls, AfterAFailedLoadMakeTheTableFromWhatThereIs) {
  const auto pUser = UserWithoutBackups(1);
  Oci().FailSql("INSERT", 1, OraFault(1653));
  EXPECT_EQ(Execute(*pUser).back(), "returned 0");
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), kDone}));
}

TEST_F(LoadBackupCalls, AfterACancelDropAllBackupsAlsoThoseThatWereThereBefore) {
  m_driver.m_backups = {"LK_REP_TABLE1", "LK_REP_TABLE2"};
  const auto pUser = UserWithoutBackups(2);
  pUser->RequestCancel();
  m_driver.m_failing = {"DropBackupTable(LK_REP_TABLE1)"};  // not looked at
  EXPECT_EQ(PostBenchmark(*pUser),
            Events({"DropBackupTable(LK_REP_TABLE1)", "DropBackupTable(LK_REP_TABLE2)", "returned 1"}));
}

TEST_F(LoadBackupCalls, WithACancelDuringTheWalkEndItAndDropAllBackups) {
  const auto pUser = UserWithoutBackups(2);
  m_driver.m_onRestore = [&] { pUser->RequestCancel(); };
  EXPECT_EQ(PostBenchmark(*pUser),
            Together({Restored("LK_REP_TABLE1"),
                      {"DropBackupTable(LK_REP_TABLE1)", "DropBackupTable(LK_REP_TABLE2)", "returned 1"}}));
}

TEST_F(LoadBackupCalls, WithACancelDuringTheLastTableLeaveTheBackups) {
  const auto pUser = UserWithoutBackups(1);
  m_driver.m_onRestore = [&] { pUser->RequestCancel(); };
  EXPECT_EQ(PostBenchmark(*pUser), Together({Restored("LK_REP_TABLE1"), kDone}));
}

// kept: what was missing once is not forgotten by the copy.
TEST_F(LoadBackupCalls, OfASecondPreBenchmarkKeepTheTablesOfTheFirst) {
  const auto pUser = UserWithoutBackups(2);
  m_driver.m_backups = {"LK_REP_TABLE1"};
  PreBenchmark(*pUser);
  EXPECT_EQ(PreIteration(*pUser),
            Together({CreateBackup("LK_REP_TABLE1"), CreateBackup("LK_REP_TABLE2"), kDone}));
}

// kept: the host's own operations are not called by the load.
TEST_F(LoadBackupCalls, LeaveOutTheHostsOwnOperations) {
  const HostReturns seven(7);
  const auto pUser = UserWithoutBackups(1);
  const Events all = Together({PreBenchmark(*pUser), PreIteration(*pUser), PostBenchmark(*pUser)});
  for (const std::string& event : all) EXPECT_FALSE(event.starts_with("CXact::")) << event;
  EXPECT_EQ(all.back(), "returned 1");
}

}  // namespace
}  // namespace scripted

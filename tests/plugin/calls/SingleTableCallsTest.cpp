// SPDX-License-Identifier: Apache-2.0
// Everything the base of loads does for the one table that it is given, here T.
#include "LoadCalls.h"

namespace scripted {
namespace {

using BaseLoad = Opened<CXact_LoadTableBase_ORA8>;

const Events kHostsPreIteration = {"CXact::PreIteration()", "returned 7"};
const Events kHostsPostBenchmark = {"CXact::PostBenchmark()", "returned 7"};

class SingleTableCalls : public LoadCalls {
 protected:
  std::unique_ptr<BaseLoad> Load(const wchar_t* szTable = L"T") {
    auto pLoad = User<BaseLoad>(1, 1);
    pLoad->m_szTableName = szTable;
    return pLoad;
  }
  // After a PreBenchmark.
  std::unique_ptr<BaseLoad> ReadyLoad() {
    auto pLoad = Load();
    EXPECT_EQ(pLoad->PreBenchmark(), 7);
    return pLoad;
  }
  void ReloadLastBackup() {
    m_properties.SetLastIsBackupOption(true);
    m_properties.SetLastLoadFailed(true);
  }

  const HostReturns m_seven{7};
};

TEST_F(SingleTableCalls, WithoutANameAreTheHostsOnly) {
  UseBackup();
  ReloadLastBackup();
  const auto pLoad = Load(L"");
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(PreBenchmark(*pLoad), Events({"CXact::PreBenchmark()", "returned 7"}));
  EXPECT_TRUE(pLoad->m_bCreateBackup);
  EXPECT_FALSE(pLoad->m_bReloadLastBackup);
  pLoad->m_bReloadLastBackup = TRUE;
  EXPECT_EQ(PreIteration(*pLoad), kHostsPreIteration);
}

TEST_F(SingleTableCalls, OfPreBenchmarkAskForTheBackupWithTheOptionOnly) {
  EXPECT_EQ(PreBenchmark(*Load()), Events({"CXact::PreBenchmark()", "returned 7"}));
  UseBackup();
  const auto pLoad = Load();
  EXPECT_EQ(PreBenchmark(*pLoad), Events({"BackupExists(T)", "CXact::PreBenchmark()", "returned 7"}));
  EXPECT_TRUE(pLoad->m_bCreateBackup);
  m_driver.m_backups = {"T"};
  PreBenchmark(*pLoad);
  EXPECT_FALSE(pLoad->m_bCreateBackup);
}

TEST_F(SingleTableCalls, OfAReloadNeedBothFlagsOfTheLastLoad) {
  for (const bool bOption : {false, true}) {
    for (const bool bFailed : {false, true}) {
      m_properties.SetLastIsBackupOption(bOption);
      m_properties.SetLastLoadFailed(bFailed);
      EXPECT_EQ(ReadyLoad()->m_bReloadLastBackup, bOption && bFailed ? TRUE : FALSE);
    }
  }
}

TEST_F(SingleTableCalls, OfPreIterationMakeAMissingBackup) {
  UseBackup();
  ReloadLastBackup();  // comes second
  const auto pLoad = ReadyLoad();
  EXPECT_EQ(PreIteration(*pLoad), Together({CreateBackup("T"), kHostsPreIteration}));
  m_driver.m_failing = {"CreateBackupTable(T, \"\")"};
  EXPECT_EQ(PreIteration(*pLoad),
            Together({CreateBackup("T"),
                      {"HandleErrorMsg(\"Failed to create initial backup for table T\")", "returned 0"}}));
}

TEST_F(SingleTableCalls, OfPreIterationRenameTheLastBackup) {
  ReloadLastBackup();
  const auto pLoad = ReadyLoad();
  const Events rename = {"PrepareRenameFromBackup(T)", "ChangeTableName(T, 0)"};
  EXPECT_EQ(PreIteration(*pLoad), Together({rename, kHostsPreIteration}));
  m_driver.m_failing = {"PrepareRenameFromBackup(T)"};  // not looked at
  EXPECT_EQ(PreIteration(*pLoad), Together({rename, kHostsPreIteration}));
  Oci().FailSql("ALTER TABLE", 1, OraFault(942));
  EXPECT_EQ(PreIteration(*pLoad),
            Together({rename,
                      {"reported ERROR 942",
                       "HandleErrorMsg(\"Failed to change from backup name for table T\")", "returned 0"}}));
}

TEST_F(SingleTableCalls, WithTheOptionDoNotRenameTheLastBackup) {
  UseBackup();
  ReloadLastBackup();
  m_driver.m_backups = {"T"};
  EXPECT_EQ(PreIteration(*ReadyLoad()), kHostsPreIteration);
}

TEST_F(SingleTableCalls, OfAnotherSetAreTheHostsOnly) {
  UseBackup();
  const auto pCreating = ReadyLoad();
  pCreating->m_nNumberOfSets = 2;
  EXPECT_EQ(PreIteration(*pCreating), kHostsPreIteration);
  EXPECT_EQ(PostBenchmark(*pCreating), kHostsPostBenchmark);
  pCreating->m_bCreateBackup = FALSE;
  EXPECT_EQ(m_journal.Run([&] { return pCreating->ReloadFromBackup(); }), Events({"returned 1"}));
  m_properties.SetCreateUseBackup(false);
  ReloadLastBackup();
  const auto pReloading = ReadyLoad();
  pReloading->m_nNumberOfSets = 2;
  EXPECT_EQ(PreIteration(*pReloading), kHostsPreIteration);
}

TEST_F(SingleTableCalls, OfExecuteMakeTheTableFromItsBackup) {
  UseBackup();
  m_driver.m_backups = {"T"};
  const auto pLoad = ReadyLoad();
  EXPECT_EQ(Execute(*pLoad), Events({"HandleInfoMsg(\"Recreating table T from backup\")",
                                     "RestoreFromBackup(T)", "returned 1"}));
  m_driver.m_failing = {"RestoreFromBackup(T)"};
  const Events failed = {"HandleInfoMsg(\"Recreating table T from backup\")", "RestoreFromBackup(T)",
                         "HandleErrorMsg(\"Failed to restore backup of table T\")", "returned 1"};
  EXPECT_EQ(Execute(*pLoad), failed);
  EXPECT_EQ(m_journal.Run([&] { return pLoad->ReloadFromBackup(); }), failed);
}

TEST_F(SingleTableCalls, OfExecuteAreNoneWithoutAReloadThatIsDue) {
  const Events notDue = {"returned 0"};
  const auto pWithout = ReadyLoad();
  EXPECT_EQ(m_journal.Run([&] { return pWithout->ReloadFromBackup(); }), notDue);
  EXPECT_EQ(Execute(*pWithout), Events({"returned 1"}));
  UseBackup();
  const auto pLoad = ReadyLoad();
  ASSERT_TRUE(pLoad->m_bCreateBackup);
  EXPECT_EQ(m_journal.Run([&] { return pLoad->ReloadFromBackup(); }), notDue);
  pLoad->m_bCreateBackup = FALSE;
  pLoad->m_bReloadLastBackup = TRUE;
  EXPECT_EQ(m_journal.Run([&] { return pLoad->ReloadFromBackup(); }), notDue);
}

TEST_F(SingleTableCalls, OfPostBenchmarkMakeTheTableFromANewBackup) {
  UseBackup();
  const auto pLoad = ReadyLoad();
  EXPECT_EQ(PostBenchmark(*pLoad), Together({Restored("T"), kHostsPostBenchmark}));
  m_driver.m_failing = {"RestoreFromBackup(T)"};
  EXPECT_EQ(PostBenchmark(*pLoad), Together({NotRestored("T"), kHostsPostBenchmark}));
  pLoad->RequestCancel();
  EXPECT_EQ(PostBenchmark(*pLoad), kHostsPostBenchmark);
}

TEST_F(SingleTableCalls, OfPostBenchmarkAfterANewBackupNeedNoOption) {
  UseBackup();
  const auto pLoad = ReadyLoad();
  m_properties.SetCreateUseBackup(false);
  pLoad->SetBenchmarkProperties(m_properties);
  EXPECT_EQ(PostBenchmark(*pLoad), Together({Restored("T"), kHostsPostBenchmark}));
}

TEST_F(SingleTableCalls, OfPostBenchmarkAfterAReloadNeedTheOption) {
  ReloadLastBackup();
  EXPECT_EQ(PostBenchmark(*ReadyLoad()), kHostsPostBenchmark);
  UseBackup();
  m_driver.m_backups = {"T"};
  EXPECT_EQ(PostBenchmark(*ReadyLoad()), Together({Restored("T"), kHostsPostBenchmark}));
}

TEST_F(SingleTableCalls, OfPostBenchmarkWithABackupThatWasThereAreTheHostsOnly) {
  UseBackup();
  m_driver.m_backups = {"T"};
  EXPECT_EQ(PostBenchmark(*ReadyLoad()), kHostsPostBenchmark);
}

TEST_F(SingleTableCalls, WithoutADriverAreNoneWhereOneIsNeeded) {
  UseBackup();
  const auto pLoad = Load();
  pLoad->SetDriver(nullptr);
  const Events none = {"returned 0"};
  EXPECT_EQ(PreBenchmark(*pLoad), none);
  EXPECT_EQ(m_journal.Run([&] { return pLoad->ReloadFromBackup(); }), none);
  EXPECT_EQ(Execute(*pLoad), none);
  pLoad->m_bCreateBackup = TRUE;
  EXPECT_EQ(PreIteration(*pLoad), none);
  EXPECT_EQ(PostBenchmark(*pLoad), none);
}

}  // namespace
}  // namespace scripted

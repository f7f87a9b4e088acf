// SPDX-License-Identifier: Apache-2.0
// Who loads which tables, and which set of them; what a load is.
#include <map>

#include "LoadFixture.h"

namespace {

using scripted::LoadUser;
using testing::ElementsAre;
using testing::IsEmpty;

class LoadDeal : public scripted::LoadTest {
 protected:
  std::unique_ptr<LoadUser> Dealt(int nUserID, int nTotalUsers) {
    auto pUser = User(nUserID, nTotalUsers);
    EXPECT_GE(pUser->InitializeTables(), 1);
    return pUser;
  }
};

TEST_F(LoadDeal, FewerUsersThanTablesTakeThemInTurn) {
  HaveTables(4);
  EXPECT_THAT(Dealt(1, 2)->Tables(), ElementsAre("LK_REP_TABLE1", "LK_REP_TABLE3"));
  EXPECT_THAT(Dealt(2, 2)->Tables(), ElementsAre("LK_REP_TABLE2", "LK_REP_TABLE4"));
  EXPECT_EQ(Dealt(1, 2)->Set(), "1 of 1");
  EXPECT_EQ(Dealt(2, 2)->Set(), "1 of 1");
}

TEST_F(LoadDeal, AnOddTableGoesToTheFirstUser) {
  HaveTables(5);
  EXPECT_THAT(Dealt(1, 2)->Tables(), ElementsAre("LK_REP_TABLE1", "LK_REP_TABLE3", "LK_REP_TABLE5"));
  EXPECT_THAT(Dealt(2, 2)->Tables(), ElementsAre("LK_REP_TABLE2", "LK_REP_TABLE4"));
}

TEST_F(LoadDeal, AsManyUsersAsTablesTakeOneEach) {
  HaveTables(3);
  for (int nUser = 1; nUser <= 3; ++nUser) {
    EXPECT_THAT(Dealt(nUser, 3)->Tables(), ElementsAre("LK_REP_TABLE" + std::to_string(nUser)));
    EXPECT_EQ(Dealt(nUser, 3)->Set(), "1 of 1");
  }
}

TEST_F(LoadDeal, FiveUsersOfTwoTablesLoadThreeAndTwoSets) {
  HaveTables(2);
  const struct {
    const char* szTable;
    const char* szSet;
  } kExpected[] = {{"LK_REP_TABLE1", "2 of 3"},
                   {"LK_REP_TABLE1", "1 of 3"},
                   {"LK_REP_TABLE2", "2 of 2"},
                   {"LK_REP_TABLE2", "1 of 2"},
                   {"LK_REP_TABLE1", "3 of 3"}};
  for (int nUser = 1; nUser <= 5; ++nUser) {
    const auto pUser = Dealt(nUser, 5);
    EXPECT_THAT(pUser->Tables(), ElementsAre(kExpected[nUser - 1].szTable)) << nUser;
    EXPECT_EQ(pUser->Set(), kExpected[nUser - 1].szSet) << nUser;
  }
}

TEST_F(LoadDeal, SetOneGoesToTheUserWhoseNumberIsAMultipleOfTheSetCount) {
  HaveTables(1);
  EXPECT_EQ(Dealt(1, 3)->Set(), "2 of 3");
  EXPECT_EQ(Dealt(2, 3)->Set(), "3 of 3");
  EXPECT_EQ(Dealt(3, 3)->Set(), "1 of 3");
}

TEST_F(LoadDeal, EverySetOfEveryTableHasExactlyOneUser) {
  for (int nTables = 1; nTables <= 7; ++nTables) {
    HaveTables(nTables);
    for (int nUsers = 1; nUsers <= 24; ++nUsers) {
      std::map<std::string, std::set<int>> sets;
      std::map<std::string, std::set<int>> counts;
      for (int nUser = 1; nUser <= nUsers; ++nUser) {
        const auto pUser = Dealt(nUser, nUsers);
        for (const std::string& table : pUser->Tables()) {
          EXPECT_TRUE(sets[table].insert(pUser->m_nSetNumber).second) << nTables << " " << nUsers;
          counts[table].insert(pUser->m_nNumberOfSets);
        }
      }
      ASSERT_EQ(sets.size(), static_cast<size_t>(nTables)) << nUsers;
      for (const auto& [table, numbers] : sets) {
        EXPECT_EQ(counts[table].size(), 1U) << nTables << " " << nUsers;
        EXPECT_EQ(*numbers.begin(), 1);
        EXPECT_EQ(*numbers.rbegin(), static_cast<int>(numbers.size()));
        EXPECT_EQ(*counts[table].begin(), static_cast<int>(numbers.size())) << nTables << " " << nUsers;
      }
    }
  }
  EXPECT_THAT(m_asserts.Conditions(), IsEmpty());
}

TEST_F(LoadDeal, TablesThatAreThereAlreadyAreSkipped) {
  HaveTables(8);
  m_properties.SetIntAttribute3(4);
  EXPECT_THAT(Dealt(1, 2)->Tables(), ElementsAre("LK_REP_TABLE5", "LK_REP_TABLE7"));
  EXPECT_THAT(Dealt(2, 2)->Tables(), ElementsAre("LK_REP_TABLE6", "LK_REP_TABLE8"));
}

TEST_F(LoadDeal, AStartBelowZeroIsReportedAndCountsAsZeroForTheNames) {
  HaveTables(2);
  m_properties.SetIntAttribute3(-1);
  EXPECT_THAT(Dealt(1, 1)->Tables(), ElementsAre("LK_REP_TABLE1", "LK_REP_TABLE2", "LK_REP_TABLE3"));
  EXPECT_THAT(m_asserts.Conditions(),
              ElementsAre("nStartTableID >= 0 && nStartTableID <= "
                          "m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber()"));
}

TEST_F(LoadDeal, AStartAboveTheTableNumberIsReportedAndCountsAsZeroForTheNames) {
  HaveTables(2);
  m_properties.SetIntAttribute3(3);
  EXPECT_THAT(Dealt(1, 1)->Tables(), ElementsAre("LK_REP_TABLE2"));
  EXPECT_THAT(m_asserts.Conditions(),
              ElementsAre("nStartTableID >= 0 && nStartTableID <= "
                          "m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber()",
                          "nTableID >= 1 && nTableID <= nNumberOfTables"));
}

TEST_F(LoadDeal, ATableOutsideIsReported) {
  HaveTables(2);
  EXPECT_THAT(Dealt(0, 1)->Tables(), ElementsAre("LK_REP_TABLE0", "LK_REP_TABLE1", "LK_REP_TABLE2"));
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("nTableID >= 1 && nTableID <= nNumberOfTables"));
}

TEST_F(LoadDeal, DealingAgainStartsFromNothing) {
  HaveTables(2);
  const auto pUser = Dealt(1, 1);
  EXPECT_EQ(pUser->InitializeTables(), 2);
  EXPECT_THAT(pUser->Tables(), ElementsAre("LK_REP_TABLE1", "LK_REP_TABLE2"));
}

TEST_F(LoadDeal, WithNoTableToDealPreBenchmarkIsReportedAndFails) {
  HaveTables(2);
  m_properties.SetIntAttribute3(2);
  const auto pUser = User(1, 1);
  EXPECT_EQ(pUser->PreBenchmark(), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("nNumberOfTable >= 1"));
  EXPECT_THAT(pUser->Tables(), IsEmpty());
}

TEST_F(LoadDeal, ALoadKnowsItsIdentity) {
  const CXact_LoadTable_ORA8 load;
  EXPECT_EQ(load.GetName(), LKString(L"Load Replication tables"));
  EXPECT_EQ(load.GetDescription(), LKString(L"Loading Replication Benchmark tables"));
  EXPECT_EQ(load.GetXactID(), 110);
  EXPECT_EQ(load.GetTransactionType(), LOAD_TABLE);
  EXPECT_FALSE(load.m_bReloadLastBackup);
  EXPECT_TRUE(load.m_TableArray.IsEmpty());
  EXPECT_TRUE(load.m_BackupTableMap.IsEmpty());
}

TEST_F(LoadDeal, ALoadIsCreatedByNameAndNamesTheHostsTransactionAsItsBase) {
  const std::unique_ptr<wxObject> object(wxCreateDynamicObject("CXact_LoadTable_ORA8"));
  ASSERT_NE(dynamic_cast<CXact_LoadTable_ORA8*>(object.get()), nullptr);
  EXPECT_EQ(wxString(object->GetClassInfo()->GetClassName()), "CXact_LoadTable_ORA8");
  EXPECT_EQ(wxString(object->GetClassInfo()->GetBaseClassName1()), "CXact");
}

TEST_F(LoadDeal, TheBaseOfLoadsHasTheClassInformationOfTheHostsTransaction) {
  const CXact_LoadTableBase_ORA8 base;
  EXPECT_EQ(base.GetClassInfo(), wxCLASSINFO(CXact));
  EXPECT_EQ(wxClassInfo::FindClass("CXact_LoadTableBase_ORA8"), nullptr);
}

TEST_F(LoadDeal, FieldsStandInTheirOrderWithThoseThatNobodyUses) {
  const CXact_LoadTable_ORA8 load;
  const std::vector<const void*> fields = {
      &load.m_szSQL,         &load.m_szTableName,       &load.m_nRows,      &load.m_nBytes,
      &load.m_bCreateBackup, &load.m_bReloadLastBackup, &load.m_TableArray, &load.m_BackupTableMap};
  EXPECT_TRUE(std::ranges::is_sorted(fields));
}

TEST_F(LoadDeal, RowsPerCommitIsReadFromTheSettingsAndClamped) {
  CXact_LoadTable_ORA8 load;
  const struct {
    long nSetting;
    int nExpected;
  } kCases[] = {{0, 500}, {-7, 500}, {5000, 1000}, {1001, 1000}, {1000, 1000}, {1, 1}, {250, 250}};
  for (const auto& [nSetting, nExpected] : kCases) {
    SetRowsPerCommit(nSetting);
    EXPECT_EQ(load.GetRowsPerCommit(500, 1000), nExpected) << nSetting;
  }
  LKGetConfig()->WriteProfileString(L"Settings", L"RowsPerCommit", L"many");
  EXPECT_EQ(load.GetRowsPerCommit(500, 1000), 500);
}

}  // namespace

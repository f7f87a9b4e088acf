// SPDX-License-Identifier: Apache-2.0
// The backup operations on a real database: what the tables are afterwards.
#include <gmock/gmock.h>

#include "RealDatabase.h"

namespace {

using real_database::DescribeTable;
using real_database::Execute;
using real_database::Rows;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kColumns[] =
    "ID NUMBER NOT NULL, Column1 NUMBER(8,2) NOT NULL, Column2 VARCHAR2(40), Column3 CHAR(5) NOT NULL, "
    "Column4 DATE, Column5 TIMESTAMP(3), Column6 NUMBER(5), Column7 FLOAT, PRIMARY KEY(ID)";

class RealBackup : public real_database::RealDatabase {
 protected:
  std::string Insert(const std::string& table, int id) {
    return "INSERT INTO " + table + " (ID, Column1, Column3) VALUES (" + std::to_string(id) +
           ", 1.25, 'abc')";
  }
  std::string Ids(const std::string& table) {
    std::string ids;
    for (const auto& row : Rows(m_driver, "SELECT ID FROM " + table + " ORDER BY ID")) ids += row[0] + " ";
    return ids;
  }
  // The key and NOT NULL, as the server enforces them.
  void ExpectConstraints(const std::string& table, int used_id) {
    EXPECT_EQ(Execute(m_driver, Insert(table, used_id)), 1);
    EXPECT_EQ(Execute(m_driver, "INSERT INTO " + table + " (ID, Column3) VALUES (999, 'x')"), 1400);
  }
  int CreateBackup(const wchar_t* table) { return m_driver.CreateBackupTable(table, LKString()); }
};

TEST_F(RealBackup, IsEmptyAndOtherwiseLikeItsTable) {
  Make("LK_REP_TABLE1", kColumns, {Insert("LK_REP_TABLE1", 1), Insert("LK_REP_TABLE1", 2)});
  EXPECT_EQ(m_driver.BackupExists(L"LK_REP_TABLE1"), 0);
  EXPECT_NE(CreateBackup(L"LK_REP_TABLE1"), 0);
  EXPECT_NE(m_driver.BackupExists(L"LK_REP_TABLE1"), 0);
  EXPECT_NE(m_driver.BackupExists(L"lk_rep_table1"), 0);
  EXPECT_EQ(Ids("LK_REP_TABLE1_BAK"), "");
  EXPECT_EQ(DescribeTable(m_driver, "LK_REP_TABLE1_BAK"), DescribeTable(m_driver, "LK_REP_TABLE1"));
  EXPECT_EQ(DescribeTable(m_driver, "LK_REP_TABLE1").size(), 8u);
  EXPECT_EQ(Execute(m_driver, Insert("LK_REP_TABLE1_BAK", 7)), 0);
  ExpectConstraints("LK_REP_TABLE1_BAK", 7);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RealBackup, BecomesATableWithItsRowsTypesAndConstraints) {
  Make("LK_REP_TABLE1", kColumns, {Insert("LK_REP_TABLE1", 99)});
  const auto described = DescribeTable(m_driver, "LK_REP_TABLE1");
  ASSERT_NE(CreateBackup(L"LK_REP_TABLE1"), 0);
  for (int id = 1; id <= 3; ++id) ASSERT_EQ(Execute(m_driver, Insert("LK_REP_TABLE1_BAK", id)), 0);
  EXPECT_NE(m_driver.RestoreFromBackup(L"LK_REP_TABLE1"), 0);
  EXPECT_EQ(Ids("LK_REP_TABLE1"), "1 2 3 ");
  EXPECT_EQ(Ids("LK_REP_TABLE1_BAK"), "1 2 3 ");
  EXPECT_EQ(DescribeTable(m_driver, "LK_REP_TABLE1"), described);
  ExpectConstraints("LK_REP_TABLE1", 2);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RealBackup, IsRestoredAgainAndAgain) {
  Make("T1", kColumns);
  ASSERT_NE(CreateBackup(L"T1"), 0);
  for (int round = 1; round <= 3; ++round) {
    ASSERT_EQ(Execute(m_driver, Insert("T1_BAK", round)), 0);
    EXPECT_NE(m_driver.RestoreFromBackup(L"T1"), 0);
    EXPECT_EQ(Rows(m_driver, "SELECT COUNT(*) FROM T1")[0][0], std::to_string(round));
  }
}

TEST_F(RealBackup, IsRestoredWhenTheTableIsGone) {
  Make("T1", kColumns);
  ASSERT_NE(CreateBackup(L"T1"), 0);
  ASSERT_EQ(Execute(m_driver, "DROP TABLE T1"), 0);
  EXPECT_NE(m_driver.RestoreFromBackup(L"T1"), 0);
  EXPECT_EQ(Ids("T1"), "");
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RealBackup, KeepsTheOrderOfTheColumnsOfAKey) {
  Make("T1", "A NUMBER NOT NULL, B VARCHAR2(10) NOT NULL, C NUMBER NOT NULL, PRIMARY KEY(C, A)");
  ASSERT_NE(CreateBackup(L"T1"), 0);
  ASSERT_NE(m_driver.RestoreFromBackup(L"T1"), 0);
  EXPECT_THAT(
      Rows(m_driver,
           "SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE "
           "= 'P' AND K.TABLE_NAME = 'T1' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = "
           "K.TABLE_NAME ORDER BY C.POSITION"),
      ElementsAre(ElementsAre("C"), ElementsAre("A")));
  EXPECT_EQ(Execute(m_driver, "INSERT INTO T1 VALUES (1, 'x', 1)"), 0);
  EXPECT_EQ(Execute(m_driver, "INSERT INTO T1 VALUES (2, 'x', 1)"), 0);
  EXPECT_EQ(Execute(m_driver, "INSERT INTO T1 VALUES (1, 'y', 1)"), 1);
}

TEST_F(RealBackup, OfATableWithoutAKeyHasNone) {
  Make("T1", "A NUMBER");
  ASSERT_NE(CreateBackup(L"T1"), 0);
  ASSERT_EQ(Execute(m_driver, "INSERT INTO T1_BAK VALUES (1)"), 0);
  ASSERT_EQ(Execute(m_driver, "INSERT INTO T1_BAK VALUES (1)"), 0);
  EXPECT_NE(m_driver.RestoreFromBackup(L"T1"), 0);
  EXPECT_EQ(Rows(m_driver, "SELECT COUNT(*) FROM T1")[0][0], "2");
}

TEST_F(RealBackup, CannotBeCreatedTwiceNorForAMissingTable) {
  Make("T1", kColumns);
  ASSERT_NE(CreateBackup(L"T1"), 0);
  EXPECT_EQ(CreateBackup(L"T1"), 0);
  EXPECT_EQ(m_driver.GetLastErrorCode(), 955);
  EXPECT_NE(m_driver.BackupExists(L"T1"), 0);
  EXPECT_EQ(CreateBackup(L"NO_SUCH_TABLE"), 0);
  EXPECT_EQ(m_driver.GetLastErrorCode(), 942);
  EXPECT_EQ(m_reports.Reports().size(), 2u);
}

TEST_F(RealBackup, ThatIsMissingLeavesTheTableInARestore) {
  Make("T1", kColumns, {Insert("T1", 1)});
  EXPECT_EQ(m_driver.RestoreFromBackup(L"T1"), 0);
  EXPECT_EQ(Ids("T1"), "1 ");
  EXPECT_THAT(m_reports.Reports(), ElementsAre(StartsWith("ERROR -1: Cannot restore table T1")));
}

TEST_F(RealBackup, IsDroppedAndAMissingOneInSilence) {
  Make("T1", kColumns);
  ASSERT_NE(CreateBackup(L"T1"), 0);
  EXPECT_NE(m_driver.DropBackupTable(L"T1"), 0);
  EXPECT_EQ(m_driver.BackupExists(L"T1"), 0);
  EXPECT_NE(m_driver.DropBackupTable(L"T1"), 0);
  EXPECT_EQ(Ids("T1"), "");
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RealBackup, GivesItsNameBackAfterAFailedLoad) {
  Make("T1", kColumns, {Insert("T1", 1)});
  ASSERT_NE(m_driver.RenameToBackup(L"T1"), 0);
  EXPECT_THAT(DescribeTable(m_driver, "T1"), ElementsAre("no table T1"));
  ASSERT_EQ(Execute(m_driver, std::string("CREATE TABLE T1 (") + kColumns + ")"), 0);
  EXPECT_NE(m_driver.PrepareRenameFromBackup(L"T1"), 0);
  EXPECT_NE(m_driver.ChangeTableName(L"T1", 0), 0);
  EXPECT_EQ(Ids("T1"), "1 ");
  ExpectConstraints("T1", 1);
  EXPECT_EQ(m_driver.BackupExists(L"T1"), 0);
  EXPECT_NE(m_driver.ChangeTableName(L"T1", 1), 0);
  EXPECT_NE(m_driver.BackupExists(L"T1"), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

}  // namespace

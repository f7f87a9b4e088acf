// SPDX-License-Identifier: Apache-2.0
// The backup operations: the statements that they run and what they answer.
#include <gmock/gmock.h>

#include "ConnectedDriver.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string ExistsSql(const std::string& table) {
  return "SELECT COUNT(*) FROM USER_TABLES WHERE TABLE_NAME = '" + table + "'";
}

std::string KeySql(const std::string& table) {
  return "SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE = 'P' "
         "AND "
         "K.TABLE_NAME = '" +
         table +
         "' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME ORDER BY C.POSITION";
}

class Backup : public scripted::ConnectedDriver<> {
 protected:
  void SetTables(const std::vector<std::string>& tables) {
    for (const std::string& table : tables) {
      Oci().Answer(ExistsSql(table), {{{"1"}}});
      Oci().Answer(KeySql(table), {{{"ID"}}});
    }
  }
  ~Backup() override {
    EXPECT_LE(ExtraHandles(), 0);
    EXPECT_THAT(Oci().Violations(), IsEmpty());
    EXPECT_FALSE(m_driver.IsIgnoredError(942));
  }
};

TEST_F(Backup, ExistsWhenTheDictionaryKnowsIt) {
  SetTables({"LK_REP_TABLE1_BAK"});
  EXPECT_NE(m_driver.BackupExists(L"LK_REP_TABLE1"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(ExistsSql("LK_REP_TABLE1_BAK")));
}

TEST_F(Backup, IsLookedUpInCapitals) {
  SetTables({"LK_REP_TABLE1_BAK"});
  EXPECT_NE(m_driver.BackupExists(L"lk_rep_table1"), 0);
}

TEST_F(Backup, ThatIsMissingIsNoErrorToTheLookUp) {
  Oci().Answer(ExistsSql("T_BAK"), {{{"0"}}});
  EXPECT_EQ(m_driver.BackupExists(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Backup, LookUpThatFailsIsReportedAndAnswersNo) {
  Oci().FailSql("SELECT", 1, OraFault(1031, "insufficient privileges"));
  EXPECT_EQ(m_driver.BackupExists(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(StartsWith("ERROR 1031: ")));
}

TEST_F(Backup, IsDroppedByItsName) {
  EXPECT_NE(m_driver.DropBackupTable(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP TABLE T_BAK"));
  EXPECT_THAT(Oci().Executions(), Each(Field(&scripted::Execution::mode, OCI_COMMIT_ON_SUCCESS)));
}

TEST_F(Backup, ThatIsMissingIsDroppedInSilence) {
  Oci().FailSql("DROP TABLE", 1, OraFault(942));
  EXPECT_NE(m_driver.DropBackupTable(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 0);
}

TEST_F(Backup, ThatCannotBeDroppedIsReported) {
  Oci().FailSql("DROP TABLE", 1, OraFault(54, "resource busy"));
  EXPECT_EQ(m_driver.DropBackupTable(L"T"), 0);
  EXPECT_THAT(
      m_reports.Reports(),
      ElementsAre("ERROR 54: Cannot run: DROP TABLE T_BAK (execute failed)\nORA-00054: resource busy"));
}

TEST_F(Backup, DropDoesNotTakeAnEarlierMissingTableForItsOwn) {
  Oci().FailSql("ALTER TABLE", 1, OraFault(942));
  m_driver.ChangeTableName(L"T", 0);
  ASSERT_EQ(m_driver.GetLastErrorCode(), 942);
  m_driver.Disconnect();
  EXPECT_EQ(m_driver.DropBackupTable(L"T"), 0);
}

TEST_F(Backup, DropDoesNotTakeAnEarlierRecordForThatOfAFailedAllocation) {
  Oci().FailSql("DROP TABLE", 1, OraFault(942));
  ASSERT_NE(m_driver.DropBackupTable(L"T"), 0);
  Oci().FailCall("OCIHandleAlloc", 1, scripted::Fault{OCI_ERROR});
  EXPECT_EQ(m_driver.DropBackupTable(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR -1: Cannot run: DROP TABLE T_BAK (allocate a handle failed)\n"
                          "The Oracle client returned status -1 and left no error record."));
}

TEST_F(Backup, DropKeepsACallersOwnIgnoredNumber) {
  m_driver.AddIgnoreError(942);
  Oci().FailSql("DROP TABLE", 1, OraFault(942));
  m_driver.DropBackupTable(L"T");
  EXPECT_TRUE(m_driver.IsIgnoredError(942));
  m_driver.RemoveIgnoreError(942);
}

TEST_F(Backup, IsCreatedEmptyWithTheKeyOfItsTable) {
  SetTables({"LK_REP_TABLE1"});
  EXPECT_NE(m_driver.CreateBackupTable(L"LK_REP_TABLE1", LKString()), 0);
  EXPECT_THAT(Oci().ExecutedSql(),
              ElementsAre(KeySql("LK_REP_TABLE1"),
                          "CREATE TABLE LK_REP_TABLE1_BAK AS SELECT * FROM LK_REP_TABLE1 WHERE 1=0",
                          "ALTER TABLE LK_REP_TABLE1_BAK ADD PRIMARY KEY (\"ID\")"));
}

TEST_F(Backup, IsCreatedWithTheOptionsBehindItsName) {
  EXPECT_NE(m_driver.CreateBackupTable(L"T", L"TABLESPACE USERS"), 0);
  EXPECT_THAT(Oci().ExecutedSql(),
              ElementsAre(KeySql("T"), "CREATE TABLE T_BAK TABLESPACE USERS AS SELECT * FROM T WHERE 1=0"));
}

TEST_F(Backup, HasTheColumnsOfAKeyInTheirOrder) {
  Oci().Answer(KeySql("T"), {{{"B"}, {"A"}}});
  EXPECT_NE(m_driver.CreateBackupTable(L"T", LKString()), 0);
  EXPECT_EQ(Oci().ExecutedSql().back(), "ALTER TABLE T_BAK ADD PRIMARY KEY (\"B\", \"A\")");
}

TEST_F(Backup, OfATableWithoutAKeyHasNone) {
  EXPECT_NE(m_driver.CreateBackupTable(L"T", LKString()), 0);
  EXPECT_EQ(Oci().ExecutedSql().size(), 2u);
}

TEST_F(Backup, ThatCannotBeCreatedIsReported) {
  SetTables({"T"});
  Oci().FailSql("CREATE TABLE", 1, OraFault(955, "name is already used by an existing object"));
  EXPECT_EQ(m_driver.CreateBackupTable(L"T", LKString()), 0);
  EXPECT_EQ(Oci().ExecutedSql().size(), 2u);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(StartsWith("ERROR 955: Cannot run: CREATE TABLE T_BAK")));
}

TEST_F(Backup, ThatCannotBeGivenItsKeyIsNotLeftBehind) {
  SetTables({"T"});
  Oci().FailSql("ALTER TABLE", 1, OraFault(1652, "unable to extend"));
  EXPECT_EQ(m_driver.CreateBackupTable(L"T", LKString()), 0);
  EXPECT_EQ(Oci().ExecutedSql().back(), "DROP TABLE T_BAK");
  EXPECT_EQ(m_driver.GetLastErrorCode(), 1652);
  EXPECT_EQ(m_reports.Reports().size(), 1u);
}

TEST_F(Backup, IsNotCreatedWhenTheKeyCannotBeRead) {
  Oci().FailSql("SELECT C.COLUMN_NAME", 1, OraFault(1013));
  EXPECT_EQ(m_driver.CreateBackupTable(L"T", LKString()), 0);
  EXPECT_EQ(Oci().ExecutedSql().size(), 1u);
}

TEST_F(Backup, BecomesTheTableAnewWithRowsAndKey) {
  SetTables({"T_BAK"});
  EXPECT_NE(m_driver.RestoreFromBackup(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(),
              ElementsAre(ExistsSql("T_BAK"), "DROP TABLE T", KeySql("T_BAK"),
                          "CREATE TABLE T AS SELECT * FROM T_BAK", "ALTER TABLE T ADD PRIMARY KEY (\"ID\")"));
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Backup, IsRestoredAlsoWhenTheTableIsMissing) {
  SetTables({"T_BAK"});
  Oci().FailSql("DROP TABLE T", 1, OraFault(942));
  EXPECT_NE(m_driver.RestoreFromBackup(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Backup, ThatIsMissingLeavesTheTableInARestore) {
  Oci().Answer(ExistsSql("T_BAK"), {{{"0"}}});
  EXPECT_EQ(m_driver.RestoreFromBackup(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(ExistsSql("T_BAK")));
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR -1: Cannot restore table T: it has no backup T_BAK."));
}

TEST_F(Backup, RestoreIsReportedOnceWhicheverStatementFails) {
  for (int nth = 1; nth <= 5; ++nth) {
    Oci().ClearCalls();
    m_reports.Clear();
    SetTables({"T_BAK"});
    Oci().FailSql("", nth, OraFault(54));
    EXPECT_EQ(m_driver.RestoreFromBackup(L"T"), 0) << "statement " << nth;
    EXPECT_EQ(m_reports.Reports().size(), 1u) << "statement " << nth;
    EXPECT_EQ(ExtraHandles(), 0) << "statement " << nth;
  }
}

TEST_F(Backup, IsMadeReadyForARenameByDroppingTheTable) {
  EXPECT_NE(m_driver.PrepareRenameFromBackup(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP TABLE T"));
  Oci().FailSql("DROP TABLE", 1, OraFault(942));
  EXPECT_NE(m_driver.PrepareRenameFromBackup(L"T"), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Backup, TakesTheNameOfTheTableAndGivesItBack) {
  EXPECT_NE(m_driver.ChangeTableName(L"T", 0), 0);
  EXPECT_NE(m_driver.ChangeTableName(L"T", 1), 0);
  EXPECT_THAT(Oci().ExecutedSql(),
              ElementsAre("ALTER TABLE T_BAK RENAME TO T", "ALTER TABLE T RENAME TO T_BAK"));
}

TEST_F(Backup, RenameThatFailsIsReported) {
  Oci().FailSql("ALTER TABLE", 1, OraFault(942, "table or view does not exist"));
  EXPECT_EQ(m_driver.ChangeTableName(L"T", 0), 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(StartsWith("ERROR 942: ")));
}

TEST_F(Backup, IsReplacedByTheTableInARenameToIt) {
  EXPECT_NE(m_driver.RenameToBackup(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP TABLE T_BAK", "ALTER TABLE T RENAME TO T_BAK"));
  Oci().FailSql("DROP TABLE", 1, OraFault(54));
  Oci().ClearCalls();
  EXPECT_EQ(m_driver.RenameToBackup(L"T"), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP TABLE T_BAK"));
}

TEST_F(Backup, OperationsLeaveThePreparedStatementOfTheCallerAlone) {
  ASSERT_EQ(m_driver.PrepareStatement(L"DELETE FROM T", 0), 1);
  m_driver.DropBackupTable(L"T");
  m_driver.BackupExists(L"T");
  EXPECT_EQ(m_driver.ExecuteStatement(0), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), "DELETE FROM T");
  m_driver.CloseStatement();
}

TEST_F(Backup, OperationsRefuseWhatIsNoPlainTableName) {
  for (const wchar_t* name : {L"", L"1T", L"T; DROP TABLE X", L"S.T", L"T'", L"\"T\"", L"_T"}) {
    m_reports.Clear();
    EXPECT_EQ(m_driver.BackupExists(name), 0);
    EXPECT_EQ(m_driver.DropBackupTable(name), 0);
    EXPECT_EQ(m_driver.CreateBackupTable(name, LKString()), 0);
    EXPECT_EQ(m_driver.RestoreFromBackup(name), 0);
    EXPECT_EQ(m_driver.PrepareRenameFromBackup(name), 0);
    EXPECT_EQ(m_driver.RenameToBackup(name), 0);
    EXPECT_EQ(m_driver.ChangeTableName(name, 0), 0);
    EXPECT_THAT(m_reports.Reports(),
                Each(AllOf(StartsWith("ERROR -1: Not a table name: \""), HasSubstr("Letters, digits"))));
    EXPECT_EQ(m_reports.Reports().size(), 7u);
  }
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// What the refresh of the tables deletes and tells, and whose tables it takes.
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "ForeignDriver.h"
#include "SchemaFixture.h"

namespace {

using scripted::Oci;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Message(const std::string& percent) {
  return "INFO 0: Refresh Table LK_REP_TABLE1 (" + percent + "%) was completed.";
}

std::string DeleteSql(const std::string& table, const std::string& keep) {
  return "DELETE FROM " + table + " WHERE ID IN (SELECT ID FROM " + table + " WHERE ID > " + keep +
         " AND ROWNUM <=5000)";
}

class RefreshTable : public plugin_test::SchemaTest {
 protected:
  RefreshTable() {
    SetTables(1);
    SetScales(1, 1);
  }

  void SetScales(double fCurrent, double fLoaded) {
    m_properties.SetCurrentScale(fCurrent);
    m_properties.SetLoadedMaxScale(fLoaded);
  }
  int Prepare1(int nUser = 1, int nUsers = 1) {
    Bind(m_xact);
    m_xact.SetUserID(nUser);
    m_xact.SetTotalUsers(nUsers);
    return m_xact.PreBenchmark();
  }
  int Run() {
    EXPECT_EQ(Prepare1(), 1);
    return m_xact.Execute();
  }
  std::vector<std::string> Tables() const {
    std::vector<std::string> names;
    for (const LKString& name : m_xact.m_TableArray) names.push_back(name.ToChar());
    return names;
  }
  std::vector<std::string> Messages() const { return m_reports.Reports(); }

  CREP_RefreshTable_ORA8 m_xact;
};

TEST_F(RefreshTable, OnlyACountOfZeroTruncates) {
  SetScales(-0.5, 1);
  Oci().RowCounts("DELETE", {0});
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(DeleteSql("LK_REP_TABLE1", "-500")));
}

TEST_F(RefreshTable, AFullLastBatchNeedsOneMoreThatDeletesNothing) {
  SetScales(1, 11);
  Oci().RowCounts("DELETE", {5000, 5000, 0});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().Executions().size(), 3u);
  EXPECT_THAT(Messages(), ElementsAre(Message("50.00"), Message("100.00"), Message("100.00")));
}

TEST_F(RefreshTable, NoSurplusRowsGiveOneDeleteAndOneMessage) {
  SetScales(1, 2);
  Oci().RowCounts("DELETE", {0});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().Executions().size(), 1u);
  EXPECT_THAT(Messages(), ElementsAre(Message("0.00")));
}

TEST_F(RefreshTable, MoreRowsThanExpectedShowAHundredPercent) {
  SetScales(1, 2);
  Oci().RowCounts("DELETE", {5000, 4999});
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Messages(), ElementsAre(Message("100.00"), Message("100.00")));
}

TEST_F(RefreshTable, DeletedRowsOfATableThatShouldHaveNoneShowAHundredPercent) {
  Oci().RowCounts("DELETE", {12});
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Messages(), ElementsAre(Message("100.00")));
}

TEST_F(RefreshTable, NothingDeletedOfATableThatShouldHaveNoneShowsNotANumber) {
  Oci().RowCounts("DELETE", {0});
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Messages(), ElementsAre(AnyOf(Message("-nan"), Message("nan"))));
}

TEST_F(RefreshTable, TheCountsAreTheScalesTruncated) {
  SetScales(1.9999, 2.0007);
  Bind(m_xact);
  __int64 iStartRows = 0;
  __int64 iTotalRows = 0;
  EXPECT_EQ(m_xact.GetRowInfo(iStartRows, iTotalRows), 1);
  EXPECT_EQ(iStartRows, 1999);
  EXPECT_EQ(iTotalRows, 2000);
}

TEST_F(RefreshTable, ACancelDoesNotStopATruncate) {
  SetScales(0, 1);
  m_xact.RequestCancel();
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("TRUNCATE TABLE LK_REP_TABLE1"));
}

TEST_F(RefreshTable, ACancelledDeleteIsASuccessThatDeletedNothing) {
  SetScales(1, 2);
  EXPECT_EQ(Prepare1(), 1);
  m_xact.RequestCancel();
  EXPECT_EQ(m_xact.CREP_Refresh_Base::Execute(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), IsEmpty());
}

TEST_F(RefreshTable, ADriverOfAnotherKindIsAFailure) {
  scripted::ForeignDriver foreign;
  SetScales(1, 2);
  EXPECT_EQ(Prepare1(), 1);
  m_xact.SetDriver(&foreign);
  EXPECT_EQ(m_xact.CREP_Refresh_Base::Execute(), 0);
}

TEST_F(RefreshTable, TablesAreDealtRoundRobin) {
  SetTables(7);
  EXPECT_EQ(Prepare1(1, 3), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE1", "LK_REP_TABLE4", "LK_REP_TABLE7"));
  EXPECT_EQ(Prepare1(2, 3), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE2", "LK_REP_TABLE5"));
  EXPECT_EQ(Prepare1(3, 3), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE3", "LK_REP_TABLE6"));
  EXPECT_THAT(m_asserts.Texts(), IsEmpty());
}

TEST_F(RefreshTable, AUserAboveTheNumberOfTablesIsReportedAndNamesItsTableAllTheSame) {
  SetTables(2);
  EXPECT_EQ(Prepare1(5, 3), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE5"));
  EXPECT_THAT(m_asserts.Texts(),
              ElementsAre("Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.cpp:64 PreBenchmark: "
                          "nTableID >= 1 && nTableID <= nNumberOfTables"));
}

TEST_F(RefreshTable, AUserZeroIsReportedForItsFirstTableOnly) {
  SetTables(3);
  EXPECT_EQ(Prepare1(0, 2), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE0", "LK_REP_TABLE2"));
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("nTableID >= 1 && nTableID <= nNumberOfTables"));
}

TEST_F(RefreshTable, InBackupModeOnlyBackupCopiesAreRefreshedAndTablesWithoutOneSkipped) {
  SetTables(3);
  m_properties.SetCreateUseBackup(true);
  m_properties.SetIntAttribute2(1);
  m_driver.m_backups = {"LK_REP_TABLE1", "LK_REP_TABLE3"};
  EXPECT_EQ(Prepare1(), 1);
  EXPECT_THAT(m_driver.m_operations, ElementsAre("BackupExists(LK_REP_TABLE1)", "BackupExists(LK_REP_TABLE2)",
                                                 "BackupExists(LK_REP_TABLE3)"));
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE1_BAK", "LK_REP_TABLE3_BAK"));
}

TEST_F(RefreshTable, BackupModeNeedsBothTheSettingAndAPositiveSelector) {
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetCreateUseBackup(true);
  EXPECT_EQ(Prepare1(), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE1"));
  m_properties.SetCreateUseBackup(false);
  m_properties.SetIntAttribute2(1);
  EXPECT_EQ(Prepare1(), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE1"));
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(RefreshTable, ANegativeSelectorTakesTheTablesThemselves) {
  m_driver.m_backups = {"LK_REP_TABLE1"};
  m_properties.SetCreateUseBackup(true);
  m_properties.SetIntAttribute2(-1);
  EXPECT_EQ(Prepare1(), 1);
  EXPECT_THAT(Tables(), ElementsAre("LK_REP_TABLE1"));
  EXPECT_THAT(m_driver.m_operations, IsEmpty());
}

TEST_F(RefreshTable, TheTextAndTheTableOfTheLastStepStay) {
  SetTables(2);
  SetScales(0, 1);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(m_xact.m_strSQL.ToChar(), "TRUNCATE TABLE LK_REP_TABLE2");
  EXPECT_EQ(m_xact.m_strTableName.ToChar(), "LK_REP_TABLE2");
  SetTables(1);
  SetScales(1, 1);
  Oci().RowCounts("DELETE", {0});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(m_xact.m_strSQL.ToChar(), DeleteSql("LK_REP_TABLE1", "1000"));
  EXPECT_EQ(m_xact.m_strTableName.ToChar(), "LK_REP_TABLE1");
}

TEST_F(RefreshTable, TheDestructorDoesNotFreeTheHandle) {
  {
    CREP_RefreshTable_ORA8 xact;
    Bind(xact);
    EXPECT_EQ(xact.CREP_Refresh_Base::Execute("COMMENT"), 1);
  }
  EXPECT_EQ(ExtraHandles(), 1);
}

class RefreshStatement : public plugin_test::SchemaTest {
 protected:
  RefreshStatement() { Bind(m_xact); }
  CREP_Refresh_Base m_xact;
};

TEST_F(RefreshStatement, ReturnsTheRowCountAndKeepsTheHandle) {
  Oci().RowCounts("UPDATE", {3, 0});
  EXPECT_EQ(m_xact.Execute("UPDATE T"), 3);
  EXPECT_EQ(m_xact.Execute("UPDATE T"), 0);
  EXPECT_EQ(Oci().CountCalls("OCIHandleAlloc"), 1);
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(RefreshStatement, ReturnsTheRowCountOfAllBitsAsMinus1WithoutAReport) {
  Oci().RowCounts("UPDATE", {4294967295U});
  EXPECT_EQ(m_xact.Execute("UPDATE T"), -1);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(RefreshStatement, TheBaseKeepsNothingAndHasNoName) {
  m_xact.m_strTableName = L"T";
  __int64 iStartRows = 11;
  __int64 iTotalRows = 12;
  EXPECT_EQ(m_xact.GetRowInfo(iStartRows, iTotalRows), 0);
  EXPECT_EQ(iStartRows, 11);
  EXPECT_EQ(iTotalRows, 12);
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("TRUNCATE TABLE T"));
  EXPECT_TRUE(m_xact.GetName().IsEmpty());
}

// Another of the family, which knows how many rows to keep and not how many there were.
class KeepTenRows : public CREP_Refresh_Base {
 public:
  int GetRowInfo(__int64& iStartRows, __int64& /*iTotalRows*/) override {
    iStartRows = 10;
    return 0;
  }
};

TEST_F(RefreshStatement, TheBaseDeletesAlsoWhenTheCountsAreSaidToHaveFailed) {
  KeepTenRows xact;
  Bind(xact);
  xact.m_strTableName = L"LK_REP_TABLE1";
  Oci().RowCounts("DELETE", {5000, 5});
  EXPECT_EQ(xact.Execute(), 1);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(Message("-50000.00"), Message("-50050.00")));
  xact.PostBenchmark();
}

class RefreshSequence : public plugin_test::SchemaTest {
 protected:
  CREP_Refresh_Sequence m_xact;
};

TEST_F(RefreshSequence, TheHandleIsKeptForTheNextRunAndFreedAtTheEnd) {
  Bind(m_xact);
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_EQ(m_xact.Execute(), 1);
  EXPECT_EQ(ExtraHandles(), 1);
  EXPECT_EQ(m_xact.PostBenchmark(), 1);
  EXPECT_EQ(ExtraHandles(), 0);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// The journals of the refresh transactions. All of them run their statements the same way, so that the paths
// of one statement hold for each; none of them touches the timer.
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "ForeignDriver.h"
#include "SchemaCalls.h"

namespace plugin_test {
namespace {

using scripted::kHighStatus;
using scripted::kLowBitsZero;
using scripted::Oci;
using scripted::OraFault;
using scripted::StatusFault;
using testing::ElementsAre;
using testing::ElementsAreArray;

// kept: 4, the size itself, where OCI expects a pointer to it.
const std::string kRowCount = "OCIAttrGet(stmt#1, 4, 4, 9, err#1)";

// Every path of one statement that succeeds with these events behind its row count. The handle stays.
std::vector<Path> StatementPaths(const std::string& prepare, const Events& afterSuccess) {
  const Events run = {kAlloc, prepare, kExecuteAndCommit, kRowCount};
  Events success = run;
  success.insert(success.end(), afterSuccess.begin(), afterSuccess.end());
  const auto failing = [&run](int calls, const Events& reports) {
    Events events(run.begin(), run.begin() + calls);
    events.insert(events.end(), reports.begin(), reports.end());
    events.push_back(kFails);
    return events;
  };
  return {
      {"EverythingSucceeds", NoFault(), success, 1},
      {"NoHandle", Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
       failing(1, {Report(kLow), kReportedStatus})},
      {"ThePrepareFails", Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
       failing(2, {Report(kLow), kReportedStatus}), 1},
      {"TheExecuteFails", Fail("OCIStmtExecute", 1, StatusFault(kHighStatus)),
       failing(3, {Report(kLow), kReportedStatus}), 1},
      {"AnObjectIsMissing", Fail("OCIStmtExecute", 1, OraFault(942)),
       failing(3, {Report(kLowError), Reported(942)}), 1},
      {"TheRowCountFails", Fail("OCIAttrGet", 1, StatusFault(kHighStatus)),
       failing(4, {Report(kWhole), kReportedStatus}), 1},
      {"InformationIsAFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(OCI_SUCCESS_WITH_INFO)),
       failing(2, {Report(1), kReportedStatus}), 1},
      {"InformationIsNoFailureOfTheExecute", Fail("OCIStmtExecute", 1, Working(OCI_SUCCESS_WITH_INFO)),
       success, 1},
      {"InformationIsNoFailureOfTheRowCount", Fail("OCIAttrGet", 1, Working(OCI_SUCCESS_WITH_INFO)), success,
       1},
      {"HighBitsAloneAreNoFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(kLowBitsZero)), success, 1},
      // kept: these two compare the whole status, so that high bits alone fail, with nothing to report.
      {"HighBitsAloneFailTheExecute", Fail("OCIStmtExecute", 1, Working(kLowBitsZero)),
       failing(3, {Report(0)}), 1},
      {"HighBitsAloneFailTheRowCount", Fail("OCIAttrGet", 1, Working(kLowBitsZero)),
       failing(4, {Report(kLowBitsZero)}), 1},
  };
}

class RefreshPropertiesCalls : public Calls<CREP_Refresh_Properties_Table> {
 protected:
  RefreshPropertiesCalls() {
    SetTables(4);
    m_properties.SetScale(2.9);
  }
};
class RefreshPropertiesPath : public EachPath<RefreshPropertiesCalls> {};
TEST_P(RefreshPropertiesPath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(
    , RefreshPropertiesPath,
    testing::ValuesIn(StatementPaths(
        Prepare("BEGIN UPDATE LK_REP_PROPERTIES SET PROP_VALUE = '4' WHERE PROP_NAME = 'Number Of Tables';  "
                "UPDATE LK_REP_PROPERTIES SET PROP_VALUE = '2' WHERE PROP_NAME = 'Scale'; END;"),
        {kSucceeds})),
    NameOfPath);

class RefreshSequenceCalls : public Calls<CREP_Refresh_Sequence> {
 protected:
  RefreshSequenceCalls() {
    m_properties.SetScale(1.9999);
    m_benchmark.SetBenchmarkScale(7);  // kept: not asked
  }
};
class RefreshSequencePath : public EachPath<RefreshSequenceCalls> {};
TEST_P(RefreshSequencePath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(
    , RefreshSequencePath,
    testing::ValuesIn(StatementPaths(
        Prepare("DECLARE v_count number; BEGIN SELECT COUNT(*) INTO v_count FROM USER_SEQUENCES WHERE "
                "SEQUENCE_NAME = 'LK_REP_ID_SEQ';  IF v_count > 0 THEN \t\tEXECUTE IMMEDIATE 'DROP SEQUENCE "
                "LK_REP_ID_SEQ';  END IF;  EXECUTE IMMEDIATE 'CREATE SEQUENCE LK_REP_ID_SEQ START WITH 2000 "
                "CACHE 100'; END;"),
        {kSucceeds})),
    NameOfPath);

class RefreshTablesCalls : public Calls<CREP_RefreshTable_ORA8> {
 protected:
  RefreshTablesCalls() {
    SetTables(1);
    KeepAndExpect(1, 13.345);
    m_xact.SetUserID(1);
  }

  void KeepAndExpect(double fCurrent, double fLoaded) {
    m_properties.SetCurrentScale(fCurrent);
    m_properties.SetLoadedMaxScale(fLoaded);
  }
  Events Run() {
    Bind(m_xact);
    EXPECT_EQ(m_xact.PreBenchmark(), 1);
    return m_journal.Run([&] { return m_xact.Execute(); });
  }
  Events ListTables(int nUser, int nUsers) {
    Bind(m_xact);
    m_xact.SetUserID(nUser);
    m_xact.SetTotalUsers(nUsers);
    return m_journal.Run([&] { return m_xact.PreBenchmark(); });
  }
};

std::string Delete(int nTable) {
  const std::string table = "LK_REP_TABLE" + std::to_string(nTable);
  return Prepare("DELETE FROM " + table + " WHERE ID IN (SELECT ID FROM " + table +
                 " WHERE ID > 1000 AND ROWNUM <=5000)");
}
std::string Progress(const std::string& percent, int nTable = 1) {
  return "HandleInfoMsg(\"Refresh Table LK_REP_TABLE" + std::to_string(nTable) + " (" + percent +
         "%) was completed.\")";
}

class RefreshTablesByDelete : public EachPath<RefreshTablesCalls> {
 protected:
  RefreshTablesByDelete() { Oci().RowCounts("DELETE", {2469}); }
};
TEST_P(RefreshTablesByDelete, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, RefreshTablesByDelete,
                         testing::ValuesIn(StatementPaths(Delete(1), {Progress("20.00"), kSucceeds})),
                         NameOfPath);

class RefreshTablesByTruncate : public EachPath<RefreshTablesCalls> {
 protected:
  RefreshTablesByTruncate() { KeepAndExpect(0, 3); }
};
TEST_P(RefreshTablesByTruncate, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, RefreshTablesByTruncate,
                         testing::ValuesIn(StatementPaths(Prepare("TRUNCATE TABLE LK_REP_TABLE1"),
                                                          {kSucceeds})),
                         NameOfPath);

TEST_F(RefreshTablesCalls, PrepareEveryBatchAnewOnOneHandle) {
  Oci().RowCounts("DELETE", {5000, 5000, 2345});
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("40.50"),
                                 Delete(1), kExecuteAndCommit, kRowCount, Progress("81.00"), Delete(1),
                                 kExecuteAndCommit, kRowCount, Progress("100.00"), kSucceeds));
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(RefreshTablesCalls, AfterAFullLastBatchDeleteOnceMore) {
  KeepAndExpect(1, 6);
  Oci().RowCounts("DELETE", {5000, 0});
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("100.00"),
                                 Delete(1), kExecuteAndCommit, kRowCount, Progress("100.00"), kSucceeds));
}

TEST_F(RefreshTablesCalls, KeepTheHandleForTheNextTable) {
  SetTables(2);
  KeepAndExpect(1, 2);
  Oci().RowCounts("DELETE", {0, 0});
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("0.00"), Delete(2),
                                 kExecuteAndCommit, kRowCount, Progress("0.00", 2), kSucceeds));
}

TEST_F(RefreshTablesCalls, EndAtTheTableThatFails) {
  SetTables(3);
  KeepAndExpect(1, 2);
  Oci().RowCounts("DELETE", {0, 0, 0});
  Oci().FailSql("DELETE FROM LK_REP_TABLE2", 1, OraFault(942));
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("0.00"), Delete(2),
                                 kExecuteAndCommit, Report(kLowError), Reported(942), kFails));
}

TEST_F(RefreshTablesCalls, EndAtTheBatchThatFails) {
  Oci().RowCounts("DELETE", {5000, 5000});
  Oci().FailCall("OCIStmtExecute", 2, StatusFault(kHighStatus));
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("40.50"),
                                 Delete(1), kExecuteAndCommit, Report(kLow), kReportedStatus, kFails));
}

TEST_F(RefreshTablesCalls, WithoutAHandleAskForOneAgainInTheNextRun) {
  Oci().RowCounts("DELETE", {0});
  Oci().FailCall("OCIHandleAlloc", 1, StatusFault(kHighStatus));
  EXPECT_THAT(Run(), ElementsAre(kAlloc, Report(kLow), kReportedStatus, kFails));
  EXPECT_THAT(Run(),
              ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("0.00"), kSucceeds));
}

TEST_F(RefreshTablesCalls, AfterACancelAreNone) {
  m_xact.RequestCancel();
  EXPECT_THAT(Run(), ElementsAre(kSucceeds));
}

TEST_F(RefreshTablesCalls, AfterACancelBetweenTwoBatchesEndWithTheFirst) {
  Oci().RowCounts("DELETE", {5000, 5000});
  Oci().After("OCIStmtExecute", 1, [this] { m_xact.RequestCancel(); });
  EXPECT_THAT(Run(),
              ElementsAre(kAlloc, Delete(1), kExecuteAndCommit, kRowCount, Progress("40.50"), kSucceeds));
}

TEST_F(RefreshTablesCalls, OfAnEmptyListAreNone) {
  Bind(m_xact);
  EXPECT_THAT(m_journal.Run([&] { return m_xact.Execute(); }), ElementsAre(kSucceeds));
}

TEST_F(RefreshTablesCalls, ListTheTablesWithoutAskingTheDatabase) {
  SetTables(7);
  EXPECT_THAT(ListTables(2, 3), ElementsAre(kSucceeds));
}

TEST_F(RefreshTablesCalls, InBackupModeAskForEveryBackupByTheTablesName) {
  SetTables(7);
  m_properties.SetCreateUseBackup(true);
  m_properties.SetIntAttribute2(1);
  m_driver.m_backups = {"LK_REP_TABLE5"};
  EXPECT_THAT(ListTables(2, 3),
              ElementsAre("BackupExists(LK_REP_TABLE2)", "BackupExists(LK_REP_TABLE5)", kSucceeds));
}

TEST_F(RefreshTablesCalls, OfAUserWithoutATableAssertAndGoOn) {
  SetTables(2);
  EXPECT_THAT(ListTables(5, 3), ElementsAre("assert Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.cpp:64 "
                                            "PreBenchmark: nTableID >= 1 && nTableID <= nNumberOfTables",
                                            kSucceeds));
}

TEST_F(RefreshTablesCalls, WithoutAnOracleDriverAreNone) {
  Run();
  scripted::ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.SetDriver(pDriver);
    EXPECT_THAT(m_journal.Run([&] { return m_xact.PreBenchmark(); }), ElementsAre(kFails));
    EXPECT_THAT(m_journal.Run([&] { return m_xact.Execute(); }), ElementsAre(kFails));
  }
}

// kept: the pointer is not set back to null, and the host's own operation is not called.
TEST_F(RefreshTablesCalls, AtTheEndFreeTheHandleEveryTime) {
  const auto end = [&] { return m_xact.PostBenchmark(); };
  EXPECT_THAT(m_journal.Run(end), ElementsAre(kSucceeds));
  Run();
  EXPECT_THAT(m_journal.Run(end), ElementsAre(kFree, kSucceeds));
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_THAT(m_journal.Run(end), ElementsAre(kFree, kSucceeds));
}

TEST_F(RefreshTablesCalls, AtTheEndDoNotLookAtAFailedFree) {
  Run();
  Oci().FailCall("OCIHandleFree", 1, StatusFault(kHighStatus));
  EXPECT_THAT(m_journal.Run([&] { return m_xact.PostBenchmark(); }), ElementsAre(kFree, kSucceeds));
}

}  // namespace
}  // namespace plugin_test

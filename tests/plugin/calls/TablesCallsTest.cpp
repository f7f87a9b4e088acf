// SPDX-License-Identifier: Apache-2.0
// The journals of the transactions that create and drop the replication tables.
#include <stdexcept>

#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "HostTaps.h"
#include "SchemaCalls.h"

namespace plugin_test {
namespace {

using scripted::kHighStatus;
using scripted::kLowBitsZero;
using scripted::Oci;
using scripted::OraFault;
using scripted::StatusFault;
using testing::ElementsAre;

const std::string kPrepareTable1 = Prepare(
    "CREATE TABLE LK_REP_TABLE1 (ID NUMBER NOT NULL,Column1 NUMBER NOT NULL,Column2 NUMBER NOT NULL, PRIMARY "
    "KEY(ID))");
const std::string kPrepareTable2 = Prepare(
    "CREATE TABLE LK_REP_TABLE2 (ID NUMBER NOT NULL,Column1 NUMBER NOT NULL,Column2 NUMBER NOT NULL, PRIMARY "
    "KEY(ID))");

// Two tables of two columns, with counters that an earlier run left.
class CreateTablesCalls : public Calls<CXact_Create_RepTables> {
 protected:
  CreateTablesCalls() {
    SetTables(2);
    SetColumnNumbers(2, 2);
    SetColumns({Column(L"NUMBER", 1, false)});
    m_xact.m_nRows = 7;
    m_xact.m_nBytes = 8;
  }
};

const Events kBothTables = {
    kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kPrepareTable2, kExecuteAndCommit,
    kEnd,   kFree,  kSucceeds};

const std::vector<Path> kCreatePaths = {
    {"EverythingSucceeds", NoFault(), kBothTables},
    {"NoHandle",
     Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
     {kAlloc, "SetEndTime(7, 8)", Report(kLow), kReportedStatus, kFails}},
    {"NoHandleForAnOracleReason",
     Fail("OCIHandleAlloc", 1, OraFault(4031)),
     {kAlloc, "SetEndTime(7, 8)", Report(kLowError), kReportedStatus, kFails}},
    {"FirstPrepareFails",
     Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable1, kEnd, Report(kLow), kReportedStatus, kFree, kFails}},
    {"FirstExecuteFails",
     Fail("OCIStmtExecute", 1, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kEnd, Report(kLow), kReportedStatus, kFree, kFails}},
    {"SecondPrepareFails",
     Fail("OCIStmtPrepare", 2, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kPrepareTable2, kEnd, Report(kLow), kReportedStatus,
      kFree, kFails}},
    {"SecondTableIsThere",
     Fail("OCIStmtExecute", 2, OraFault(955)),
     {kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kPrepareTable2, kExecuteAndCommit, kEnd,
      Report(kLowError), Reported(955), kFree, kFails}},
    {"InformationIsAFailureOfThePrepare",
     Fail("OCIStmtPrepare", 1, Working(OCI_SUCCESS_WITH_INFO)),
     {kAlloc, kStart, kPrepareTable1, kEnd, Report(1), kReportedStatus, kFree, kFails}},
    {"InformationIsAFailureOfTheExecute",
     Fail("OCIStmtExecute", 1, Working(OCI_SUCCESS_WITH_INFO)),
     {kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kEnd, Report(1), kReportedStatus, kFree, kFails}},
    {"HighBitsAloneAreNoFailureOfTheAllocation", Fail("OCIHandleAlloc", 1, Working(kLowBitsZero)),
     kBothTables},
    {"HighBitsAloneAreNoFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(kLowBitsZero)), kBothTables},
    {"HighBitsAloneAreNoFailureOfTheExecute", Fail("OCIStmtExecute", 1, Working(kLowBitsZero)), kBothTables},
    {"AFailedFreeIsNotLookedAt", Fail("OCIHandleFree", 1, StatusFault(kHighStatus)), kBothTables, 1},
};

class CreateTablesPath : public EachPath<CreateTablesCalls> {};
TEST_P(CreateTablesPath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, CreateTablesPath, testing::ValuesIn(kCreatePaths), NameOfPath);

TEST_F(CreateTablesCalls, AfterACancelEndTheTimerAndSucceed) {
  m_xact.RequestCancel();
  EXPECT_THAT(Run(), ElementsAre(kAlloc, kStart, kEnd, kFree, kSucceeds));
}

TEST_F(CreateTablesCalls, AfterACancelBetweenTwoTablesSucceedWithTheFirst) {
  Oci().After("OCIStmtExecute", 1, [this] { m_xact.RequestCancel(); });
  EXPECT_THAT(Run(), ElementsAre(kAlloc, kStart, kPrepareTable1, kExecuteAndCommit, kEnd, kFree, kSucceeds));
}

TEST_F(CreateTablesCalls, FromATableAboveTheNumberOfTablesAreNone) {
  m_properties.SetIntAttribute1(3);
  EXPECT_THAT(Run(), ElementsAre(kAlloc, kStart, kEnd, kFree, kSucceeds));
}

TEST_F(CreateTablesCalls, FromALaterTableLeaveOutTheEarlier) {
  m_properties.SetIntAttribute1(2);
  EXPECT_THAT(Run(), ElementsAre(kAlloc, kStart, kPrepareTable2, kExecuteAndCommit, kEnd, kFree, kSucceeds));
}

// kept: no SetEndTime, no OCIHandleFree, no report.
TEST_F(CreateTablesCalls, WithoutColumnTypesLeaveTimerAndHandle) {
  m_properties.GetRepBenchmarkProperties().ClearColumnInfo();
  EXPECT_THAT(Run(),
              ElementsAre(kAlloc, kStart,
                          "assert Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:110 BuildCreationSQL: "
                          "pColumnInforArray",
                          kFails));
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(CreateTablesCalls, WithAnEmptyListOfColumnTypesLeaveTimerAndHandleToo) {
  SetColumns({});
  EXPECT_THAT(Run(), ElementsAre(kAlloc, kStart, kFails));
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(CreateTablesCalls, ThatThrowForWeightsOfZeroFreeTheHandle) {
  SetColumns({Column(L"NUMBER", 0, false)});
  EXPECT_THROW(Run(), std::out_of_range);
  EXPECT_THAT(m_journal.All(), ElementsAre(kAlloc, kStart, kFree));
}

TEST_F(CreateTablesCalls, WithADrawAboveTheWeightsReportItAndThrow) {
  const scripted::HostDraws draws(2);
  EXPECT_THROW(Run(), std::out_of_range);
  EXPECT_THAT(m_journal.All(),
              ElementsAre(kAlloc, kStart,
                          "assert Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:157 BuildCreationSQL: "
                          "nRandomIndex >-1 && nRandomIndex <nTotalWeight+1",
                          kFree));
}

// kept: what the host shows as run is the text of the last table built, until the next one is.
TEST_F(CreateTablesCalls, ThatThrowLeaveTheTextOfTheTableBefore) {
  Run();
  const LKString szLast = m_xact.GetExecuteSQL();
  ASSERT_FALSE(szLast.IsEmpty());
  SetColumns({Column(L"NUMBER", 0, false)});
  EXPECT_THROW(Run(), std::out_of_range);
  EXPECT_EQ(m_xact.GetExecuteSQL(), szLast);
}

std::string Drop(int nTable) { return Prepare("DROP TABLE LK_REP_TABLE" + std::to_string(nTable)); }
const std::string kReadError = "OCIErrorGet(err#1, 1, null, 1024, 2)";
const std::string kDropBackup1 = "DropBackupTable(LK_REP_TABLE1)";
const std::string kDropBackup2 = "DropBackupTable(LK_REP_TABLE2)";
constexpr const char* kThirdTable = "DROP TABLE LK_REP_TABLE3";

// The third table is missing, unless a path ends before.
class DropTablesCalls : public Calls<CXact_Drop_RepTables> {
 protected:
  DropTablesCalls() {
    m_xact.m_nRows = 7;
    m_xact.m_nBytes = 8;
    Oci().FailSql(kThirdTable, 1, OraFault(942));
  }
};

const Events kDropBoth = {kStart,
                          kAlloc,
                          Drop(1),
                          kExecuteAndCommit,
                          kDropBackup1,
                          Drop(2),
                          kExecuteAndCommit,
                          kDropBackup2,
                          Drop(3),
                          kExecuteAndCommit,
                          kEnd,
                          kReadError,
                          kFree,
                          kFails};

const std::vector<Path> kDropPaths = {
    {"TheThirdTableIsMissing", NoFault(), kDropBoth},
    {"NoHandle",
     Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kEnd, Report(kLow), kReportedStatus, kFails}},
    {"FirstPrepareFails",
     Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, Drop(1), kEnd, Report(kLow), kReportedStatus, kFree, kFails}},
    {"SecondPrepareFails",
     Fail("OCIStmtPrepare", 2, StatusFault(kHighStatus)),
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kDropBackup1, Drop(2), kEnd, Report(kLow), kReportedStatus,
      kFree, kFails}},
    {"AMissingTableOfThePrepareIsReported",
     Fail("OCIStmtPrepare", 1, OraFault(942)),
     {kStart, kAlloc, Drop(1), kEnd, Report(kLowError), Reported(942), kFree, kFails}},
    {"TheFirstTableIsMissing",
     Fail("OCIStmtExecute", 1, OraFault(942)),
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kEnd, kReadError, kFree, kFails}},
    {"TheFirstTableIsLocked",
     Fail("OCIStmtExecute", 1, OraFault(54)),
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kEnd, kReadError, Report(kLowError), Reported(54), kFree,
      kFails}},
    {"AMissingObjectIsReported",
     Fail("OCIStmtExecute", 1, OraFault(4043)),
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kEnd, kReadError, Report(kLowError), Reported(4043), kFree,
      kFails}},
    {"AnExecuteFailsWithoutARecord",
     Fail("OCIStmtExecute", 2, StatusFault(kHighStatus)),
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kDropBackup1, Drop(2), kExecuteAndCommit, kEnd, kReadError,
      Report(kLow), kReportedStatus, kFree, kFails}},
    {"TheErrorOfAMissingTableCannotBeRead",
     [] {
       Oci().FailCall("OCIStmtExecute", 1, OraFault(942));
       Oci().FailCall("OCIErrorGet", 1, StatusFault(kHighStatus));
     },
     {kStart, kAlloc, Drop(1), kExecuteAndCommit, kEnd, kReadError, Report(kLowError), Reported(942), kFree,
      kFails}},
    {"HighBitsAloneAreNoFailureOfTheAllocation", Fail("OCIHandleAlloc", 1, Working(kLowBitsZero)), kDropBoth},
    {"HighBitsAloneAreNoFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(kLowBitsZero)), kDropBoth},
    {"HighBitsAloneAreNoFailureOfTheExecute", Fail("OCIStmtExecute", 1, Working(kLowBitsZero)), kDropBoth},
    {"AFailedFreeIsNotLookedAt", Fail("OCIHandleFree", 1, StatusFault(kHighStatus)), kDropBoth, 1},
};

class DropTablesPath : public EachPath<DropTablesCalls> {};
TEST_P(DropTablesPath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, DropTablesPath, testing::ValuesIn(kDropPaths), NameOfPath);

TEST_F(DropTablesCalls, DoNotStopAtABackupThatCannotBeDropped) {
  m_driver.m_failing = {kDropBackup1};
  EXPECT_THAT(Run(), testing::ElementsAreArray(kDropBoth));
}

TEST_F(DropTablesCalls, AfterACancelGoOn) {
  m_xact.RequestCancel();
  EXPECT_THAT(Run(), testing::ElementsAreArray(kDropBoth));
}

}  // namespace
}  // namespace plugin_test

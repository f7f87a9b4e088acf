// SPDX-License-Identifier: Apache-2.0
// The journals of the transactions that create and drop the properties table.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "ForeignDriver.h"
#include "SchemaCalls.h"

namespace plugin_test {
namespace {

using scripted::kHighStatus;
using scripted::kLowBitsZero;
using scripted::OraFault;
using scripted::StatusFault;
using testing::ElementsAre;
using testing::ElementsAreArray;

const std::string kPrepareTable = Prepare(
    "CREATE TABLE LK_REP_PROPERTIES ( PROP_NAME VARCHAR2(50) NOT NULL, PROP_VALUE VARCHAR2(255) NOT NULL)");
const std::string kPrepareBlock = Prepare(
    "BEGIN "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Number Of Tables', '4'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Minimum Column', '5'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Maximum Column', '12'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Distribution Mode', '4'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Scale', '3'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Column Structure', 'NUMBER@3@0'); "
    "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Column Structure', 'VARCHAR2(20)@1@1'); "
    " END;");
const std::string kExecuteUncommitted = Execute(0);

class CreatePropertiesCalls : public Calls<CXact_Create_Replication_Properties_Table> {
 protected:
  CreatePropertiesCalls() {
    SetTables(4);
    SetColumnNumbers(5, 12);
    m_properties.GetRepBenchmarkProperties().SetColumnDistribution(
        CRepBenchmarkProperties::NORMAL_DISTRIBUTION);
    m_properties.SetScale(3);
    SetColumns({Column(L"NUMBER", 3, false), Column(L"VARCHAR2(20)", 1, true)});
    m_xact.m_nRows = 7;
    m_xact.m_nXactBytes = 8;
  }
};

// kept: no SetEndTime, no OCIHandleFree, no commit.
const Events kTableAndRows = {
    kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kPrepareBlock, kExecuteUncommitted, kSucceeds};

const std::vector<Path> kCreatePaths = {
    {"EverythingSucceeds", NoFault(), kTableAndRows, 1},
    {"NoHandle",
     Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
     {kAlloc, "SetEndTime(7, 8)", Report(kWhole), kReportedStatus, kFails}},
    {"TheTablesPrepareFails",
     Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable, kEnd, Report(kWhole), kReportedStatus, kFree, kFails}},
    {"TheTablesExecuteFails",
     Fail("OCIStmtExecute", 1, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kEnd, Report(kWhole), kReportedStatus, kFree,
      kFails}},
    {"TheTableIsThere",
     Fail("OCIStmtExecute", 1, OraFault(955)),
     {kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kEnd, Report(kWholeError), Reported(955), kFree,
      kFails}},
    {"TheBlocksPrepareFails",
     Fail("OCIStmtPrepare", 2, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kPrepareBlock, kEnd, Report(kWhole),
      kReportedStatus, kFree, kFails}},
    {"TheBlocksExecuteFails",
     Fail("OCIStmtExecute", 2, StatusFault(kHighStatus)),
     {kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kPrepareBlock, kExecuteUncommitted, kEnd,
      Report(kWhole), kReportedStatus, kFree, kFails}},
    {"AValueIsTooLong",
     Fail("OCIStmtExecute", 2, OraFault(12899)),
     {kAlloc, kStart, kPrepareTable, kExecuteUncommitted, kPrepareBlock, kExecuteUncommitted, kEnd,
      Report(kWholeError), Reported(12899), kFree, kFails}},
    {"HighBitsAloneAreNoFailureOfTheAllocation", Fail("OCIHandleAlloc", 1, Working(kLowBitsZero)),
     kTableAndRows, 1},
    {"HighBitsAloneAreNoFailureOfAPrepare", Fail("OCIStmtPrepare", 2, Working(kLowBitsZero)), kTableAndRows,
     1},
    {"HighBitsAloneAreNoFailureOfAnExecute", Fail("OCIStmtExecute", 2, Working(kLowBitsZero)), kTableAndRows,
     1},
};

class CreatePropertiesPath : public EachPath<CreatePropertiesCalls> {};
TEST_P(CreatePropertiesPath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, CreatePropertiesPath, testing::ValuesIn(kCreatePaths), NameOfPath);

TEST_F(CreatePropertiesCalls, OfALaterStartTableAreNone) {
  m_properties.SetIntAttribute1(1);
  Bind(m_xact);
  m_xact.SetDriver(nullptr);  // not looked at either
  EXPECT_THAT(m_journal.Run([&] { return m_xact.Execute(); }), ElementsAre(kSucceeds));
}

TEST_F(CreatePropertiesCalls, WithoutAnOracleDriverAreNone) {
  Bind(m_xact);
  scripted::ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.SetDriver(pDriver);
    EXPECT_THAT(m_journal.Run([&] { return m_xact.Execute(); }), ElementsAre(kFails));
  }
}

TEST_F(CreatePropertiesCalls, WithAMissingColumnTypeReportItAndGoOn) {
  SetColumns({nullptr});
  const Events events = Run();
  ASSERT_EQ(events.size(), 8u);
  EXPECT_EQ(events[4],
            "assert Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:345 Execute: pColumn != __null");
  EXPECT_EQ(events[6], kExecuteUncommitted);
  EXPECT_EQ(events.back(), kSucceeds);
}

const std::string kPrepareDrop = Prepare("DROP TABLE LK_REP_PROPERTIES");

class DropPropertiesCalls : public Calls<CXact_Drop_Replication_Properties_Table> {
 protected:
  DropPropertiesCalls() {
    m_xact.m_nRows = 7;
    m_xact.m_nXactBytes = 8;
  }
};

// The journal of an execute that comes to the list of ignored errors and has these events behind its end.
Events Dropping(const Events& afterEnd, const std::string& returned) {
  Events events = {
      kStart, kAlloc, kPrepareDrop, "AddIgnoreError(942)", "AddIgnoreError(4043)", kExecuteAndCommit, kEnd};
  events.insert(events.end(), afterEnd.begin(), afterEnd.end());
  for (const std::string& last :
       {kFree, std::string("RemoveIgnoreError(942)"), std::string("RemoveIgnoreError(4043)"), returned})
    events.push_back(last);
  return events;
}

const std::vector<Path> kDropPaths = {
    {"EverythingSucceeds", NoFault(), Dropping({}, kSucceeds)},
    {"NoHandle",
     Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kEnd, Report(kLow), kReportedStatus, kFails}},
    {"ThePrepareFails",
     Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kPrepareDrop, kEnd, Report(kLow), kReportedStatus, kFree, kFails}},
    {"AMissingTableOfThePrepareIsReported",
     Fail("OCIStmtPrepare", 1, OraFault(942)),
     {kStart, kAlloc, kPrepareDrop, kEnd, Report(kLowError), Reported(942), kFree, kFails}},
    {"TheExecuteFails", Fail("OCIStmtExecute", 1, StatusFault(kHighStatus)),
     Dropping({Report(kLow), kReportedStatus}, kFails)},
    {"TheTableIsMissing", Fail("OCIStmtExecute", 1, OraFault(942)), Dropping({Report(kLowError)}, kFails)},
    {"TheObjectIsMissing", Fail("OCIStmtExecute", 1, OraFault(4043)), Dropping({Report(kLowError)}, kFails)},
    {"TheTableIsLocked", Fail("OCIStmtExecute", 1, OraFault(54)),
     Dropping({Report(kLowError), Reported(54)}, kFails)},
    {"AMissingSequenceIsReported", Fail("OCIStmtExecute", 1, OraFault(2289)),
     Dropping({Report(kLowError), Reported(2289)}, kFails)},
    {"HighBitsAloneAreNoFailureOfTheAllocation", Fail("OCIHandleAlloc", 1, Working(kLowBitsZero)),
     Dropping({}, kSucceeds)},
    {"HighBitsAloneAreNoFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(kLowBitsZero)),
     Dropping({}, kSucceeds)},
    {"HighBitsAloneAreNoFailureOfTheExecute", Fail("OCIStmtExecute", 1, Working(kLowBitsZero)),
     Dropping({}, kSucceeds)},
    {"AFailedFreeIsNotLookedAt", Fail("OCIHandleFree", 1, StatusFault(kHighStatus)), Dropping({}, kSucceeds),
     1},
};

class DropPropertiesPath : public EachPath<DropPropertiesCalls> {};
TEST_P(DropPropertiesPath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, DropPropertiesPath, testing::ValuesIn(kDropPaths), NameOfPath);

TEST_F(DropPropertiesCalls, TakeOffTheListWhatTheyPutOnItOnly) {
  m_driver.AddIgnoreError(942);  // a host's own
  EXPECT_THAT(Run(), ElementsAreArray(Dropping({}, kSucceeds)));
  EXPECT_TRUE(m_driver.IsIgnoredError(942));
  EXPECT_FALSE(m_driver.IsIgnoredError(4043));
}

}  // namespace
}  // namespace plugin_test

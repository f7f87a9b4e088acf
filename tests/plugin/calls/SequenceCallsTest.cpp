// SPDX-License-Identifier: Apache-2.0
// The journals of the transactions that create and drop the ID sequence.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
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

const std::string kPrepareCreate = Prepare("CREATE SEQUENCE LK_REP_ID_SEQ START WITH 1001 CACHE 100");

class CreateSequenceCalls : public Calls<CXact_Create_Sequence> {
 protected:
  CreateSequenceCalls() {
    m_benchmark.SetBenchmarkScale(1.0);
    m_xact.m_nRows = 7;
    m_xact.m_nXactBytes = 8;
  }
};

const Events kCreated = {kStart, kAlloc, kPrepareCreate, kExecuteAndCommit, kEnd, kFree, kSucceeds};

const std::vector<Path> kCreatePaths = {
    {"EverythingSucceeds", NoFault(), kCreated},
    {"NoHandle",
     Fail("OCIHandleAlloc", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kEnd, Report(kWhole), kReportedStatus, kFails}},
    {"ThePrepareFails",
     Fail("OCIStmtPrepare", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kPrepareCreate, kEnd, Report(kWhole), kReportedStatus, kFree, kFails}},
    {"TheExecuteFails",
     Fail("OCIStmtExecute", 1, StatusFault(kHighStatus)),
     {kStart, kAlloc, kPrepareCreate, kExecuteAndCommit, kEnd, Report(kLow), kReportedStatus, kFree, kFails}},
    {"TheSequenceIsThere",
     Fail("OCIStmtExecute", 1, OraFault(955)),
     {kStart, kAlloc, kPrepareCreate, kExecuteAndCommit, kEnd, Report(kLowError), Reported(955), kFree,
      kFails}},
    {"HighBitsAloneAreNoFailureOfTheAllocation", Fail("OCIHandleAlloc", 1, Working(kLowBitsZero)), kCreated},
    {"HighBitsAloneAreNoFailureOfThePrepare", Fail("OCIStmtPrepare", 1, Working(kLowBitsZero)), kCreated},
    {"HighBitsAloneAreNoFailureOfTheExecute", Fail("OCIStmtExecute", 1, Working(kLowBitsZero)), kCreated},
    {"AFailedFreeIsNotLookedAt", Fail("OCIHandleFree", 1, StatusFault(kHighStatus)), kCreated, 1},
};

class CreateSequencePath : public EachPath<CreateSequenceCalls> {};
TEST_P(CreateSequencePath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, CreateSequencePath, testing::ValuesIn(kCreatePaths), NameOfPath);

TEST_F(CreateSequenceCalls, OfAScaleBelowOneBeginWithAnAssertionAndSucceed) {
  m_benchmark.SetBenchmarkScale(0.5);
  EXPECT_THAT(
      Run(),
      ElementsAre("assert Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:214 Execute: iStartRows >= 1000",
                  kStart, kAlloc, Prepare("CREATE SEQUENCE LK_REP_ID_SEQ START WITH 501 CACHE 100"),
                  kExecuteAndCommit, kEnd, kFree, kSucceeds));
}

TEST_F(CreateSequenceCalls, WithoutBenchmarkOrOracleDriverAreNone) {
  Bind(m_xact);
  m_xact.SetBenchmark(nullptr);
  const auto execute = [this] { return m_xact.Execute(); };
  EXPECT_THAT(m_journal.Run(execute), ElementsAre(kFails));
  m_xact.SetBenchmark(&m_benchmark);
  scripted::ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.SetDriver(pDriver);
    EXPECT_THAT(m_journal.Run(execute), ElementsAre(kFails));
  }
}

const std::string kPrepareDrop = "PrepareStatement(\"DROP SEQUENCE LK_REP_ID_SEQ\", 0)";
const std::string kExecuteDrop = "ExecuteStatement(0)";
const std::string kClose = "CloseStatement()";

// The list of ignored errors is compared between two calls and after each removal, so numbers put on it
// together are in the order of the numbers.
const Events kIgnore = {"AddIgnoreError(942)", "AddIgnoreError(2289)", "AddIgnoreError(4043)"};
const Events kReportAgain = {"RemoveIgnoreError(942)", "RemoveIgnoreError(4043)", "RemoveIgnoreError(2289)"};

// A drop with these events in its middle. kept: through the driver's own statement, and no timer.
Events Dropping(const Events& statement, const std::string& returned = kFails) {
  Events events = kIgnore;
  events.insert(events.end(), statement.begin(), statement.end());
  events.insert(events.end(), kReportAgain.begin(), kReportAgain.end());
  events.push_back(returned);
  return events;
}

class DropSequenceCalls : public Calls<CXact_Drop_Sequence> {};

// The driver's own calls are left out of a journal; these paths make them fail.
const std::vector<Path> kDropPaths = {
    {"EverythingSucceeds", NoFault(), Dropping({kPrepareDrop, kExecuteDrop, kClose}, kSucceeds)},
    {"TheDriverCannotPrepare", Fail("OCIStmtPrepare", 1, OraFault(1013)),
     Dropping({kPrepareDrop, Reported(1013), kExecuteDrop, kReportedStatus, kClose})},
    {"TheDriverCannotExecute", Fail("OCIStmtExecute", 1, OraFault(1031)),
     Dropping({kPrepareDrop, kExecuteDrop, Reported(1031), kClose})},
    {"TheSequenceIsMissing", Fail("OCIStmtExecute", 1, OraFault(2289)),
     Dropping({kPrepareDrop, kExecuteDrop, kClose})},
    {"TheTableIsMissing", Fail("OCIStmtExecute", 1, OraFault(942)),
     Dropping({kPrepareDrop, kExecuteDrop, kClose})},
    {"TheObjectIsMissing", Fail("OCIStmtExecute", 1, OraFault(4043)),
     Dropping({kPrepareDrop, kExecuteDrop, kClose})},
};

class DropSequencePath : public EachPath<DropSequenceCalls> {};
TEST_P(DropSequencePath, HasThisJournal) { ExpectJournal(); }
INSTANTIATE_TEST_SUITE_P(, DropSequencePath, testing::ValuesIn(kDropPaths), NameOfPath);

TEST_F(DropSequenceCalls, ReturnWhatTheDriversExecuteReturned) {
  m_driver.m_executeResult = 42;
  EXPECT_THAT(Run(), ElementsAreArray(Dropping({kPrepareDrop, kExecuteDrop, kClose}, "returned 42")));
}

TEST_F(DropSequenceCalls, TakeOffTheListWhatTheyPutOnItOnly) {
  m_driver.AddIgnoreError(2289);  // a host's own
  EXPECT_THAT(Run(), ElementsAreArray(Dropping({kPrepareDrop, kExecuteDrop, kClose}, kSucceeds)));
  EXPECT_TRUE(m_driver.IsIgnoredError(2289));
  EXPECT_FALSE(m_driver.IsIgnoredError(942));
}

TEST_F(DropSequenceCalls, WithoutAnOracleDriverAreNone) {
  scripted::ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.SetDriver(pDriver);
    EXPECT_THAT(m_journal.Run([&] { return m_xact.Execute(); }), ElementsAre(kFails));
  }
}

}  // namespace
}  // namespace plugin_test

// SPDX-License-Identifier: Apache-2.0
// Every OCI call that one execution of a workload transaction makes, in order, and where its timer stands
// then.
#include <gmock/gmock.h>

#include <memory>
#include <type_traits>

#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "Recorders.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

// The table has an ID and a text of 4 bytes. stmt#1 is the transaction's own statement, stmt#2 the table's,
// stmt#3 the loader's.
const std::vector<ColumnSpec> kTwoColumns = {{"ID"}, {"COLUMN1", SQLT_CHR, 4, 0, 0, 0}};

const std::vector<std::string> kDescribeAndBind = {
    "OCIHandleAlloc(env#1, 4, 0, null)",
    "OCIStmtPrepare(stmt#2, err#1, \"SELECT * FROM LK_REP_TABLE1\", 27, 1, 0)",
    "OCIStmtExecute(svc#1, stmt#2, err#1, 0, 0, null, null, 16)",
    "OCIAttrGet(stmt#2, 4, null, 18, err#1)",
    "OCIParamGet(stmt#2, 4, err#1, 1)",
    "OCIAttrGet(par#1, 53, &, 4, err#1)",
    "OCIAttrGet(par#1, 53, null, 2, err#1)",
    "OCIAttrGet(par#1, 53, null, 1, err#1)",
    "OCIAttrGet(par#1, 53, null, 7, err#1)",
    "OCIAttrGet(par#1, 53, null, 5, err#1)",
    "OCIAttrGet(par#1, 53, null, 6, err#1)",
    "OCIParamGet(stmt#2, 4, err#1, 2)",
    "OCIAttrGet(par#2, 53, &, 4, err#1)",
    "OCIAttrGet(par#2, 53, null, 2, err#1)",
    "OCIAttrGet(par#2, 53, null, 1, err#1)",
    "OCIAttrGet(par#2, 53, null, 7, err#1)",
    "OCIHandleAlloc(env#1, 4, 0, null)",
    "OCIStmtPrepare(stmt#3, err#1, \"INSERT INTO LK_REP_TABLE1 (ID, COLUMN1) VALUES (:ID, :COLUMN1)\", 62, "
    "1, 0)",
    "OCIBindByPos(stmt#3, err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#1, err#1, 8, 0, 0, 0)",
    "OCIBindByPos(stmt#3, err#1, 2, &, 5, 5, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#2, err#1, 5, 0, 0, 0)"};

std::vector<std::string> AfterDescribeAndBind(const std::vector<std::string>& rest) {
  std::vector<std::string> calls = kDescribeAndBind;
  calls.insert(calls.end(), rest.begin(), rest.end());
  return calls;
}

template <class Transaction>
class CallList : public WorkloadTest<Transaction> {
 protected:
  CallList() { this->DescribeTable(1, kTwoColumns); }

  // "started", "responded" and "ended", as far as the timer has come.
  std::string TimerState() {
    const CTimer& timer = this->m_xact.GetTimer();
    if (timer.IsEnded()) return "ended";
    if (timer.GetResponse() != 0) return "responded";
    return timer.IsStarted() ? "started" : "idle";
  }
  // Notes the timer's state when the nth call of the name from now on returns.
  void NoteTimerAt(const std::string& name, int nth) {
    Oci().After(name, nth, [this] { m_states.push_back(TimerState()); });
  }

  std::vector<std::string> m_states;
};

using InsertCalls = CallList<CXact_Insert>;
using UpdateCalls = CallList<CXact_Update>;
using DeleteCalls = CallList<CXact_Delete>;

TEST_F(InsertCalls, AreADescribeABindASequenceFetchAndAnInsert) {
  Start();
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(
      Oci().Calls(),
      ElementsAreArray(AfterDescribeAndBind({"OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)",
                                             "OCIStmtExecute(svc#1, stmt#3, err#1, 1, 0, null, null, 0)",
                                             "OCIHandleFree(stmt#3, 4)", "OCIHandleFree(stmt#2, 4)"})));
}

TEST_F(InsertCalls, WithoutAnIdEndAtTheFetchAndLeaveTheLoadersStatement) {
  Start();
  Oci().AnswerCounting(kSequenceQuery, 0);
  ASSERT_EQ(m_xact.Execute(), 0);
  EXPECT_THAT(
      Oci().Calls(),
      ElementsAreArray(AfterDescribeAndBind(
          {"OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)", "OCIHandleFree(stmt#2, 4)"})));
}

TEST_F(InsertCalls, StartTheTimerBehindTheDescribeAndRespondBeforeTheFetch) {
  Start();
  NoteTimerAt("OCIStmtExecute", 1);        // the describe
  NoteTimerAt("OCIBindArrayOfStruct", 2);  // the last bind
  NoteTimerAt("OCIStmtExecute", 2);        // the sequence
  NoteTimerAt("OCIStmtExecute", 3);        // the insert
  NoteTimerAt("OCIHandleFree", 1);         // the loader
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(m_states, ElementsAre("idle", "started", "responded", "responded", "ended"));
}

TEST_F(InsertCalls, WithAFailedPrepareEndSilentlyWithEverythingFreed) {
  Start();
  Oci().FailCall("OCIStmtPrepare", 2, OraFault(900));
  EXPECT_EQ(m_xact.Execute(), 0);
  EXPECT_THAT(m_reports.Errors(), IsEmpty());
  EXPECT_EQ(TimerState(), "started");
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(InsertCalls, WithAFailedLoaderStatementAreReportedByTheLoader) {
  Start();
  Oci().FailCall("OCIHandleAlloc", 2, {OCI_ERROR});
  EXPECT_EQ(m_xact.Execute(), 0);
  ASSERT_THAT(m_reports.Errors(), SizeIs(1));
  EXPECT_THAT(m_reports.Errors()[0].m_szErrorMessage.ToChar(),
              testing::StartsWith("Unable create statement handle for TableLoader!"));
  EXPECT_EQ(TimerState(), "started");
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(UpdateCalls, AreADescribeABindAndOneTextWithItsRowCount) {
  Start();
  ASSERT_EQ(m_xact.Execute(), 1);
  const std::string text = m_xact.m_szSQL.ToChar();
  EXPECT_THAT(
      Oci().Calls(),
      ElementsAreArray(AfterDescribeAndBind(
          {"OCIHandleFree(stmt#3, 4)", "OCIHandleFree(stmt#2, 4)",
           "OCIStmtPrepare(stmt#1, err#1, \"" + text + "\", " + std::to_string(text.size()) + ", 1, 0)",
           "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)",
           "OCIAttrGet(stmt#1, 4, null, 9, err#1)"})));
}

TEST_F(UpdateCalls, StartTheTimerBeforeTheDescribeAndRespondBeforeThePrepare) {
  Start();
  NoteTimerAt("OCIStmtPrepare", 1);  // the describe
  NoteTimerAt("OCIHandleFree", 2);   // the table
  NoteTimerAt("OCIStmtPrepare", 3);  // the update
  NoteTimerAt("OCIAttrGet", 12);     // the row count: 11 attributes are the describe's
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(m_states, ElementsAre("started", "started", "responded", "responded"));
  EXPECT_EQ(TimerState(), "ended");
}

TEST_F(UpdateCalls, AfterAFailedExecuteLeaveTheTimerRunning) {
  Start();
  Oci().FailSql("update", 1, OraFault(60, "deadlock detected"));
  EXPECT_EQ(m_xact.Execute(), 0);
  EXPECT_EQ(TimerState(), "responded");
  EXPECT_EQ(Oci().CountCalls("OCIAttrGet"), 11);
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(DeleteCalls, StartTheTimerAndRespondBeforeThePrepare) {
  Start();
  NoteTimerAt("OCIStmtPrepare", 1);
  NoteTimerAt("OCIAttrGet", 1);
  ASSERT_EQ(m_xact.Execute(), 1);
  EXPECT_THAT(m_states, ElementsAre("responded", "responded"));
  EXPECT_EQ(TimerState(), "ended");
}

template <class Transaction>
class Workload : public CallList<Transaction> {};
using Transactions = testing::Types<CXact_Insert, CXact_Update, CXact_Delete>;
TYPED_TEST_SUITE(Workload, Transactions);

TYPED_TEST(Workload, WithoutAnOracleDriverTouchesNeitherOciNorTheTimer) {
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    this->m_xact.SetDriver(pDriver);
    EXPECT_EQ(this->m_xact.PreBenchmark(), 0);
    EXPECT_EQ(this->m_xact.Execute(), 0);
  }
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_EQ(this->TimerState(), "idle");
}

TYPED_TEST(Workload, EveryFailureOfItsOwnStatementIsReportedWithItsWholeStatus) {
  Oci().FailCall("OCIHandleAlloc", 1, StatusFault(kHighStatus));
  EXPECT_EQ(this->m_xact.PreBenchmark(), 0);
  this->Start();
  const bool bInsert = std::is_same_v<TypeParam, CXact_Insert>;
  const std::string own = bInsert                                   ? kSequenceQuery
                          : std::is_same_v<TypeParam, CXact_Update> ? "update"
                                                                    : "delete";
  Oci().FailSql(own, 1, StatusFault(kHighStatus));
  EXPECT_EQ(this->m_xact.Execute(), 0);
  const int nPreparesBefore = std::is_same_v<TypeParam, CXact_Update> ? 2 : 0;  // describe and insert
  Oci().FailCall("OCIStmtPrepare", nPreparesBefore + 1, StatusFault(kHighStatus));
  EXPECT_EQ(bInsert ? this->m_xact.PreBenchmark() : this->m_xact.Execute(), bInsert ? -1 : 0);
  const auto wholeStatus = testing::HasSubstr("status 65541 ");
  EXPECT_THAT(this->m_reports.Reports(), ElementsAre(wholeStatus, wholeStatus, wholeStatus));
}

TYPED_TEST(Workload, NoDebugLineIsMadeWhereTheLevelOrTheThreadAdmitsNone) {
  this->Start();
  LogRecorder log;
  wxLog::SetLogLevel(wxLOG_Info);
  EXPECT_EQ(this->m_xact.Execute(), 1);
  wxLog::SetLogLevel(wxLOG_Debug);
  {
    const wxLogNull quiet;
    EXPECT_EQ(this->m_xact.Execute(), 1);
  }
  EXPECT_THAT(log.Texts(), IsEmpty());
  EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_THAT(log.Texts(), SizeIs(1));
}

TYPED_TEST(Workload, WithoutABenchmarkSucceeds) {
  this->m_xact.SetBenchmark(nullptr);
  this->Start();
  EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_EQ(this->TimerState(), "ended");
}

TYPED_TEST(Workload, IterationsNeedNothingOfTheirOwn) {
  this->Start();
  EXPECT_EQ(this->m_xact.PreIteration(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TYPED_TEST(Workload, FailedAllocationLeavesNoHandleAndTheNextPreBenchmarkTriesAgain) {
  Oci().FailCall("OCIHandleAlloc", 1, {OCI_ERROR});
  EXPECT_EQ(this->m_xact.PreBenchmark(), 0);
  EXPECT_EQ(this->ExtraHandles(), 0);
  EXPECT_EQ(this->m_xact.PreBenchmark(), 1);
  EXPECT_EQ(this->ExtraHandles(), 1);
}

TYPED_TEST(Workload, SecondPostBenchmarkFreesNothing) {
  this->Start();
  EXPECT_EQ(this->m_xact.PostBenchmark(), 1);
  EXPECT_EQ(this->m_xact.PostBenchmark(), 1);
  EXPECT_EQ(Oci().CountCalls("OCIHandleFree"), 1);
}

TYPED_TEST(Workload, DestructorLeavesTheHandleToPostBenchmark) {
  auto pXact = std::make_unique<TypeParam>();
  pXact->SetDriver(&this->m_driver);
  pXact->SetBenchmarkProperties(this->m_xact.GetBenchmarkProperties());
  ASSERT_EQ(pXact->PreBenchmark(), 1);
  pXact.reset();
  EXPECT_EQ(Oci().CountCalls("OCIHandleFree"), 0);
  EXPECT_EQ(this->ExtraHandles(), 1);
}

TYPED_TEST(Workload, UnfitSpecifiersNeverOccur) {
  this->Start();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_THAT(this->m_asserts.Texts(), IsEmpty());
}

}  // namespace
}  // namespace scripted

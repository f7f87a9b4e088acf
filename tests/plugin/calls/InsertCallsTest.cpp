// SPDX-License-Identifier: Apache-2.0
// Everything an insert does, in order, when all goes well and at each call that can fail.
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Recorders.h"
#include "TwoColumnTable.h"
#include "WorkloadCalls.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const Events kDebugLine = {
    "debug Benchmarks/CREP_ORA8/Xact_Insert.cpp:113 Execute: Insert --- User [3] Table [LK_REP_TABLE1]\n"};
const Events kFetch = {"OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)"};   // OCI call 23
const Events kInsert = {"OCIStmtExecute(svc#1, stmt#3, err#1, 1, 0, null, null, 0)"};  // 24
const Events kUpToFetch =
    Together({kDebugLine, kDescribe, {"SetStartTime()"}, kBind, {"SetResponseTime()"}, kFetch});
const Events kSuccess =
    Together({kUpToFetch, kInsert, {"SetEndTime(1, 0)", kFreeLoader, kFreeTable, "returned 1"}});

const Events kWithoutAnId = Together({kUpToFetch, {"SetEndTime(0, 0)", kFreeTable, "returned 0"}});

const Events kPrepared = {
    "OCIHandleAlloc(env#1, 4, 0, null)",
    "OCIStmtPrepare(stmt#1, err#1, \"SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL\", 38, 1, 0)",
    "OCIDefineByPos(stmt#1, err#1, 1, &, 8, 4, &, null, null, 0)", "returned 1"};

class InsertCalls : public WorkloadCalls<CXact_Insert> {
 protected:
  InsertCalls() { DescribeTable(1, kTwoColumns); }

  LogRecorder m_log;
};

TEST_F(InsertCalls, OfPreBenchmarkAllocatePrepareAndDefineTheSequenceQuery) {
  EXPECT_EQ(PreBenchmark(), kPrepared);
}

TEST_F(InsertCalls, OfASecondPreBenchmarkReuseTheHandle) {
  Start();
  EXPECT_EQ(PreBenchmark(), Events(kPrepared.begin() + 1, kPrepared.end()));
}

TEST_F(InsertCalls, AreADescribeABindASequenceFetchAndAnInsert) {
  Start();
  EXPECT_EQ(Execute(), kSuccess);
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(1002, 1001)));
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(InsertCalls, AreTheSameAtTheNextExecution) {
  Start();
  Execute();
  const Events second = Execute();
  EXPECT_EQ(second.size(), kSuccess.size());
  EXPECT_EQ(second[1], kSuccess[1]);  // the table is described anew
}

TEST_F(InsertCalls, WithAnIdOf0EndTheTimerAndLeaveTheLoader) {
  Start();
  Oci().AnswerCounting(kSequenceQuery, 0);
  EXPECT_EQ(Execute(), kWithoutAnId);
  EXPECT_EQ(ExtraHandles(), 2);  // kept: the loader is not freed, nor its statement
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(InsertCalls, WithAnIdOfMinus1EndTheTimerAndLeaveTheLoader) {
  Start();
  Oci().AnswerCounting(kSequenceQuery, -1);
  EXPECT_EQ(Execute(), kWithoutAnId);
  EXPECT_EQ(ExtraHandles(), 2);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

class InsertPrepareFailures : public InsertCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(InsertPrepareFailures, EndPreBenchmarkAsListed) {
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  EXPECT_EQ(PreBenchmark(), Together({UpToCall(kPrepared, GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
}

INSTANTIATE_TEST_SUITE_P(
    PreBenchmark, InsertPrepareFailures,
    testing::ValuesIn(EachCall(
        {{"Handle", 1, 1,
          Together({Reported(kHighStatus, "Unable statement handle in Insert Transaction!"), {"returned 0"}}),
          0},
         {"Prepare", 2, 2,
          Together({Reported(kHighStatus, "Unable to generate ID for Insert transaction."), {"returned -1"}}),
          1},
         {"Define", 3, 3, {"returned 1"}, 1}})),
    NameOfPath);

class InsertFailures : public InsertCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(InsertFailures, EndTheExecutionAsListedAndRecordNoRow) {
  Start();
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  EXPECT_EQ(Execute(), Together({UpToCall(kSuccess, GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
  EXPECT_THAT(MapEntries(), IsEmpty());
}

std::vector<FailingCalls> ExecuteFailures() {
  std::vector<FailingCalls> rows =
      DescribeFailures("Unable to retrieve table information in Insert Transaction");
  rows.push_back({"Sequence", 23, 23,
                  Together({Reported(kHighStatus, "Unable to generate ID for Insert transaction."),
                            {"SetEndTime(0, 0)", kFreeTable, "returned 0"}}),
                  2});  // kept: the loader's statement is not freed
  rows.push_back(
      {"Insert", 24, 24,
       Together({Reported(kHighStatus), {"SetEndTime(0, 0)", kFreeLoader, kFreeTable, "returned 0"}}), 1});
  return rows;
}
INSTANTIATE_TEST_SUITE_P(Execute, InsertFailures, testing::ValuesIn(EachCall(ExecuteFailures())), NameOfPath);

TEST_F(InsertCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  ReturnHighBitsOnly();
  EXPECT_EQ(PreBenchmark(), kPrepared);
  EXPECT_EQ(Execute(), kSuccess);
}

TEST_F(InsertCalls, AreAllFollowedToTheirFailureButTheFrees) {
  EXPECT_EQ(CountOciCalls(kSuccess), 24 + 2);
  EXPECT_EQ(EachCall(ExecuteFailures()).size(), 24U);
}

TEST_F(InsertCalls, ThatFreeAreNotLookedAt) {
  for (const int nCall : {25, 26}) {
    Start();
    Oci().FailAnyCall(nCall, StatusFault(kHighStatus));
    EXPECT_EQ(Execute().size(), kSuccess.size());
  }
  EXPECT_EQ(MapEntries().size(), 2U);
}

}  // namespace
}  // namespace scripted

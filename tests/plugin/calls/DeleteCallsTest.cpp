// SPDX-License-Identifier: Apache-2.0
// Everything a delete does, in order, when all goes well and at each call that can fail.
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Recorders.h"
#include "WorkloadCalls.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const Events kSuccess = {
    "SetStartTime()",
    "debug Benchmarks/CREP_ORA8/Xact_Delete.cpp:160 BuildSQL: Delete --- User [3] Table [LK_REP_TABLE3]\n",
    "SetResponseTime()",
    "OCIStmtPrepare(stmt#1, err#1, \"delete from LK_REP_TABLE3 where id = 7\", 38, 1, 0)",
    "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)",
    "OCIAttrGet(stmt#1, 4, null, 9, err#1)",
    "SetEndTime(1, 0)",
    "returned 1"};

const Events kPrepared = {"OCIHandleAlloc(env#1, 4, 0, null)", "returned 1"};

class DeleteCalls : public WorkloadCalls<CXact_Delete> {
 protected:
  DeleteCalls() { m_benchmark.RecordRow(3, 7); }

  LogRecorder m_log;
};

TEST_F(DeleteCalls, OfPreBenchmarkAllocateAHandleAndPrepareNothing) {
  EXPECT_EQ(PreBenchmark(), kPrepared);
  EXPECT_EQ(PreBenchmark(), Events({"returned 1"}));  // the handle is used again
}

TEST_F(DeleteCalls, AreOneTextWithItsRowCount) {
  Start();
  EXPECT_EQ(Execute(), kSuccess);
  EXPECT_THAT(MapEntries(), IsEmpty());
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(DeleteCalls, EndTheTimerWithTheRowsThatWereThere) {
  Start();
  Oci().RowCounts("delete", {0, 4294967295U});
  const Events none = Execute();
  EXPECT_THAT(Events(none.end() - 2, none.end()), ElementsAre("SetEndTime(0, 0)", "returned 1"));
  const Events most = Execute();
  EXPECT_THAT(Events(most.end() - 2, most.end()), ElementsAre("SetEndTime(4294967295, 0)", "returned 1"));
}

TEST_F(DeleteCalls, OfABenchmarkOfAnotherKindAreTheTimersOnly) {
  CSSBenchmark other;
  m_xact.SetBenchmark(&other);
  Start();
  EXPECT_EQ(Execute(), Events({"SetStartTime()", "SetEndTime(0, 0)", "returned 1"}));
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(10, 7)));
}

TEST_F(DeleteCalls, OfAFailedAllocationEndPreBenchmark) {
  Oci().FailAnyCall(1, StatusFault(kHighStatus));
  EXPECT_EQ(PreBenchmark(), Together({UpToCall(kPrepared, 1),
                                      Reported(kHighStatus, "Unable statement handle in Delete Transaction!"),
                                      {"returned 0"}}));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DeleteCalls, OfAFailedPrepareLeaveTimerAndEntry) {
  Start();
  Oci().FailAnyCall(1, StatusFault(kHighStatus));
  EXPECT_EQ(Execute(), Together({UpToCall(kSuccess, 1),
                                 Reported(kHighStatus, "Unable to prepare statement for delete transaction."),
                                 {"returned 0"}}));
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(10, 7)));
}

TEST_F(DeleteCalls, OfAFailedExecuteLeaveTimerAndEntry) {
  Start();
  Oci().FailAnyCall(2, StatusFault(kHighStatus));
  EXPECT_EQ(Execute(), Together({UpToCall(kSuccess, 2), Reported(kHighStatus), {"returned 0"}}));
  EXPECT_THAT(MapEntries(), ElementsAre(Pair(10, 7)));
}

TEST_F(DeleteCalls, WithARowCountThatCannotBeReadEndTheTimerAndForgetTheRow) {
  Start();
  Oci().FailAnyCall(3, StatusFault(kHighStatus));
  EXPECT_EQ(Execute(), Together({UpToCall(kSuccess, 3), {"SetEndTime(0, 0)", "returned 1"}}));
  EXPECT_THAT(MapEntries(), IsEmpty());
}

TEST_F(DeleteCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  ReturnHighBitsOnly();
  EXPECT_EQ(PreBenchmark(), kPrepared);
  EXPECT_EQ(Execute(), kSuccess);
}

}  // namespace
}  // namespace scripted

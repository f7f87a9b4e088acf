// SPDX-License-Identifier: Apache-2.0
// Everything an update does, in order, when all goes well and at each call that can fail.
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "Recorders.h"
#include "TwoColumnTable.h"
#include "WorkloadCalls.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using testing::Pair;

const Events kBuildText = Together(
    {{"SetStartTime()",
      "debug Benchmarks/CREP_ORA8/Xact_Update.cpp:159 BuildSQL: Update --- User [3] Table [LK_REP_TABLE1]\n"},
     kDescribe,
     kBind,
     {kFreeLoader, kFreeTable}});  // OCI calls 1 to 24

// OCI calls 25 to 27.
Events RunOf(const std::string& text) {
  return {"SetResponseTime()",
          "OCIStmtPrepare(stmt#1, err#1, \"" + text + "\", " + std::to_string(text.size()) + ", 1, 0)",
          "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 0)",
          "OCIAttrGet(stmt#1, 4, null, 9, err#1)"};
}

const Events kPrepared = {"OCIHandleAlloc(env#1, 4, 0, null)", "returned 1"};

class UpdateCalls : public WorkloadCalls<CXact_Update> {
 protected:
  UpdateCalls() {
    DescribeTable(1, kTwoColumns);
    m_benchmark.RecordRow(1, 41);  // to stay, whatever happens
  }
  ~UpdateCalls() override { EXPECT_THAT(MapEntries(), ElementsAre(Pair(42, 41))); }

  // The list of a success whose text was the one of the last execution.
  Events Success() const {
    return Together({kBuildText, RunOf(m_xact.m_szSQL.ToChar()), {"SetEndTime(1, 0)", "returned 1"}});
  }

  LogRecorder m_log;
};

TEST_F(UpdateCalls, OfPreBenchmarkAllocateAHandleAndPrepareNothing) {
  EXPECT_EQ(PreBenchmark(), kPrepared);
  EXPECT_EQ(PreBenchmark(), Events({"returned 1"}));  // the handle is used again
}

TEST_F(UpdateCalls, AreADescribeABindAndOneTextWithItsRowCount) {
  Start();
  const Events events = Execute();
  EXPECT_EQ(events, Success());
  EXPECT_THAT(m_xact.m_szSQL.ToChar(),
              MatchesRegex("update LK_REP_TABLE1 set ID=([0-9]+),COLUMN1='[A-Za-z]{1,4}' where id = [0-9]+"));
  EXPECT_EQ(ExtraHandles(), 1);
}

TEST_F(UpdateCalls, EndTheTimerWithTheRowsThatWereThere) {
  Start();
  Oci().RowCounts("update", {0, 4294967295U});
  const Events none = Execute();
  EXPECT_THAT(Events(none.end() - 2, none.end()), ElementsAre("SetEndTime(0, 0)", "returned 1"));
  const Events most = Execute();
  EXPECT_THAT(Events(most.end() - 2, most.end()), ElementsAre("SetEndTime(4294967295, 0)", "returned 1"));
}

TEST_F(UpdateCalls, OfABenchmarkOfAnotherKindAreTheTimersOnly) {
  CSSBenchmark other;
  m_xact.SetBenchmark(&other);
  Start();
  EXPECT_EQ(Execute(), Events({"SetStartTime()", "SetEndTime(0, 0)", "returned 1"}));
}

TEST_F(UpdateCalls, OfAFailedAllocationEndPreBenchmark) {
  Oci().FailAnyCall(1, StatusFault(kHighStatus));
  EXPECT_EQ(PreBenchmark(), Together({UpToCall(kPrepared, 1),
                                      Reported(kHighStatus, "Unable statement handle in Update Transaction!"),
                                      {"returned 0"}}));
  EXPECT_EQ(ExtraHandles(), 0);
}

class UpdateFailures : public UpdateCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(UpdateFailures, EndTheExecutionAsListed) {
  Start();
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  const Events events = Execute();
  EXPECT_EQ(events, Together({UpToCall(Success(), GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(m_xact.m_szSQL.IsEmpty(), GetParam().nCall < 23);
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
}

std::vector<FailingCalls> ExecuteFailures() {
  std::vector<FailingCalls> rows =
      DescribeFailures("Unable to retrieve table information in Update Transaction");
  rows.push_back({"Prepare", 25, 25,
                  Together({Reported(kHighStatus, "Unable to prepare statement for update transaction."),
                            {"returned 0"}}),
                  1});
  rows.push_back({"Update", 26, 26, Together({Reported(kHighStatus), {"returned 0"}}), 1});
  rows.push_back({"RowCount", 27, 27, {"SetEndTime(0, 0)", "returned 1"}, 1});
  return rows;
}
INSTANTIATE_TEST_SUITE_P(Execute, UpdateFailures, testing::ValuesIn(EachCall(ExecuteFailures())), NameOfPath);

TEST_F(UpdateCalls, AreAllFollowedToTheirFailureButTheFrees) {
  EXPECT_EQ(CountOciCalls(Together({kBuildText, RunOf("")})), 25 + 2);
  EXPECT_EQ(EachCall(ExecuteFailures()).size(), 25U);
}

TEST_F(UpdateCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  ReturnHighBitsOnly();
  EXPECT_EQ(PreBenchmark(), kPrepared);
  const Events events = Execute();
  EXPECT_EQ(events, Success());
}

TEST_F(UpdateCalls, ThatFreeAreNotLookedAt) {
  for (const int nCall : {23, 24}) {
    Start();
    Oci().FailAnyCall(nCall, StatusFault(kHighStatus));
    EXPECT_EQ(Execute().size(), Success().size());
  }
}

}  // namespace
}  // namespace scripted

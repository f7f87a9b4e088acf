// SPDX-License-Identifier: Apache-2.0
// The journals of the transactions of the ID sequence: everything they do, in order, on every path.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::Events;
using scripted::kHighStatus;
using scripted::Oci;
using scripted::OraFault;
using scripted::StatusFault;
using testing::ElementsAre;

class CreateSequenceCalls : public plugin_test::SchemaTest {
 protected:
  CreateSequenceCalls() { m_benchmark.SetBenchmarkScale(1.0); }

  Events Run() {
    Bind(m_xact);
    return m_journal.Run([&] { return m_xact.Execute(); });
  }

  plugin_test::Counting<CXact_Create_Sequence> m_xact;
};

const char* const kAlloc = "OCIHandleAlloc(env#1, 4, 0, null)";
const char* const kPrepareCreate =
    "OCIStmtPrepare(stmt#1, err#1, \"CREATE SEQUENCE LK_REP_ID_SEQ START WITH 1001 CACHE 100\", 55, 1, 0)";
const char* const kExecute = "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, 32)";
const char* const kFree = "OCIHandleFree(stmt#1, 4)";

TEST_F(CreateSequenceCalls, ThatSucceedCommitAndEndTheTimerBeforeTheFree) {
  EXPECT_THAT(Run(), ElementsAre("SetStartTime()", kAlloc, kPrepareCreate, kExecute, "SetEndTime(0, 0)",
                                 kFree, "returned 1"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(CreateSequenceCalls, WithoutAHandleReportTheWholeStatus) {
  Oci().FailCall("OCIHandleAlloc", 1, StatusFault(kHighStatus));
  EXPECT_THAT(Run(), ElementsAre("SetStartTime()", kAlloc, "SetEndTime(0, 0)",
                                 "HandleError(65541, err#1, 0, 0)", "reported ERROR -1", "returned 0"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(CreateSequenceCalls, WithAFailedPrepareReportTheWholeStatus) {
  Oci().FailCall("OCIStmtPrepare", 1, StatusFault(kHighStatus));
  EXPECT_THAT(Run(),
              ElementsAre("SetStartTime()", kAlloc, kPrepareCreate, "SetEndTime(0, 0)",
                          "HandleError(65541, err#1, 0, 0)", "reported ERROR -1", kFree, "returned 0"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(CreateSequenceCalls, WithAFailedExecuteReportTheLowBits) {
  Oci().FailCall("OCIStmtExecute", 1, StatusFault(kHighStatus));
  EXPECT_THAT(Run(), ElementsAre("SetStartTime()", kAlloc, kPrepareCreate, kExecute, "SetEndTime(0, 0)",
                                 "HandleError(5, err#1, 0, 0)", "reported ERROR -1", kFree, "returned 0"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(CreateSequenceCalls, OnAnExistingSequenceIgnoreNothing) {
  Oci().FailSql("CREATE SEQUENCE", 1, OraFault(955));
  EXPECT_THAT(Run(),
              ElementsAre("SetStartTime()", kAlloc, kPrepareCreate, kExecute, "SetEndTime(0, 0)",
                          "HandleError(65535, err#1, 0, 0)", "reported ERROR 955", kFree, "returned 0"));
}

}  // namespace

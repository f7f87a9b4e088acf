// SPDX-License-Identifier: Apache-2.0
// Lost sessions, and calls that do not come back.
#include <semaphore>

#include "WorkloadFixture.h"
#include "lkbench/Failure.h"

namespace lkbench {
namespace {

class WorkloadLossTest : public WorkloadTest {
 protected:
  WorkloadLossTest() {
    m_work.resize(1);
    m_context.reconnection.first = 1ms;
    m_context.reconnection.longest = 4ms;
  }
  // Loses the session at the given executions.
  void LoseAt(std::vector<int> lost) {
    Add(0, {1, 1}, [this, lost](FakeXact& xact) {
      if (std::ranges::find(lost, ++m_calls) == lost.end()) return OneRow(xact);
      m_users.Driver(0).Fail(3113);
      return 0;
    });
  }
  Phase Of(std::uint64_t count) const {
    Phase phase = Long();
    phase.count = count;
    return phase;
  }
};

TEST_F(WorkloadLossTest, ALostSessionIsReopenedAndTheTransactionsArePreparedAnew) {
  LoseAt({3});
  const RunRecord record = Run({Of(10)});
  EXPECT_EQ(record.measured.total.executions, 10u);
  EXPECT_EQ(record.measured.total.errors[static_cast<size_t>(ErrorClass::kSessionLost)], 1u);
  EXPECT_EQ(record.lost_users, 0);
  EXPECT_EQ(m_users.Happened().Count("connect again"), 1);
  EXPECT_EQ(m_users.Happened().Count("PreBenchmark"), 2);
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 2);
}

TEST_F(WorkloadLossTest, TheOutageAndItsLengthAreAnEvent) {
  LoseAt({3});
  m_users.Driver(0).m_refusals = 2;
  const RunRecord record = Run({Of(10)});
  ASSERT_EQ(record.events.size(), 2u);
  EXPECT_EQ(record.events[1].kind, EventKind::kOutage);
  EXPECT_EQ(record.events[1].user, 1);
  EXPECT_GE(record.events[1].length, 3'000'000u);  // pauses of 1 and 2 ms
  EXPECT_EQ(m_users.Happened().Count("connect again"), 3);
}

TEST_F(WorkloadLossTest, ASessionThatCannotBePreparedIsTriedAgain) {
  LoseAt({1});
  int prepared = 0;
  m_xacts[0]->m_PreBenchmark = [&] { return ++prepared == 2 ? -1 : 1; };
  EXPECT_EQ(Run({Of(5)}).measured.total.executions, 5u);
  EXPECT_EQ(prepared, 3);
}

TEST_F(WorkloadLossTest, ALostSessionIsReportedAgainWhenTheNewOneIsLost) {
  LoseAt({2, 4});
  Run({Of(10)});
  ASSERT_EQ(m_users.Log().Lines().size(), 1u);
  EXPECT_EQ(m_users.Log().Lines()[0].count, 2u);
}

TEST_F(WorkloadLossTest, AUserThatStaysWithoutASessionIsLostAtTheEnd) {
  LoseAt({3});
  m_users.Driver(0).m_refusals = 1'000'000;
  Phase phase = Long();
  phase.duration = 30ms;
  const RunRecord record = Run({phase});
  EXPECT_EQ(record.lost_users, 1);
  EXPECT_EQ(record.events.back().kind, EventKind::kUserLost);
  EXPECT_EQ(record.measured.total.executions, 3u);
  EXPECT_EQ(m_ticks.back().users, 0);
}

TEST_F(WorkloadLossTest, ByThePolicyToStopNothingIsReopenedAndNoPhaseFollows) {
  LoseAt({3});
  m_context.reconnection.policy = OnDisconnect::kStop;
  const RunRecord record = Run({Of(10), Of(10)});
  EXPECT_EQ(m_users.Happened().Count("connect again"), 0);
  EXPECT_EQ(record.lost_users, 1);
  EXPECT_EQ(record.phases.size(), 1u);
}

TEST_F(WorkloadLossTest, ErrorsAreKeptByNumberWithTheirTimes) {
  LoseAt({2, 4, 5});
  const RunRecord record = Run({Of(10)});
  ASSERT_EQ(record.errors.size(), 1u);
  EXPECT_EQ(record.errors[0].error_class, ErrorClass::kSessionLost);
  EXPECT_EQ(record.errors[0].code, 3113);
  EXPECT_EQ(record.errors[0].count, 3u);
  EXPECT_EQ(record.errors[0].text, "ORA-3113");
  EXPECT_LT(record.errors[0].first, record.errors[0].last);
}

// A call that hangs until the test lets it go.
class HangTest : public WorkloadLossTest {
 protected:
  ~HangTest() override { m_go.release(10); }
  void HangAt(int call) {
    Add(0, {1, 1}, [this, call](FakeXact& xact) {
      if (++m_calls == call) m_go.acquire();
      return OneRow(xact);
    });
  }
  // All users are done after so many executions, however long that takes.
  Phase Endless() const {
    Phase phase = Of(10);
    phase.duration = {};
    return phase;
  }
  // What a workload says that cannot begin.
  std::string Problem(const Patience& patience) {
    try {
      Run({Long()}, patience);
    } catch (const PrepareError& error) {
      return error.what();
    }
    return "it began";
  }
  std::counting_semaphore<> m_go{0};
};

TEST_F(HangTest, PastTheDeadlineCallsAreBrokenOffAndThenTheirUserIsGivenUp) {
  HangAt(3);
  Phase phase = Long();
  phase.duration = 20ms;
  const RunRecord record = Run({phase, phase}, {20ms, 300ms});
  EXPECT_GE(m_users.Happened().Count("cancel"), 1);
  EXPECT_EQ(record.given_up_users, 1);
  EXPECT_EQ(record.events.back().kind, EventKind::kUserGivenUp);
  EXPECT_EQ(record.phases.size(), 1u);
  EXPECT_EQ(record.measured.total.executions, 2u);
  m_go.release();
}

TEST_F(HangTest, ACallThatComesBackWhenItIsBrokenOffIsAFailure) {
  Add(0, {1}, [this](FakeXact& xact) {
    if (++m_calls < 3) return OneRow(xact);
    while (m_users.Happened().Count("cancel") == 0) std::this_thread::sleep_for(1ms);
    m_users.Driver(0).Fail(1013);
    return 0;
  });
  Phase phase = Long();
  phase.duration = 20ms;
  const RunRecord record = Run({phase}, {20ms, 10min});
  EXPECT_EQ(record.given_up_users, 0);
  EXPECT_EQ(record.measured.total.errors[static_cast<size_t>(ErrorClass::kCancelled)], 1u);
}

TEST_F(HangTest, ACancelledRunEndsAlsoWhenACallHangs) {
  Add(0, {1}, [this](FakeXact&) {
    m_cancel.Set();
    m_go.acquire();
    return 0;
  });
  const RunRecord record = Run({Long()}, {10ms, 50ms});
  EXPECT_TRUE(record.interrupted);
  EXPECT_EQ(record.given_up_users, 1);
  m_go.release();
}

TEST_F(HangTest, ACallThatTakesTooLongIsBrokenOffAndItsUserGoesOn) {
  Add(0, {1}, [this](FakeXact& xact) {
    if (++m_calls != 3) return OneRow(xact);
    while (m_users.Happened().Count("cancel") == 0) std::this_thread::sleep_for(1ms);
    m_users.Driver(0).Fail(1013);
    return 0;
  });
  const RunRecord record = Run({Endless()}, {10min, 10min, 20ms});
  EXPECT_EQ(record.measured.total.executions, 10u);
  EXPECT_EQ(record.measured.total.errors[static_cast<size_t>(ErrorClass::kCancelled)], 1u);
  EXPECT_EQ(record.given_up_users, 0);
}

TEST_F(HangTest, WithoutALimitACallMayTakeAsLongAsItDoes) {
  Add(0, {1}, [this](FakeXact& xact) {
    if (++m_calls == 3) std::this_thread::sleep_for(150ms);
    return OneRow(xact);
  });
  EXPECT_EQ(Run({Endless()}, {10min, 1ms}).measured.total.failures, 0u);
  EXPECT_EQ(m_users.Happened().Count("cancel"), 0);
}

TEST_F(HangTest, AUserWhoseCallDoesNotComeBackIsGivenUpAndTheOthersGoOn) {
  m_work.resize(2);
  m_work[1].user = &m_users[1];
  HangAt(1);
  Add(1, {1, 1}, [this](FakeXact& xact) {
    std::this_thread::sleep_for(1ms);
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.duration = 600ms;
  const RunRecord record = Run({phase, phase}, {10min, 20ms, 20ms});
  EXPECT_EQ(record.given_up_users, 1);
  EXPECT_EQ(record.phases.size(), 2u);
  EXPECT_EQ(record.phases[1].user_executions[0], 0u);
  EXPECT_GT(record.phases[1].user_executions[1], 0u);
  EXPECT_EQ(m_ticks.back().users, 0);
  m_go.release();
}

TEST_F(HangTest, APhaseThatOnlyItsCountEndsEndsWhenNoUserIsLeft) {
  HangAt(3);
  const RunRecord record = Run({Endless(), Endless()}, {10min, 20ms, 20ms});
  EXPECT_EQ(record.given_up_users, 1);
  EXPECT_EQ(record.phases.size(), 1u);
  EXPECT_EQ(record.measured.total.executions, 2u);
  m_go.release();
}

TEST_F(HangTest, APreparationThatTakesTooLongIsBrokenOffAndThenTold) {
  HangAt(-1);
  m_xacts[0]->m_PreBenchmark = [this] {
    m_go.acquire();
    return 1;
  };
  EXPECT_EQ(Problem({10min, 20ms, 20ms}),
            "workload: user 1 has a call that does not come back (PreBenchmark)");
  EXPECT_TRUE(m_workload->HasGivenUp());
  m_go.release();
}

TEST_F(HangTest, ACleanUpThatTakesTooLongIsGivenUpAndTheResultsStay) {
  Add(0, {1}, OneRow);
  m_xacts[0]->m_PostBenchmark = [this] {
    m_go.acquire();
    return 1;
  };
  const RunRecord record = Run({Endless()}, {10min, 20ms, 20ms});
  EXPECT_EQ(record.given_up_users, 1);
  EXPECT_EQ(record.measured.total.executions, 10u);
  m_go.release();
}

TEST_F(HangTest, ACancelEndsAPreparationThatHangs) {
  HangAt(-1);
  m_xacts[0]->m_PreBenchmark = [this] {
    m_cancel.Set();
    m_go.acquire();
    return 1;
  };
  EXPECT_EQ(Problem({20ms, 20ms}), "workload: user 1 has a call that does not come back (PreBenchmark)");
  m_go.release();
}

}  // namespace
}  // namespace lkbench

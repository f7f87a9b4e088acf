// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/Workload.h"

#include <stdexcept>

#include "WorkloadFixture.h"
#include "lkbench/Failure.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

TEST_F(WorkloadTest, EveryExecutionOfEveryUserIsCountedAndCommitted) {
  AddToAll({1}, Until(3000, OneRow));
  const Part result = Run().measured;
  EXPECT_EQ(result.total.executions, static_cast<std::uint64_t>(m_users.Happened().Count("commit")));
  EXPECT_GE(result.total.executions, 3000u);
  EXPECT_EQ(result.total.rows, result.total.executions);
  EXPECT_EQ(result.total.failures, 0u);
  EXPECT_EQ(result.total.response.Count(), result.total.executions);
  EXPECT_EQ(result.total.database.Count(), result.total.executions);
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 3);
}

TEST_F(WorkloadTest, TheTotalIsTheSumOfItsParts) {
  AddToAll({3}, Until(5000, OneRow), L"First");
  AddToAll({1}, Until(5000, OneRow), L"Second");
  const Part result = Run().measured;
  ASSERT_EQ(result.xacts.size(), 2u);
  EXPECT_EQ(result.xacts[0].executions + result.xacts[1].executions, result.total.executions);
  EXPECT_EQ(result.xacts[0].rows + result.xacts[1].rows, result.total.rows);
  EXPECT_EQ(result.xacts[0].response.Sum() + result.xacts[1].response.Sum(), result.total.response.Sum());
  EXPECT_EQ(result.xacts[0].name, "First");
}

TEST_F(WorkloadTest, TransactionsAreDrawnByWeight) {
  AddToAll({3}, Until(20000, OneRow), L"First");
  AddToAll({1}, Until(20000, OneRow), L"Second");
  const Part result = Run().measured;
  const double share =
      static_cast<double>(result.xacts[0].executions) / static_cast<double>(result.total.executions);
  EXPECT_NEAR(share, 0.75, 0.03);
}

TEST_F(WorkloadTest, AFailureIsRolledBackAndKeptOutOfTheTimes) {
  AddToAll({1}, Until(300, [this](FakeXact& xact) { return m_calls % 2 == 0 ? OneRow(xact) : 0; }));
  const Part result = Run().measured;
  EXPECT_GT(result.total.failures, 0u);
  EXPECT_EQ(result.total.response.Count() + result.total.failures, result.total.executions);
  EXPECT_GE(m_users.Happened().Count("rollback"), static_cast<int>(result.total.failures));
}

TEST_F(WorkloadTest, ACommitThatFailsIsAFailedExecution) {
  for (int user = 0; user < kUsers; ++user) m_users.Driver(user).m_bCommits = 0;
  AddToAll({1}, Until(30, OneRow));
  const Part result = Run().measured;
  EXPECT_EQ(result.total.failures, result.total.executions);
  EXPECT_EQ(result.total.rows, 0u);
}

TEST_F(WorkloadTest, AnExceptionIsOneFailedExecutionReportedOnceWithItsText) {
  AddToAll({1}, Until(60, [](FakeXact&) -> int { throw std::out_of_range("index 7 of 5"); }));
  const Part result = Run().measured;
  EXPECT_EQ(result.total.failures, result.total.executions);
  ASSERT_EQ(m_users.Log().Lines().size(), 1u);
  EXPECT_THAT(m_users.Log().Lines()[0].text, HasSubstr("index 7 of 5"));
  EXPECT_GE(m_users.Log().Lines()[0].count, 60u);
}

TEST_F(WorkloadTest, ATransactionThatEndsWithoutItsTimerHasNoDatabaseTime) {
  AddToAll({1}, Until(30, [](FakeXact&) { return 1; }));
  const Part result = Run().measured;
  EXPECT_EQ(result.total.database.Count(), 0u);
  EXPECT_GE(result.total.response.Count(), 1u);
}

TEST_F(WorkloadTest, TheTimerOfTheExecutionBeforeIsNotTakenAgain) {
  std::atomic<bool> first{true};
  m_work.resize(1);
  Add(0, {1}, Until(10, [&](FakeXact& xact) { return first.exchange(false) ? OneRow(xact) : 1; }));
  EXPECT_EQ(Run().measured.total.database.Count(), 1u);
}

TEST_F(WorkloadTest, NobodyWorksBeforeEveryUserIsPrepared) {
  AddToAll({1}, Until(10, OneRow));
  m_xacts[2]->m_PreBenchmark = [] {
    std::this_thread::sleep_for(30ms);
    return 1;
  };
  Run();
  const std::vector<std::string> lines = m_users.Happened().Lines();
  EXPECT_EQ(std::count(lines.begin(), std::find(lines.begin(), lines.end(), "Execute"), "PreBenchmark"), 3);
}

TEST_F(WorkloadTest, AUserThatCannotBePreparedEndsAllBeforeAnybodyWorks) {
  AddToAll({1}, OneRow);
  m_xacts[1]->m_PreBenchmark = [] { return -1; };
  try {
    Run();
    FAIL() << "not refused";
  } catch (const PrepareError& error) {
    EXPECT_STREQ(error.what(), "workload: user 2 failed (Fake, PreBenchmark)");
  }
  EXPECT_EQ(m_users.Happened().Count("Execute"), 0);
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 3);
}

TEST_F(WorkloadTest, TheTimeEndsIt) {
  AddToAll({1}, OneRow);
  Phase phase = Long();
  phase.duration = 20ms;
  const RunRecord record = Run({phase});
  EXPECT_GE(record.elapsed, 20'000'000u);
  EXPECT_GE(record.measured.elapsed, 20'000'000u);
  EXPECT_GT(record.measured.total.executions, 0u);
}

TEST_F(WorkloadTest, AUserWhoseSessionIsLostEndsAloneAndIsCounted) {
  std::atomic<bool> ended{false};
  const auto go_on = [&](FakeXact& xact) {
    if (ended && ++m_calls >= 50) m_cancel.Set();
    return OneRow(xact);
  };
  Add(0, {1}, go_on);
  Add(1, {1}, [&](FakeXact&) {
    m_users.Driver(1).LoseSession();
    return 0;
  });
  m_xacts[1]->m_PostBenchmark = [&] {
    ended = true;
    return 1;
  };
  Add(2, {1}, go_on);
  m_context.reconnection.policy = OnDisconnect::kStop;
  const RunRecord record = Run();
  const Part& result = record.measured;
  EXPECT_EQ(record.lost_users, 1);
  EXPECT_EQ(result.total.failures, 1u);
  EXPECT_GE(result.total.executions, 50u);
}

TEST_F(WorkloadTest, WhatACancelBreaksOffIsNoFailure) {
  AddToAll({1}, [this](FakeXact&) {
    m_cancel.Set();
    return 0;
  });
  const Part result = Run().measured;
  EXPECT_EQ(result.total.failures, 0u);
  EXPECT_EQ(m_users.Happened().Count("rollback"), m_users.Happened().Count("Execute"));
}

}  // namespace
}  // namespace lkbench

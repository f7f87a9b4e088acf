// SPDX-License-Identifier: Apache-2.0
// Phases, warm-up, pace, common commits, and that every sum agrees with its parts.
#include <numeric>
#include <random>

#include "WorkloadFixture.h"
#include "lkbench/workload/TableWatch.h"

namespace lkbench {
namespace {

// The intervals of one kind in one phase, added up.
Tally SumOf(const RunRecord& record, size_t phase, bool warm_up) {
  Tally sum;
  for (const Interval& interval : record.intervals)
    if (interval.phase == phase && interval.warm_up == warm_up) sum.Add(interval.total);
  return sum;
}

void ExpectEqual(const Tally& one, const Tally& other) {
  EXPECT_EQ(one.executions, other.executions);
  EXPECT_EQ(one.failures, other.failures);
  EXPECT_EQ(one.rows, other.rows);
  EXPECT_EQ(one.undone, other.undone);
  EXPECT_EQ(one.errors, other.errors);
}

void ExpectSound(const Part& part, bool has_tables) {
  Tally xacts;
  for (const XactTotals& xact : part.xacts) {
    xacts.Add(xact);
    EXPECT_EQ(xact.service.Count(), xact.executions - xact.failures);
    EXPECT_EQ(xact.response.Count(), xact.executions - xact.failures);
  }
  ExpectEqual(part.total, xacts);
  Tally tables;
  std::uint64_t times = 0;
  for (const TableTotals& table : part.tables) {
    tables.Add(table);
    times += table.response.Count();
  }
  if (has_tables) {
    ExpectEqual(part.total, tables);
    EXPECT_EQ(times, part.total.response.Count());
  }
  EXPECT_EQ(part.total.failures,
            std::accumulate(part.total.errors.begin(), part.total.errors.end(), std::uint64_t{0}));
}

// All that RunRecord.h promises of sums.
void ExpectSound(const RunRecord& record) {
  Tally measured;
  std::uint64_t failures = 0;
  for (size_t i = 0; i < record.phases.size(); ++i) {
    const PhaseRecord& phase = record.phases[i];
    ExpectSound(phase.warm_up, false);
    EXPECT_TRUE(phase.warm_up.tables.empty());
    ExpectSound(phase.measured, true);
    ExpectEqual(phase.warm_up.total, SumOf(record, i, true));
    ExpectEqual(phase.measured.total, SumOf(record, i, false));
    EXPECT_EQ(phase.measured.total.executions,
              std::accumulate(phase.user_executions.begin(), phase.user_executions.end(), std::uint64_t{0}));
    measured.Add(phase.measured.total);
    failures += phase.warm_up.total.failures + phase.measured.total.failures;
  }
  ExpectSound(record.measured, true);
  ExpectEqual(record.measured.total, measured);
  for (const ErrorRecord& error : record.errors) failures -= error.count;
  EXPECT_EQ(failures, 0u);
}

TEST_F(WorkloadTest, ACountIsReachedExactly) {
  AddToAll({1}, OneRow);
  Phase phase = Long();
  phase.count = 1000;
  const RunRecord record = Run({phase});
  EXPECT_EQ(record.measured.total.executions, 1000u);
  EXPECT_EQ(m_users.Happened().Count("Execute"), 1000);
  EXPECT_FALSE(record.interrupted);
}

TEST_F(WorkloadTest, AWarmUpIsReportedApartAndNotCounted) {
  AddToAll({1}, OneRow);
  Phase phase = Long();
  phase.warm_up = 30ms;
  phase.count = 100;
  const RunRecord record = Run({phase});
  const PhaseRecord& only = record.phases.at(0);
  EXPECT_GT(only.warm_up.total.executions, 0u);
  EXPECT_EQ(only.measured.total.executions, 100u);
  EXPECT_EQ(only.warm_up.total.executions + 100u,
            static_cast<std::uint64_t>(m_users.Happened().Count("Execute")));
  EXPECT_EQ(only.warm_up_end - only.begin, 30'000'000u);
  EXPECT_EQ(only.warm_up.elapsed, 30'000'000u);
  EXPECT_EQ(record.measured.total.executions, 100u);
  ExpectSound(record);
}

TEST_F(WorkloadTest, PhasesFollowEachOtherWithTheirOwnUsersAndMix) {
  AddToAll({1, 0}, OneRow, L"First");
  AddToAll({1, 1}, OneRow, L"Second");
  Phase one = Long(), two = Long();
  one.count = 300;
  two.name = "burst";
  two.users = 1;
  two.count = 200;
  const RunRecord record = Run({one, two});
  ASSERT_EQ(record.phases.size(), 2u);
  EXPECT_GT(record.phases[0].measured.xacts[0].executions, 0u);
  EXPECT_EQ(record.phases[1].measured.xacts[0].executions, 0u);
  EXPECT_EQ(record.phases[1].measured.xacts[1].executions, 200u);
  EXPECT_EQ(record.phases[1].user_executions, std::vector<std::uint64_t>{200});
  EXPECT_LE(record.phases[0].end, record.phases[1].begin);
  EXPECT_EQ(record.measured.total.executions, 500u);
  EXPECT_EQ(m_users.Happened().Count("PreBenchmark"), 6);
  ExpectSound(record);
}

TEST_F(WorkloadTest, WithARateTheResponseIncludesTheWaitForAFreeUser) {
  m_work.resize(1);
  Add(0, {1}, [](FakeXact& xact) {
    std::this_thread::sleep_for(4ms);
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.rate = 1000;
  phase.count = 20;
  const Part part = Run({phase}).measured;
  EXPECT_EQ(part.total.executions, 20u);
  // Due after 19 ms, begun after 19 executions of 4 ms at least.
  EXPECT_GE(part.total.response.Max(), (20 * 4 - 19) * 1'000'000u);
  EXPECT_GE(part.total.response.Sum(), part.total.service.Sum());
  EXPECT_GE(part.total.service.Sum(), 80'000'000u);
}

TEST_F(WorkloadTest, WithoutARateResponseAndServiceTimeAreOne) {
  AddToAll({1}, Until(100, OneRow));
  const Part part = Run().measured;
  EXPECT_EQ(part.total.response.Sum(), part.total.service.Sum());
}

TEST_F(WorkloadTest, WhatIsDueButNotBegunIsTheBacklogAndNothingAborts) {
  m_work.resize(1);
  Add(0, {1}, [](FakeXact& xact) {
    std::this_thread::sleep_for(20ms);
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.rate = 1000;
  phase.duration = 100ms;
  const RunRecord record = Run({phase});
  EXPECT_GE(record.phases[0].most_backlog, 50u);
  EXPECT_EQ(m_ticks.back().backlog, record.phases[0].most_backlog);
  EXPECT_LE(record.measured.total.executions, 6u);
  EXPECT_EQ(record.measured.total.failures, 0u);
}

TEST_F(WorkloadTest, SeveralExecutionsShareACommitAndTheLastOnesGetTheirs) {
  m_work.resize(1);
  Add(0, {1}, OneRow);
  Phase phase = Long();
  phase.count = 25;
  phase.commit_every = 10;
  EXPECT_EQ(Run({phase}).measured.total.executions, 25u);
  EXPECT_EQ(m_users.Happened().Count("commit"), 3);
}

TEST_F(WorkloadTest, AFailureUndoesWhatWasNotCommittedAndThatIsCounted) {
  m_work.resize(1);
  Add(0, {1}, [this](FakeXact& xact) { return ++m_calls == 8 ? 0 : OneRow(xact); });
  Phase phase = Long();
  phase.count = 12;
  phase.commit_every = 5;
  const RunRecord record = Run({phase});
  EXPECT_EQ(record.measured.total.executions, 12u);
  EXPECT_EQ(record.measured.total.failures, 1u);
  EXPECT_EQ(record.measured.total.undone, 2u);  // the sixth and the seventh
  EXPECT_EQ(m_users.Happened().Count("commit"), 2);
  ExpectSound(record);
}

TEST_F(WorkloadTest, UsersThinkBetweenExecutions) {
  m_work.resize(1);
  Add(0, {1}, OneRow);
  Phase phase = Long();
  phase.count = 4;
  phase.think_min = 5ms;
  phase.think_max = 10ms;
  EXPECT_GE(Run({phase}).elapsed, 15'000'000u);
}

// Computes until this thread has done so for that long.
void Compute(std::chrono::milliseconds wanted) {
  const auto used = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  };
  for (const auto until = used() + wanted; used() < until;) continue;
}

TEST_F(WorkloadTest, WhatThisProcessComputedIsToldByPhase) {
  m_work.resize(1);
  Add(0, {1}, [this](FakeXact& xact) {
    Compute(m_calls++ == 0 ? 60ms : 20ms);
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.count = 1;
  const RunRecord record = Run({phase, phase});
  EXPECT_GE(record.phases[0].measured.processor, 60'000'000u);
  EXPECT_GE(record.phases[1].measured.processor, 20'000'000u);
  EXPECT_EQ(record.phases[0].warm_up.processor, 0u);
  EXPECT_EQ(record.measured.processor,
            record.phases[0].measured.processor + record.phases[1].measured.processor);
}

TEST_F(WorkloadTest, WhatAWarmUpComputedIsToldApart) {
  m_work.resize(1);
  Add(0, {1}, [this](FakeXact& xact) {
    if (m_calls++ == 0) Compute(60ms);
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.warm_up = 10ms;
  phase.count = 1;
  const RunRecord record = Run({phase});
  EXPECT_GE(record.phases[0].warm_up.processor + record.phases[0].measured.processor, 60'000'000u);
  EXPECT_GT(record.phases[0].warm_up.processor, 0u);
}

TEST_F(WorkloadTest, EveryIntervalIsShownOnce) {
  AddToAll({1}, OneRow);
  Phase phase = Long();
  phase.duration = 30ms;
  phase.warm_up = 10ms;
  const RunRecord record = Run({phase});
  ASSERT_EQ(m_ticks.size(), record.intervals.Size());
  EXPECT_TRUE(m_ticks.front().warm_up);
  EXPECT_FALSE(m_ticks.back().warm_up);
  EXPECT_EQ(m_ticks.back().end, record.phases[0].end);
}

TEST_F(WorkloadTest, PhasesAndWarmUpEndsAreEvents) {
  AddToAll({1}, OneRow);
  Phase phase = Long();
  phase.name = "base";
  phase.duration = 10ms;
  phase.warm_up = 10ms;
  const RunRecord record = Run({phase});
  ASSERT_EQ(record.events.size(), 2u);
  EXPECT_EQ(record.events[0].kind, EventKind::kPhase);
  EXPECT_EQ(record.events[0].text, "base");
  EXPECT_EQ(record.events[1].kind, EventKind::kWarmUpEnd);
  EXPECT_EQ(record.events[1].begin, 10'000'000u);
}

TEST_F(WorkloadTest, ACancelThatATransactionSetsEndsThePausesOfTheOthers) {
  AddToAll({1}, [this](FakeXact& xact) {
    if (++m_calls == kUsers) {
      std::this_thread::sleep_for(100ms);  // the others fall asleep
      m_cancel.Flag()->store(true);
    }
    return OneRow(xact);
  });
  Phase phase = Long();
  phase.think_min = phase.think_max = 1min;
  const RunRecord record = Run({phase});
  EXPECT_TRUE(record.interrupted);
  EXPECT_EQ(record.given_up_users, 0);
}

TEST_F(WorkloadTest, AnInterruptedRunKeepsAllAndSaysSo) {
  AddToAll({1, 1}, Until(100, OneRow));
  const RunRecord record = Run({Long(), Long()});
  EXPECT_TRUE(record.interrupted);
  EXPECT_EQ(record.phases.size(), 1u);
  EXPECT_GE(record.measured.total.executions, 100u);
  EXPECT_EQ(record.events.back().kind, EventKind::kInterrupted);
  ExpectSound(record);
}

// Random outcomes: done, failed with a number, failed with an exception, a commit that fails now and then.
TEST_F(WorkloadTest, SumsAgreeWhateverHappens) {
  std::atomic<unsigned> calls{0};
  const auto body = [&](FakeXact& xact) -> int {
    std::minstd_rand random(++calls);
    random.discard(5);
    const auto draw = random() % 10;
    if (draw != 9) NoteStatement("SELECT * FROM LK_REP_TABLE" + std::to_string(1 + random() % 4));
    if (draw == 0) throw std::runtime_error("thrown");
    auto& driver = dynamic_cast<FakeDriver&>(*xact.GetDriver());
    if (draw < 3) driver.Fail(draw == 1 ? 60 : 1);
    driver.m_bCommits = draw == 3 ? 0 : 1;
    return draw < 3 ? 0 : OneRow(xact);
  };
  m_context.columns = {0, 5, 5, 7};
  AddToAll({2, 1}, body, L"First");
  AddToAll({1, 0}, body, L"Second");
  for (size_t i = 0; i < m_xacts.size(); ++i) m_xacts[i]->SetDriver(&m_users.Driver(static_cast<int>(i % 3)));
  Phase one = Long(), two = Long();
  one.warm_up = 20ms;
  one.count = 2000;
  one.commit_every = 7;
  two.users = 2;
  two.rate = 100'000;
  two.count = 1000;
  const RunRecord record = Run({one, two});
  ExpectSound(record);
  EXPECT_EQ(record.measured.total.executions, 3000u);
  for (const ErrorClass each : {ErrorClass::kDeadlock, ErrorClass::kDuplicateKey, ErrorClass::kOther})
    EXPECT_GT(record.measured.total.errors[static_cast<size_t>(each)], 0u) << NameOf(each);
  EXPECT_GT(record.measured.total.undone, 0u);
  ASSERT_EQ(record.measured.tables.size(), 4u);  // no statement named a fourth one that is known
  EXPECT_EQ(record.measured.tables[0].name, "(unknown)");
  EXPECT_EQ(record.measured.tables[3].name, "LK_REP_TABLE3");
  EXPECT_EQ(record.measured.tables[3].columns, 7);
}

}  // namespace
}  // namespace lkbench

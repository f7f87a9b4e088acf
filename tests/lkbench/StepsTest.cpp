// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Steps.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

#include "Fakes.h"
#include "lkbench/Barrier.h"
#include "lkbench/Failure.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

class StepsTest : public testing::Test {
 protected:
  // One fake transaction for each of three users.
  StepsTest() {
    for (int i = 0; i < m_users.Count(); ++i) {
      auto xact = std::make_unique<FakeXact>(m_users.Happened());
      xact->SetCancelFlag(m_cancel.Flag());
      m_xacts.push_back(xact.get());
      m_shares.push_back({&m_users[i], {}});
      m_shares.back().xacts.push_back(std::move(xact));
    }
  }
  StepResult Run() { return StepRunner(m_cancel, m_breaker).Run(m_shares); }
  // The phases in the order in which they happened, equal neighbours once.
  std::vector<std::string> Phases() {
    std::vector<std::string> lines = m_users.Happened().Lines();
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
  }

  FakeUsers m_users{3};
  CancelSwitch m_cancel;
  CallBreaker m_breaker;
  std::vector<FakeXact*> m_xacts;
  std::vector<StepShare> m_shares;
};

TEST_F(StepsTest, EveryPhaseIsOverForAllBeforeTheNextBegins) {
  m_xacts[1]->m_PreBenchmark = m_xacts[2]->m_PreIteration = m_xacts[0]->m_Execute = [] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    return 1;
  };
  EXPECT_TRUE(Run().done);
  EXPECT_THAT(Phases(), testing::ElementsAre("PreBenchmark", "PreIteration", "Execute", "PostBenchmark"));
  EXPECT_EQ(m_users.Happened().Count("Execute"), 3);
}

TEST_F(StepsTest, AUserThatFailsCancelsTheOthersAndAllAreEnded) {
  m_xacts[1]->m_PreIteration = [] { return 0; };
  const StepResult result = Run();
  EXPECT_FALSE(result.done);
  EXPECT_EQ(result.failure, "user 2 failed (Fake, PreIteration)");
  EXPECT_TRUE(m_cancel.IsSet());
  EXPECT_EQ(m_users.Happened().Count("Execute"), 0);
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 3);
}

TEST_F(StepsTest, ANegativeResultIsAFailureToo) {
  m_xacts[0]->m_PreBenchmark = [] { return -1; };
  EXPECT_FALSE(Run().done);
  EXPECT_EQ(m_users.Happened().Count("PreIteration"), 0);
}

TEST_F(StepsTest, AnExceptionIsOneFailureWithItsText) {
  m_xacts[2]->m_Execute = []() -> int { throw std::out_of_range("index 7 of 5"); };
  EXPECT_EQ(Run().failure, "user 3 failed (Fake, Execute)");
  ASSERT_EQ(m_users.Log().Lines().size(), 1u);
  EXPECT_THAT(m_users.Log().Lines()[0].text, HasSubstr("index 7 of 5"));
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 3);
}

TEST_F(StepsTest, AUserThatSeesTheCancelEndsAndWhatItLeftOpenIsRolledBackBeforeAnybodyFinishes) {
  m_xacts[0]->m_Execute = [] { return 0; };
  m_xacts[1]->m_Execute = [this] {
    while (m_xacts[1]->CancelXact() == 0) std::this_thread::yield();
    return 0;
  };
  EXPECT_EQ(Run().failure, "user 1 failed (Fake, Execute)");
  const std::vector<std::string> lines = m_users.Happened().Lines();
  const auto last_rollback = std::find(lines.rbegin(), lines.rend(), "rollback").base();
  const auto first_end = std::find(lines.begin(), lines.end(), "PostBenchmark");
  EXPECT_NE(last_rollback, lines.begin());
  EXPECT_LE(last_rollback, first_end);
}

TEST_F(StepsTest, ACancelThatCameBeforeLeavesOnlyTheFirstAndTheLastPhase) {
  m_cancel.SetBySignal(2);
  const StepResult result = Run();
  EXPECT_FALSE(result.done);
  EXPECT_EQ(result.failure, "");
  EXPECT_EQ(m_users.Happened().Count("Execute"), 0);
  EXPECT_EQ(m_users.Happened().Count("PostBenchmark"), 3);
}

TEST_F(StepsTest, OnlyCallsOfTheWorkingPhasesAreBroken) {
  m_xacts[0]->m_Execute = [this] {
    m_breaker.BreakAll();
    return 1;
  };
  m_xacts[0]->m_PostBenchmark = [this] {
    m_breaker.BreakAll();
    return 1;
  };
  m_shares.resize(1);
  Run();
  EXPECT_EQ(m_users.Happened().Count("cancel"), 1);
}

TEST_F(StepsTest, AloneATransactionStopsAtItsFirstFailureButIsEnded) {
  m_xacts[0]->m_PreBenchmark = [] { return 0; };
  EXPECT_FALSE(RunAlone(m_users[0], m_breaker, *m_xacts[0]));
  EXPECT_THAT(Phases(), testing::ElementsAre("PreBenchmark", "PostBenchmark"));
  EXPECT_TRUE(RunAlone(m_users[1], m_breaker, *m_xacts[1]));
}

TEST(Users, AConnectionThatIsRefusedIsOneLineWithWhatTheDatabaseSaid) {
  Diary diary;
  Console console;
  ErrorLog log(console);
  CallBreaker breaker;
  CallWatch calls(breaker);
  UserPool pool([&] { return std::make_unique<FakeDriver>(diary); }, {"the target", "refuse", "", ""}, log,
                calls);
  try {
    pool.First();
    FAIL() << "not refused";
  } catch (const PrepareError& error) {
    EXPECT_STREQ(error.what(), "cannot connect to the target: no such server");
  }
  EXPECT_TRUE(log.Lines().empty());
}

TEST(Barrier, ThoseThatAreLeftGoOnWhenOneLeaves) {
  Barrier barrier(3);
  std::atomic<int> passed{0};
  std::thread first([&] { barrier.Arrive(), ++passed; });
  std::thread second([&] { barrier.Arrive(), ++passed; });
  barrier.Leave();
  first.join();
  second.join();
  EXPECT_EQ(passed, 2);
}

TEST(Barrier, ItIsUsedAgainAndAgain) {
  Barrier barrier(2);
  std::atomic<int> sum{0};
  const auto body = [&] {
    for (int round = 1; round <= 1000; ++round) {
      ++sum;
      barrier.Arrive();
      EXPECT_EQ(sum.load(), 2 * round);
      barrier.Arrive();
    }
  };
  std::thread other(body);
  body();
  other.join();
}

}  // namespace
}  // namespace lkbench

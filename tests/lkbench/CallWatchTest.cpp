// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CallWatch.h"

#include <gmock/gmock.h>

#include <semaphore>
#include <thread>

#include "Fakes.h"
#include "lkbench/Failure.h"
#include "lkbench/VerbThread.h"

namespace lkbench {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

CallWatch::TimePoint Soon() { return std::chrono::steady_clock::now() + 1h; }

class CallWatchTest : public testing::Test {
 protected:
  FakeUsers m_users{2};
  CallBreaker m_breaker;
  CallWatch m_calls{m_breaker};
  const char m_statement = 0;
};

TEST_F(CallWatchTest, ACallIsBrokenOffWithItsNameAndTextAndToldOfOnce) {
  const CallWatch::Work work(m_calls, m_users.Driver(0), "user 1");
  NoteCallText(&m_statement, "DROP TABLE T");
  const CallNote note("executing", &m_statement);
  EXPECT_TRUE(m_calls.BreakBegunBefore({}).empty());
  const auto broken = m_calls.BreakBegunBefore(Soon());
  ASSERT_EQ(broken.size(), 1u);
  EXPECT_EQ(broken[0].who, "user 1");
  EXPECT_EQ(broken[0].doing, "executing DROP TABLE T");
  EXPECT_TRUE(m_calls.BreakBegunBefore(Soon()).empty());
  EXPECT_EQ(m_users.Happened().Count("cancel"), 1);
}

TEST_F(CallWatchTest, AStatementThatWasNotPreparedLastHasNoText) {
  const CallWatch::Work work(m_calls, m_users.Driver(0), "user 1");
  NoteCallText(&m_statement, "DROP TABLE T");
  const CallNote note("executing", this);
  EXPECT_EQ(m_calls.BreakBegunBefore(Soon()).at(0).doing, "executing");
}

TEST_F(CallWatchTest, OnlyWhatIsInACallIsBrokenOffOrGivenUp) {
  { const CallNote nobody("executing"); }
  const CallWatch::Work work(m_calls, m_users.Driver(0), "user 1");
  { const CallNote note("executing"); }
  EXPECT_TRUE(m_calls.BreakBegunBefore(Soon()).empty());
  EXPECT_FALSE(m_calls.GiveUpBegunBefore(Soon()));
}

TEST_F(CallWatchTest, ALaterWorkOfAThreadTakesThePlaceOfTheOneBeforeWhileItLives) {
  const CallWatch::Work outer(m_calls, m_users.Driver(0), "user 1");
  {
    const CallWatch::Work inner(m_calls, m_users.Driver(1), "user 2");
    const CallNote note("committing");
    EXPECT_EQ(m_calls.BreakBegunBefore(Soon()).at(0).who, "user 2");
  }
  const CallNote note("committing");
  const CallNote within("rolling back");  // a call that makes another one
  EXPECT_EQ(m_calls.BreakBegunBefore(Soon()).at(0).doing, "committing");
}

TEST_F(CallWatchTest, ATableIsDoneWhenItsThreadHasGoneOnOrEnded) {
  const auto execute = [this](const char* text, std::uint64_t rows) {
    NoteCallText(&m_statement, text);
    NoteCallDone(&m_statement, rows);
    return m_calls.Done().tables;
  };
  {
    const CallWatch::Work work(m_calls, m_users.Driver(0), "user 1");
    EXPECT_EQ(execute("DELETE FROM LK_REP_TABLE1", 5), 0u);
    EXPECT_EQ(execute("DELETE FROM LK_REP_TABLE1", 2), 0u);
    EXPECT_EQ(execute("CREATE INDEX I", 9), 0u);
    EXPECT_EQ(execute("DELETE FROM LK_REP_TABLE3", 1), 1u);
  }
  EXPECT_EQ(m_calls.Done().tables, 2u);
  EXPECT_EQ(m_calls.Done().rows, 8u);
}

// Runs a verb; what hangs lasts as long as the process.
class VerbThreadTest : public testing::Test {
 protected:
  struct Lasting {
    FakeUsers users{2};
    Console console;
    CallBreaker breaker;
    CallWatch calls{breaker};
    CancelSwitch cancel;
    std::counting_semaphore<> go{0};
    std::atomic<bool> went_on{false};
  };
  std::string Run(const std::function<void()>& verb, Patience patience) {
    return RunPatiently(verb, {"load", patience}, m_all.calls, m_all.cancel, m_all.console);
  }
  // A call of a user that lasts until it is let go.
  void Call(int user) {
    const CallWatch::Work work(m_all.calls, m_all.users.Driver(user - 1), "user " + std::to_string(user));
    {
      const CallNote note("committing");
      m_all.go.acquire();
    }
    m_all.went_on = true;
  }

  Lasting& m_all = *new Lasting;
};

TEST_F(VerbThreadTest, AVerbThatEndsHasNothingToTell) {
  bool ran = false;
  EXPECT_EQ(Run([&] { ran = true; }, {}), "");
  EXPECT_TRUE(ran);
  delete &m_all;
}

TEST_F(VerbThreadTest, WhatTheVerbThrowsIsThrownByIt) {
  EXPECT_THROW(Run([] { throw PrepareError("no"); }, {}), PrepareError);
  delete &m_all;
}

TEST_F(VerbThreadTest, ACallThatOutlastsBothTimesIsGivenUpAndItsThreadGoesNoFurther) {
  EXPECT_THAT(Run([this] { Call(2); }, {.give_up = 10ms, .call = 10ms}),
              HasSubstr("load: user 2 has been committing for 0."));
  EXPECT_EQ(m_all.users.Happened().Count("cancel"), 1);
  m_all.go.release();
  std::this_thread::sleep_for(50ms);
  EXPECT_FALSE(m_all.went_on);
}

TEST_F(VerbThreadTest, WithoutALimitACallTakesItsTimeUntilASignalComes) {
  std::thread sender([this] {
    std::this_thread::sleep_for(100ms);
    m_all.cancel.SetBySignal(SIGINT);
  });
  EXPECT_THAT(Run([this] { Call(1); }, {.grace = 10ms, .give_up = 10ms}),
              HasSubstr("interrupted: load: user 1 has been committing for 0."));
  sender.join();
}

TEST_F(VerbThreadTest, ACallThatComesBackInTimeGoesOn) {
  m_all.go.release();
  EXPECT_EQ(Run([this] { Call(1); }, {.grace = 0s, .give_up = 1h, .call = 1h}), "");
  EXPECT_TRUE(m_all.went_on);
  delete &m_all;
}

}  // namespace
}  // namespace lkbench

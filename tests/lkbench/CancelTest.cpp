// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Cancel.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "Fakes.h"

namespace lkbench {
namespace {

template <class Condition>
bool Eventually(const Condition& condition) {
  using namespace std::chrono;
  for (const auto end = steady_clock::now() + seconds(30); steady_clock::now() < end;) {
    if (condition()) return true;
    std::this_thread::sleep_for(milliseconds(2));
  }
  return false;
}

TEST(Cancel, ASignalSetsTheFlagThatTransactionsWatch) {
  CancelSwitch cancel;
  CallBreaker breaker;
  Console console;
  const SignalWatch watch(cancel, breaker, console);
  FakeUsers users(1);
  FakeXact xact(users.Happened());
  xact.SetCancelFlag(cancel.Flag());
  EXPECT_EQ(xact.CancelXact(), 0);
  kill(getpid(), SIGTERM);
  EXPECT_TRUE(Eventually([&] { return xact.CancelXact() != 0; }));
  EXPECT_EQ(cancel.Signal(), SIGTERM);
}

TEST(Cancel, CallsThatStillRunAfterTheGraceAreBrokenAgainAndAgain) {
  CancelSwitch cancel;
  CallBreaker breaker;
  Console console;
  FakeUsers users(2);
  const SignalWatch watch(cancel, breaker, console);
  const CallBreaker::Scope breakable(breaker, users.Driver(0));
  kill(getpid(), SIGINT);
  EXPECT_TRUE(Eventually([&] { return users.Happened().Count("cancel") >= 2; }));
}

TEST(Cancel, ASessionOutsideItsScopeIsNotBroken) {
  CallBreaker breaker;
  FakeUsers users(1);
  { const CallBreaker::Scope breakable(breaker, users.Driver(0)); }
  breaker.BreakAll();
  EXPECT_EQ(users.Happened().Count("cancel"), 0);
}

}  // namespace
}  // namespace lkbench

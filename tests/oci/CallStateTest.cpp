// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/CallState.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

TEST(CallState, AnIdleSessionHasNothingToInterrupt) {
  CallState state;
  EXPECT_EQ(state.RequestBreak(), 0u);
  state.BeginCall();
  state.EndCall();
  EXPECT_EQ(state.RequestBreak(), 0u);
}

TEST(CallState, ABreakBeforeTheWindowEndsTheCallThere) {
  CallState state;
  state.BeginCall();
  EXPECT_NE(state.RequestBreak(), 0u);
  try {
    state.EnterWindow();
    FAIL() << "the window opened";
  } catch (const OraError& error) {
    EXPECT_EQ(error.Code(), 1013);
  }
}

TEST(CallState, ABreakThatWasTakenBackHasNoEffect) {
  CallState state;
  state.BeginCall();
  const auto call = state.RequestBreak();
  state.CancelBreak();
  EXPECT_NO_THROW(state.EnterWindow());
  EXPECT_FALSE(state.KillIfRunning(call, [] { FAIL() << "killed"; }));
}

TEST(CallState, ACallIsInterruptedByOneRequestAtATime) {
  CallState state;
  state.BeginCall();
  EXPECT_NE(state.RequestBreak(), 0u);
  EXPECT_EQ(state.RequestBreak(), 0u);
}

TEST(CallState, AKillIsSentInsideOfAWindowOnly) {
  CallState state;
  int kills = 0;
  state.BeginCall();
  state.EnterWindow();
  const auto call = state.RequestBreak();
  EXPECT_TRUE(state.KillIfRunning(call, [&] { ++kills; }));
  EXPECT_EQ(kills, 1);
  state.LeaveWindow();
  EXPECT_TRUE(state.KillIfRunning(call, [&] { ++kills; })) << "the call goes on: try again";
  EXPECT_EQ(kills, 1);
  state.EndCall();
  EXPECT_FALSE(state.IsRunning(call));
  EXPECT_FALSE(state.KillIfRunning(call, [&] { ++kills; }));
  EXPECT_EQ(kills, 1);
}

TEST(CallState, ABreakOfAnEarlierCallDoesNotReachALaterOne) {
  CallState state;
  state.BeginCall();
  const auto earlier = state.RequestBreak();
  state.EndCall();
  state.BeginCall();
  EXPECT_NO_THROW(state.EnterWindow());
  EXPECT_FALSE(state.KillIfRunning(earlier, [] { FAIL() << "killed"; }));
}

TEST(CallState, AWindowIsNotLeftWhileAKillIsUnderWay) {
  CallState state;
  state.BeginCall();
  state.EnterWindow();
  const auto call = state.RequestBreak();
  std::atomic<bool> left{false};
  std::thread session;
  state.KillIfRunning(call, [&] {
    session = std::thread([&] {
      state.LeaveWindow();
      left = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // time enough to leave, were it possible
    EXPECT_FALSE(left);
  });
  session.join();
  EXPECT_TRUE(left);
}

}  // namespace
}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "core/Timer.h"

TEST(Timer, ReadsNothingBeforeItsStart) {
  const CTimer timer;
  EXPECT_FALSE(timer.IsStarted());
  EXPECT_FALSE(timer.IsEnded());
  EXPECT_EQ(timer.Read(), 0);
  EXPECT_EQ(timer.GetResponse(), 0);
}

TEST(Timer, OrdersStartResponseAndEnd) {
  CTimer timer;
  timer.SetStartTime();
  timer.SetResponseTime();
  timer.SetEndTime(3, 40);
  EXPECT_GT(timer.GetStart(), 0);
  EXPECT_GE(timer.GetResponse(), timer.GetStart());
  EXPECT_GE(timer.GetEnd(), timer.GetResponse());
  EXPECT_EQ(timer.GetRows(), 3);
  EXPECT_EQ(timer.GetBytes(), 40);
  EXPECT_GE(timer.Read(), 0);
}

TEST(Timer, StartForgetsTheExecutionBefore) {
  CTimer timer;
  timer.SetStartTime();
  timer.SetResponseTime();
  timer.SetEndTime(3, 40);
  timer.SetStartTime();
  EXPECT_TRUE(timer.IsStarted());
  EXPECT_FALSE(timer.IsEnded());
  EXPECT_EQ(timer.GetResponse(), 0);
  EXPECT_EQ(timer.GetRows(), 0);
  EXPECT_EQ(timer.GetBytes(), 0);
}

TEST(Timer, ResetLeavesItAsConstructed) {
  CTimer timer;
  timer.SetStartTime();
  timer.SetEndTime(1, 1);
  timer.Reset();
  EXPECT_FALSE(timer.IsStarted());
  EXPECT_FALSE(timer.IsEnded());
  EXPECT_EQ(timer.GetRows(), 0);
}

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "core/TRKGUID.h"

TEST(Guid, IsNewEachTime) {
  const CTRKGUID first;
  const CTRKGUID second;
  EXPECT_FALSE(first == second);
  EXPECT_FALSE(first.IsBlank());
}

TEST(Guid, IsBlankWhenCleared) {
  CTRKGUID guid;
  guid.Clear();
  EXPECT_TRUE(guid.IsBlank());
  EXPECT_TRUE(guid == CBlankTRKGUID());
}

TEST(Guid, CopyIsEqual) {
  const CTRKGUID guid;
  const CTRKGUID copy(guid);
  EXPECT_TRUE(guid == copy);
}

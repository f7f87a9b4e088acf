// SPDX-License-Identifier: Apache-2.0
#include "BenchmarkTexts.h"

#include <gtest/gtest.h>

#include "oci/mariadb/sql/Rewrite.h"

namespace ocimaria::sql {
namespace {

TEST(BenchmarkTexts, BecomeWhatTheServerIsToBeGiven) {
  for (const BenchmarkText& text : kBenchmarkTexts) {
    EXPECT_EQ(Rewrite(text.oracle).text, text.server.empty() ? text.oracle : text.server);
  }
}

TEST(BenchmarkTexts, ChangeNoMoreWhenTheyAreRewrittenAgain) {
  for (const BenchmarkText& text : kBenchmarkTexts) {
    // Storage types and question marks are none of Oracle's.
    if (text.oracle.starts_with("CREATE TABLE") && !text.server.empty()) continue;
    const Rewritten once = Rewrite(text.oracle);
    if (!once.placeholders.empty()) continue;
    EXPECT_EQ(Rewrite(once.text).text, once.text);
  }
}

}  // namespace
}  // namespace ocimaria::sql

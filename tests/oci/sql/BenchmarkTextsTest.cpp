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
    // Storage types are none of Oracle's.
    if (text.oracle.starts_with("CREATE TABLE") && !text.server.empty()) continue;
    const std::string once = Rewrite(text.oracle).text;
    EXPECT_EQ(Rewrite(once).text, once);
  }
}

}  // namespace
}  // namespace ocimaria::sql

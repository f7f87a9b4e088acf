// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Limits.h"

#include <gtest/gtest.h>

#include "RecordSamples.h"
#include "lkbench/Failure.h"

using namespace lkbench;

namespace {

LimitResult Judged(const std::string& name, const std::string& asked) {
  return Judge({ParseLimit(name, asked, "job.toml:3")}, SamplePart()).front();
}

std::string Refusal(const std::string& name, const std::string& asked) {
  try {
    ParseLimit(name, asked, "job.toml:3");
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST(Limit, OfATransactionIsJudgedByItsOwnTimes) {
  EXPECT_TRUE(Judged("update.max", "<=3ms").passed);
  EXPECT_FALSE(Judged("update.max", "<3ms").passed);
  EXPECT_FALSE(Judged("insert.max", "<=3ms").passed);
  EXPECT_EQ(Judged("insert.max", "<1s").value, 10e6);
}

TEST(Limit, WithoutASubjectIsOfTheTotal) {
  EXPECT_EQ(Judged("max", "<1s").value, 10e6);
  EXPECT_EQ(Judged("total.mean", "<1s").value, 4692307);
  EXPECT_EQ(Judged("p99.9", "<1s").value, Judged("total.p99.9", "<1s").value);
}

TEST(Limit, OfThroughputCountsWhatSucceeded) {
  EXPECT_EQ(Judged("throughput", ">6").value, 6.5);
  EXPECT_TRUE(Judged("throughput", ">6").passed);
  EXPECT_FALSE(Judged("throughput", ">7").passed);
}

TEST(Limit, OfErrorsIsAShareOrANumber) {
  EXPECT_EQ(Judged("errors", "<10%").value, 1.0 / 14);
  EXPECT_TRUE(Judged("errors", "<10%").passed);
  EXPECT_EQ(Judged("update.errors", "<10 %").value, 0.25);
  EXPECT_FALSE(Judged("update.errors", "<10%").passed);
  EXPECT_EQ(Judged("errors", "<= 1").value, 1);
  EXPECT_TRUE(Judged("errors", "<= 1").passed);
  EXPECT_FALSE(Judged("errors", "<1").passed);
}

TEST(Limit, FailsWhereNothingWasMeasured) {
  const LimitResult result = Judged("delete.p50", ">0ms");
  EXPECT_FALSE(result.passed);
  EXPECT_FALSE(result.value);
}

TEST(Limit, ThatIsNoneIsRefusedWithThePlaceAndWhatWouldBeRight) {
  EXPECT_EQ(Refusal("isnert.p99", "<1ms"),
            "job.toml:3: limit \"isnert.p99\": it is for one of total, insert, update, delete: did you mean "
            "\"insert\"?");
  EXPECT_EQ(Refusal("p98", "<1ms"),
            "job.toml:3: limit \"p98\": what is limited is one of p50, p90, p95, p99, p99.9, max, mean, "
            "throughput, "
            "errors: did you mean \"p90\"?");
  EXPECT_EQ(Refusal("p99", "20ms"),
            "job.toml:3: limit p99 cannot be \"20ms\": it begins with <, <=, > or >=");
  EXPECT_EQ(Refusal("p99", "<20"),
            "job.toml:3: limit p99 cannot be \"<20\": a time with its unit is needed, as <20ms");
  EXPECT_EQ(Refusal("throughput", ">5%"),
            "job.toml:3: limit throughput cannot be \">5%\": a number per second is needed, as >500");
  for (const std::string bound : {"x", "nan", "inf"})
    EXPECT_EQ(Refusal("errors", "<" + bound + "%"), "job.toml:3: limit errors cannot be \"<" + bound +
                                                        "%\": a share or a number is needed, as <0.1% or <1");
}

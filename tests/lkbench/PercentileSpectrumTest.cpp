// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PercentileSpectrum.h"

#include <gtest/gtest.h>

namespace lkbench {
namespace {

// The steps up to half are 10 % wide.
TEST(PercentileSpectrum, EachStepHasItsValueCountAndDistance) {
  HistogramData times;
  times.Record(20);
  times.Record(60);
  EXPECT_EQ(PercentileSpectrum(times),
            "       Value     Percentile TotalCount 1/(1-Percentile)\n"
            "\n"
            "       0.000 0.000000000000          1           1.00\n"
            "       0.000 0.100000000000          1           1.11\n"
            "       0.000 0.200000000000          1           1.25\n"
            "       0.000 0.300000000000          1           1.43\n"
            "       0.000 0.400000000000          1           1.67\n"
            "       0.000 0.500000000000          1           2.00\n"
            "       0.000 1.000000000000          2\n"
            "#[Mean    =        0.000, StdDeviation   =        0.000]\n"
            "#[Max     =        0.000, Total count    =            2]\n"
            "#[Buckets =           37, SubBuckets     =           64]\n");
}

TEST(PercentileSpectrum, ValuesAreMillisecondsAndTheFootHasMeanDeviationAndMaximum) {
  HistogramData times;
  times.Record(std::uint64_t{1} << 20);
  times.Record(std::uint64_t{3} << 20);
  const std::string text = PercentileSpectrum(times);
  EXPECT_NE(text.find("       3.146 1.000000000000          2\n"), std::string::npos) << text;
  EXPECT_NE(text.find("#[Mean    =        2.097, StdDeviation   =        1.0"), std::string::npos) << text;
  EXPECT_NE(text.find("#[Max     =        3.146, Total count    =            2]"), std::string::npos) << text;
}

TEST(PercentileSpectrum, NothingHasNoLineButTheFoot) {
  EXPECT_EQ(PercentileSpectrum({}),
            "       Value     Percentile TotalCount 1/(1-Percentile)\n"
            "\n"
            "#[Mean    =        0.000, StdDeviation   =        0.000]\n"
            "#[Max     =        0.000, Total count    =            0]\n"
            "#[Buckets =           37, SubBuckets     =           64]\n");
}

}  // namespace
}  // namespace lkbench

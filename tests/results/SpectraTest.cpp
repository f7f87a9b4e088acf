// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Spectra.h"

#include <gmock/gmock.h>

#include "RecordSamples.h"
#include "lkbench/results/RecordJson.h"

using namespace lkbench;

namespace {

std::vector<std::string> Names(const RunRecord& record) {
  std::vector<std::string> names;
  for (const SpectrumFile& file : SpectrumFiles(record)) names.push_back(file.name);
  return names;
}

std::string TextOf(const RunRecord& record, const std::string& name) {
  for (const SpectrumFile& file : SpectrumFiles(record))
    if (file.name == name) return file.text;
  return "missing: " + name;
}

}  // namespace

TEST(Spectra, AreOfEachTransactionAndOfAllTogether) {
  EXPECT_THAT(Names(SampleRecord()), testing::ElementsAre("1-base-first.insert-transaction.response.hgrm",
                                                          "1-base-first.update-transaction.response.hgrm",
                                                          "1-base-first.total.response.hgrm"));
}

TEST(Spectra, HaveTheServiceTimesTooWhereARateMakesThemDiffer) {
  RunRecord record = SampleRecord();
  record.phases[0].settings.rate = 5;
  EXPECT_EQ(Names(record).size(), 6u);
  EXPECT_EQ(Names(record)[1], "1-base-first.insert-transaction.service.hgrm");
  EXPECT_THAT(TextOf(record, "1-base-first.total.service.hgrm"),
              testing::HasSubstr("#[Max     =        5.000, "));
  EXPECT_THAT(TextOf(record, "1-base-first.total.response.hgrm"),
              testing::HasSubstr("#[Max     =       10.000, "));
}

TEST(Spectra, SayWhatWasMeasuredInWhichUnit) {
  EXPECT_TRUE(
      TextOf(SampleRecord(), "1-base-first.total.response.hgrm")
          .ends_with("\n#[Values are milliseconds: response time of total in phase base, \"first\"]\n"));
}

TEST(Spectra, CountTheExecutionsOfRunJson) {
  const RunRecord record = SampleRecord();
  const Json times = WorkloadJson(record)["phases"][0]["measured"]["transactions"][0]["response_ns"];
  EXPECT_EQ(times["count"], 10);
  const std::string text = TextOf(record, "1-base-first.insert-transaction.response.hgrm");
  EXPECT_THAT(text, testing::HasSubstr("      10.000 1.000000000000         10\n"));
  EXPECT_THAT(text, testing::HasSubstr("0.500000000000          5           2.00\n"));
}

TEST(Spectra, OfTransactionsWithNamesThatDifferInSignsOnlyHaveNumbers) {
  RunRecord record = SampleRecord();
  record.phases[0].measured.xacts = {Totals("Read *", 1, 0), Totals("Read +", 1, 0)};
  EXPECT_EQ(Names(record)[1], "1-base-first.read-2.response.hgrm");
}

TEST(Spectra, OfNothingAreNotThere) {
  RunRecord record = SampleRecord();
  record.phases[0].measured.xacts = {Totals("Read", 0, 3)};
  EXPECT_THAT(Names(record), testing::ElementsAre("1-base-first.total.response.hgrm"));
}

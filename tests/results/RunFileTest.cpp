// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/RunFile.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "RecordSamples.h"
#include "lkbench/Failure.h"
#include "lkbench/results/RecordJson.h"
#include "lkbench/results/SeriesCsv.h"

using namespace lkbench;

namespace {

RunFacts SampleFacts(const RunRecord* record) {
  RunFacts facts;
  facts.verb = "run";
  facts.command = {"lkbench", "run", "--users", "2"};
  facts.repeat = facts.command;
  facts.started = std::chrono::system_clock::from_time_t(1767323045);
  facts.target_kind = "local";
  facts.target = "local:/data";
  facts.workload = record;
  return facts;
}

Json Written(const RunFacts& facts) { return Json::parse(RunFileText(RunFileJson(facts))); }

}  // namespace

TEST(RunFile, IsWrittenAsTheTestOfItsSchemaReadsIt) {
  RunRecord record = SampleRecord();
  record.phases[0].warm_up_end = 500000000;
  record.phases[0].warm_up = SamplePart();
  RunFacts facts = SampleFacts(&record);
  facts.server_settings = {{"sync_binlog", "1"}};
  facts.load_elapsed = 1000;
  facts.problems = {{ERROR_LEVEL, "60", "ORA-00060: deadlock \xff", 1}};
  facts.limits = {{"p99", "<1ms", {}, LimitUnit::kNanoseconds, false}};
  facts.notes = {"a note"};
  std::ofstream(LK_WRITTEN_RUN) << RunFileText(RunFileJson(facts));
  facts.workload = nullptr;
  facts.load_elapsed = 0;
  facts.signal = SIGTERM;
  std::ofstream(LK_WRITTEN_SHORT_RUN) << RunFileText(RunFileJson(facts));
}

TEST(RunFile, NamesItsSchemaAndTheStartInUtc) {
  const Json json = Written(SampleFacts(nullptr));
  EXPECT_EQ(json["schema"], "lkbench-run");
  EXPECT_EQ(json["schema_version"], 2);
  EXPECT_EQ(json["started"], "2026-01-02T03:04:05Z");
  EXPECT_TRUE(json["workload"].is_null());
  EXPECT_TRUE(json["load"].is_null());
}

TEST(RunFile, ReplacesBytesThatAreNoUtf8) {
  RunFacts facts = SampleFacts(nullptr);
  facts.problems = {{WARNING_LEVEL, "0", "caf\xe9", 2}};
  EXPECT_EQ(Written(facts)["problems"][0]["text"], "caf\xef\xbf\xbd");
}

TEST(Verdict, IsInterruptedAfterASignalWhateverElseHappened) {
  RunFacts facts = SampleFacts(nullptr);
  facts.signal = SIGINT;
  facts.exit_code = 130;
  facts.failure = "interrupted";
  const Json json = Written(facts);
  EXPECT_EQ(json["verdict"]["result"], "interrupted");
  EXPECT_EQ(json["interrupted"], "SIGINT");
}

TEST(Verdict, OfAFailureIsItsLine) {
  RunFacts facts = SampleFacts(nullptr);
  facts.exit_code = kCannotPrepare;
  facts.failure = "load: no space";
  EXPECT_EQ(Written(facts)["verdict"], Json({{"result", "error"}, {"text", "load: no space"}}));
}

TEST(Verdict, CountsTheExecutionsThatFailed) {
  const RunRecord record = SampleRecord();
  RunFacts facts = SampleFacts(&record);
  facts.exit_code = kRanWithFailures;
  EXPECT_EQ(Written(facts)["verdict"], Json({{"result", "failures"}, {"text", "1 of 14 executions failed"}}));
}

TEST(Verdict, NamesTheLimitsThatFailed) {
  RunFacts facts = SampleFacts(nullptr);
  facts.exit_code = kLimitFailed;
  facts.limits = {{"p99", "<1ms", 2e6, LimitUnit::kNanoseconds, false},
                  {"errors", "<1", 0, LimitUnit::kCount, true}};
  EXPECT_EQ(Written(facts)["verdict"], Json({{"result", "limit"}, {"text", "1 of 2 limits failed: p99"}}));
}

TEST(RecordJson, HasTheCountsAndTimesOfTheRecord) {
  const Json json = WorkloadJson(SampleRecord());
  const Json& total = json["measured"]["total"];
  EXPECT_EQ(total["executions"], 14);
  EXPECT_EQ(total["failures"], 1);
  EXPECT_EQ(total["errors"], Json({{"deadlock", 1}}));
  EXPECT_EQ(total["response_ns"]["count"], 13);
  EXPECT_EQ(total["response_ns"]["sum"], 61000000);
  EXPECT_EQ(total["response_ns"]["max"], 10000000);
  EXPECT_EQ(total["service_ns"]["sum"], 30500000);
  EXPECT_EQ(total["database_ns"]["sum"], 15250000);
  EXPECT_EQ(json["measured"]["rate_per_s"], 6.5);
  EXPECT_EQ(json["measured"]["column_counts"][0]["name"], "7 columns");
  EXPECT_EQ(json["phases"][0]["user_executions"], Json({9, 5}));
  EXPECT_TRUE(json["phases"][0]["warm_up"].is_null());
  EXPECT_EQ(json["intervals"][0]["total"]["response_ns"]["count"], 13);
  EXPECT_EQ(json["errors"][0]["code"], 60);
  EXPECT_EQ(json["events"][0], Json({{"kind", "outage"},
                                     {"begin_ns", 1000000000},
                                     {"length_ns", 250000000},
                                     {"user", 2},
                                     {"text", "user 2: away for 0.25 s"}}));
}

// The rule that run.json states, computed from it, against the histogram itself.
TEST(RecordJson, NumbersBucketsByTheRuleThatItStates) {
  HistogramData times;
  for (const std::uint64_t value : {63ULL, 64ULL, 1000000ULL, 1000000ULL}) times.Record(value);
  // 1,000,000 = 15.26 * 2^16 and has 20 bits: e = 19, (19 - 6 + 1) * 64 + floor(1000000 / 2^13) - 64 = 896 +
  // 122 - 64
  EXPECT_EQ(TimesJson(times)["buckets"], Json::parse("[[63,1],[64,1],[954,2]]"));
  EXPECT_EQ(HistogramRuleJson()["sub_bits"], 6);
}

TEST(SeriesCsv, HasALineForEachTransactionAndTheTotalOfAnInterval) {
  const std::string csv = SeriesCsv(SampleRecord());
  EXPECT_EQ(std::ranges::count(csv, '\n'), 4);
  EXPECT_EQ(csv.find("begin_ns,end_ns,phase,warm_up,users,backlog,transaction,executions,"), 0u);
  EXPECT_NE(csv.find("\n0,1000000000,\"base, \"\"first\"\"\",0,2,0,Update Transaction,4,0,0,0,0,"), csv.npos);
  EXPECT_NE(csv.find(",total,14,1,0,0,"), csv.npos);
}

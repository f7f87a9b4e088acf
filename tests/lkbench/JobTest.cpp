// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <set>

#include "Told.h"
#include "UnusualJob.h"
#include "lkbench/ColumnTypes.h"
#include "lkbench/Failure.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// The one line that a text is refused with.
std::string Refusal(const std::string& text) {
  return RefusalOf([&] { ReadJob(text); });
}

std::string CheckRefusal(const Job& job, Verbs verb = kCreateVerb) {
  return RefusalOf([&] { CheckJob(job, verb); });
}

TEST(JobFile, AnEmptyFileIsTheDefaults) {
  const Job job = ReadJob("");
  EXPECT_EQ(job.users, 2);
  EXPECT_EQ(job.tables, 4);
  EXPECT_EQ(job.scale, 1);
  EXPECT_EQ(job.duration, std::chrono::seconds(10));
  EXPECT_EQ(job.column_types.size(), 6u);
}

TEST(JobFile, EveryKeyIsRead) {
  const Job job = ReadJob(kUnusualJob);
  EXPECT_EQ(job.target, R"(local:/a b/"c"\d)");
  EXPECT_EQ(job.password, "env:PW");
  EXPECT_EQ(job.server.durability, localdb::Durability::kRelaxed);
  EXPECT_EQ(job.server.buffer_pool, 67108864u);
  EXPECT_EQ(job.server.log_size, 1610612736u);
  EXPECT_EQ(job.users, 8);
  EXPECT_EQ(job.duration, std::chrono::milliseconds(1500));
  EXPECT_EQ(job.scale, 2.25);
  EXPECT_EQ(job.tables, 7);
  EXPECT_EQ(job.first_table, 3);
  EXPECT_EQ(job.min_columns, 1);
  EXPECT_EQ(job.max_columns, 4);
  ASSERT_EQ(job.column_types.size(), 2u);
  EXPECT_EQ(job.column_types[0].type, "NUMBER(5)");
  EXPECT_EQ(job.column_types[0].weight, 2);
  EXPECT_TRUE(job.column_types[0].nullable);
  EXPECT_EQ(job.column_types[1].weight, 3);
  EXPECT_FALSE(job.column_types[1].nullable);
  EXPECT_EQ(job.distribution, 5);
  EXPECT_TRUE(job.use_backup);
  EXPECT_EQ(job.rows_per_commit, 100);
  EXPECT_EQ(job.mix.insert, 1);
  EXPECT_EQ(job.mix.update, 0);
  EXPECT_EQ(job.mix.remove, 2);
  EXPECT_EQ(job.schema_seed, 9u);
  EXPECT_EQ(job.run_seed, 11u);
  EXPECT_EQ(job.log_level, LogLevel::kDebug);
  EXPECT_EQ(job.format, OutputFormat::kJson);
  EXPECT_EQ(job.metrics, 9180);
  ASSERT_EQ(job.limits.size(), 2u);
  EXPECT_EQ(job.limits[0].name, "errors");
  EXPECT_EQ(job.limits[1].name, "insert.p99");
  EXPECT_EQ(job.limits[1].bound, 20e6);
  EXPECT_EQ(job.results, "/tmp/a");
  EXPECT_EQ(job.json, "/tmp/a.json");
  EXPECT_EQ(job.plugin, "/lib/p.so");
  EXPECT_EQ(job.oci, "/lib/o.so");
  EXPECT_EQ(job.count, 5000u);
  EXPECT_EQ(job.warm_up, std::chrono::milliseconds(1200));
  EXPECT_EQ(job.ramp, std::chrono::seconds(2));
  EXPECT_EQ(job.think_min, std::chrono::milliseconds(10));
  EXPECT_EQ(job.think_max, std::chrono::milliseconds(50));
  EXPECT_EQ(job.rate, 0.5);
  EXPECT_EQ(job.arrival, Arrival::kPoisson);
  EXPECT_EQ(job.commit_every, 20);
  EXPECT_EQ(job.phases.size(), 2u);
  EXPECT_EQ(job.on_disconnect, OnDisconnect::kStop);
  EXPECT_EQ(job.reconnect_pause, std::chrono::milliseconds(200));
  EXPECT_EQ(job.reconnect_limit, std::chrono::seconds(2));
  EXPECT_EQ(job.call_timeout, std::chrono::seconds(30));
  EXPECT_EQ(job.break_after, std::chrono::seconds(1));
  EXPECT_EQ(job.give_up_after, std::chrono::seconds(3));
  EXPECT_EQ(job.origins.size(), JobKeys().size());
}

TEST(JobFile, AnUnknownKeyIsNamedWithItsLineAndTheNearestKey) {
  EXPECT_EQ(Refusal("scale = 1\nuser = 3\n"), "job.toml:2: unknown key \"user\": did you mean \"users\"?");
}

TEST(JobFile, AnUnknownKeyWithinAValueIsNamedToo) {
  EXPECT_THAT(Refusal("mix = { inserts = 3 }"),
              AllOf(StartsWith("job.toml:1: "), HasSubstr("did you mean \"insert\"?")));
  EXPECT_THAT(Refusal("column_types = [\n { type = \"DATE\", wight = 3 } ]"),
              AllOf(StartsWith("job.toml:2: "), HasSubstr("did you mean \"weight\"?")));
}

TEST(JobFile, AWrongTypeIsRefusedWithWhatIsAllowed) {
  EXPECT_EQ(Refusal("users = \"two\""),
            "job.toml:1: users cannot be \"two\": a whole number from 1 to 1000 is needed");
  EXPECT_THAT(Refusal("users = 2.5"), HasSubstr("cannot be 2.5"));
  EXPECT_THAT(Refusal("use_backup = 1"), HasSubstr("true or false is needed"));
  EXPECT_THAT(Refusal("target = 5"), HasSubstr("a text is needed"));
  EXPECT_THAT(Refusal("mix = 3"), HasSubstr("a table of weights is needed"));
  EXPECT_THAT(Refusal("column_types = \"NUMBER\""), HasSubstr("a list of column types is needed"));
  EXPECT_THAT(Refusal("duration = 1979-05-27"), HasSubstr("date or time"));
}

TEST(JobFile, AValueOutOfRangeIsRefused) {
  for (const char* text : {"users = 0",
                           "users = -1",
                           "users = 1001",
                           "scale = -1",
                           "scale = nan",
                           "scale = inf",
                           "tables = 0",
                           "rows_per_commit = 0",
                           "rows_per_commit = 1001",
                           "duration = \"-1s\"",
                           "reconnect_pause = \"0s\"",
                           "min_columns = 0",
                           "max_columns = 1000",
                           "schema_seed = -1",
                           "run_seed = 2147483648",
                           "first_table = 0",
                           "distribution = \"gauss\"",
                           "log_level = \"loud\"",
                           "durability = \"fast\"",
                           "buffer_pool = \"31MiB\"",
                           "buffer_pool = 64",
                           "buffer_pool = \"1025GiB\"",
                           "log_size = \"7MiB\"",
                           "log_size = \"513GiB\"",
                           "mix = { insert = -1 }",
                           "mix = { insert = 0, update = 0 }",
                           "mix = {}",
                           "column_types = []",
                           "column_types = [ \"NUMBER:0\" ]",
                           "target = \"\""})
    EXPECT_THAT(Refusal(text), StartsWith("job.toml:1: ")) << text;
}

TEST(JobFile, ATextHoldsNoControlCharacters) {
  EXPECT_EQ(Refusal("json = \"a\\u001bb\""),
            "job.toml:1: json cannot be \"a?b\": a text without control characters is needed");
}

TEST(JobFile, WhatIsNotKnownIsShownInOneShortLine) {
  const std::string name(100, 'x'), shown = std::string(60, 'x') + "…";
  EXPECT_THAT(Refusal(name + " = 1"), HasSubstr("unknown key \"" + shown + '"'));
  EXPECT_THAT(Refusal("mix = { " + name + " = 1 }"), HasSubstr("no transaction \"" + shown + '"'));
  EXPECT_THAT(Refusal("column_types = [ \"" + name + "\" ]"), HasSubstr("column type \"" + shown + '"'));
  EXPECT_THAT(Refusal("column_types = [ { " + name + " = 1 } ]"), HasSubstr("has no key \"" + shown + '"'));
  EXPECT_THAT(Refusal("column_types = [ { \"a\\nb\" = 1 } ]"), HasSubstr("has no key \"a: b\""));
}

TEST(JobFile, ASyntaxErrorIsOneLineWithItsPlace) {
  const std::string line = Refusal("users = 2\nscale = = 1\n");
  EXPECT_THAT(line, StartsWith("job.toml:2: "));
  EXPECT_EQ(line.find('\n'), std::string::npos);
}

TEST(JobFile, AMissingFileIsNamed) {
  Job job;
  try {
    ReadJobFile(job, "/nowhere/job.toml");
    FAIL() << "not refused";
  } catch (const UsageError& error) {
    EXPECT_STREQ(error.what(), "job file /nowhere/job.toml cannot be read: No such file or directory");
  }
}

TEST(JobFile, APasswordIsNeverTakenNorRepeated) {
  const std::string line = Refusal("password = \"secret\"");
  EXPECT_THAT(line, HasSubstr("use env:NAME, file:PATH or prompt"));
  EXPECT_EQ(line.find("secret"), std::string::npos);
}

TEST(Job, AMinimumAboveTheMaximumIsRefusedWithBothPlaces) {
  EXPECT_EQ(
      CheckRefusal(ReadJob("min_columns = 9\nmax_columns = 8")),
      "job.toml:1: min_columns is 9 (job.toml:1) but max_columns is 8 (job.toml:2): the minimum may not be "
      "above the maximum");
  EXPECT_THAT(CheckRefusal(ReadJob("max_columns = 4")),
              StartsWith("job.toml:1: min_columns is 5 (default) but max_columns is 4 (job.toml:1): "));
  EXPECT_EQ(CheckRefusal(ReadJob("min_columns = 8\nmax_columns = 8")), "not refused");
}

TEST(Job, AScaleWithoutARowIsForVerbsThatBuildNothing) {
  for (const char* text : {"scale = 0", "scale = 0.0009"}) {
    for (const Verbs verb : {kRunVerb, kCreateVerb, kLoadVerb})
      EXPECT_THAT(CheckRefusal(ReadJob(text), verb), HasSubstr("which is no row")) << text;
    for (const Verbs verb : {kRefreshVerb, kWorkloadVerb, kDropVerb})
      EXPECT_EQ(CheckRefusal(ReadJob(text), verb), "not refused") << text;
  }
  EXPECT_EQ(CheckRefusal(ReadJob("scale = 0.001")), "not refused");
}

TEST(Job, AFirstTableBehindTheLastIsRefused) {
  EXPECT_THAT(CheckRefusal(ReadJob("first_table = 5\ntables = 4"), kLoadVerb),
              StartsWith("job.toml:1: first_table is 5 (job.toml:1) but tables is 4 (job.toml:2): "));
  EXPECT_THAT(CheckRefusal(ReadJob("first_table = 5")), HasSubstr("tables is 4 (default)"));
  EXPECT_EQ(CheckRefusal(ReadJob("first_table = 4")), "not refused");
}

TEST(Job, TheNumberOfTablesThatAreThereIsTheSchemasToTell) {
  EXPECT_EQ(CheckRefusal(ReadJob("first_table = 5"), kLoadVerb), "not refused");
  EXPECT_EQ(CheckRefusal(ReadJob("first_table = 5"), kDropVerb), "not refused");
}

TEST(Job, ALimitForWhatNoPhaseDoesIsRefused) {
  EXPECT_EQ(CheckRefusal(ReadJob("mix = { insert = 1 }\nlimits = { \"update.p99\" = \"<1s\" }"), kRunVerb),
            "job.toml:2: limit update.p99 is for update, which has no weight in any mix: nothing would be "
            "measured");
  EXPECT_EQ(
      CheckRefusal(ReadJob("mix = { insert = 1 }\nlimits = { \"update.p99\" = \"<1s\" }\n[[phase]]\nmix = { "
                           "update = 1 }"),
                   kRunVerb),
      "not refused");
}

TEST(Job, LimitsThatExcludeEachOtherAreRefused) {
  EXPECT_EQ(CheckRefusal(ReadJob("limits = [\"p99<10ms\", \"total.p99>20ms\"]"), kRunVerb),
            "job.toml:1: limits p99<10ms and total.p99>20ms exclude each other");
  EXPECT_THAT(CheckRefusal(ReadJob("limits = [\"p99<=10ms\", \"p99>10ms\"]"), kRunVerb),
              HasSubstr("exclude"));
  for (const char* text : {"limits = [\"p99<=10ms\", \"p99>=10ms\"]", "limits = [\"p99<20ms\", \"p99>10ms\"]",
                           "limits = [\"p99<10ms\", \"p95>20ms\"]", "limits = [\"errors<1%\", \"errors>5\"]"})
    EXPECT_EQ(CheckRefusal(ReadJob(text), kRunVerb), "not refused") << text;
}

TEST(Job, APasswordFlagForAPrivateServerIsRefused) {
  Job job = ReadJob("password = \"env:PW\"");
  EXPECT_EQ(CheckRefusal(job, kDropVerb), "not refused");
  job.origins["password"] = "--password";
  EXPECT_EQ(CheckRefusal(job, kDropVerb),
            "--password: target is local: (default), whose private server takes none: name another --target");
  job.target = "mariadb://u@h/s";
  EXPECT_EQ(CheckRefusal(job, kDropVerb), "not refused");
}

TEST(Job, ARunSeedIsDrawnOnlyWhereNoneIsGiven) {
  Job job = ReadJob("run_seed = 7");
  DrawRunSeed(job);
  EXPECT_EQ(job.run_seed, 7u);
  std::set<std::uint32_t> drawn;
  for (int i = 0; i < 20; ++i) {
    Job open;
    DrawRunSeed(open);
    drawn.insert(open.run_seed.value());
  }
  EXPECT_GT(drawn.size(), 15u);
}

TEST(Job, RowsAreAThousandPerUnitOfScaleTruncated) {
  EXPECT_EQ(RowsAtScale(1.5), 1500);
  EXPECT_EQ(RowsAtScale(0.0019), 1);
}

TEST(ColumnTypes, WhatTheLoaderBindsIsAllowed) {
  for (const char* type : {"NUMBER",       "NUMBER(10)",
                           "NUMBER(10,2)", "number(7,-2)",
                           "NUMBER(*,2)",  "NUMERIC(5)",
                           "DECIMAL(5,1)", "INTEGER",
                           "INT",          "SMALLINT",
                           "FLOAT",        "FLOAT(126)",
                           "REAL",         "DOUBLE PRECISION",
                           "VARCHAR2(20)", "varchar2 (20 byte)",
                           "VARCHAR(5)",   "CHAR",
                           "CHAR(3)",      "DATE",
                           "TIMESTAMP",    "TIMESTAMP(3)",
                           "LONG"})
    EXPECT_EQ(ColumnTypeProblem(type), "") << type;
}

TEST(ColumnTypes, WhatTheLoaderCannotBindIsRefusedByName) {
  for (const char* type :
       {"BLOB", "CLOB", "RAW(10)", "BINARY_DOUBLE", "BINARY_FLOAT", "TIMESTAMP WITH TIME ZONE",
        "TIMESTAMP(3) WITH TIME ZONE", "INTERVAL YEAR TO MONTH", "LONG RAW", "ROWID", "NVARCHAR2(20)",
        "NCHAR(5)", "VARCHAR2(20 CHAR)", "CHAR(2 char)", "XMLTYPE", "NUMBR"})
    EXPECT_THAT(ColumnTypeProblem(type),
                StartsWith("column type \"" + std::string(type) + "\" cannot be loaded"))
        << type;
}

TEST(ColumnTypes, AnythingBehindTheTypeIsRefused) {
  for (const char* type :
       {"VARCHAR2(10) DEFAULT 'a'", "NUMBER(5) NOT NULL", "NUMBER(3", "VARCHAR2(5%)", "DATE'", "NUMBER;"})
    EXPECT_NE(ColumnTypeProblem(type), "") << type;
}

TEST(ColumnTypes, LengthsAndPrecisionsHaveLimits) {
  for (const char* type : {"VARCHAR2", "VARCHAR2()", "VARCHAR2(0)", "VARCHAR2(4001)", "NUMBER(39)",
                           "NUMBER(0)", "NUMBER(5,128)", "NUMBER(5,2,1)", "CHAR(2001)", "TIMESTAMP(10)",
                           "DATE(3)", "FLOAT(127)", "NUMBER(5 CHAR)", "NUMBER(a)"})
    EXPECT_NE(ColumnTypeProblem(type), "") << type;
}

}  // namespace
}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/ServerSettings.h"

#include <gmock/gmock.h>

#include "lkbench/Failure.h"
#include "lkbench/JobFile.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using localdb::Durability;
using localdb::kMebibyte;

Job Read(const std::string& text) {
  Job job;
  ReadJobText(job, text, "job.toml");
  return job;
}

std::string Text(std::int64_t flush, std::optional<std::int64_t> sync) {
  return DurabilityText(ServerSettings{flush, sync, 0, 0});
}

TEST(ServerSettings, ACommitIsDurableWhenEachIsFlushed) {
  EXPECT_EQ(Text(1, std::nullopt), "durable (innodb_flush_log_at_trx_commit 1, no binary log)");
  EXPECT_EQ(Text(3, std::nullopt), "durable (innodb_flush_log_at_trx_commit 3, no binary log)");
  EXPECT_EQ(Text(2, std::nullopt), "relaxed (innodb_flush_log_at_trx_commit 2, no binary log)");
  EXPECT_EQ(Text(0, std::nullopt), "relaxed (innodb_flush_log_at_trx_commit 0, no binary log)");
}

TEST(ServerSettings, ABinaryLogMustBeFlushedEachTimeToo) {
  EXPECT_EQ(Text(1, 1), "durable (innodb_flush_log_at_trx_commit 1, sync_binlog 1)");
  EXPECT_EQ(Text(1, 0), "relaxed (innodb_flush_log_at_trx_commit 1, sync_binlog 0)");
  EXPECT_EQ(Text(1, 1000), "relaxed (innodb_flush_log_at_trx_commit 1, sync_binlog 1000)");
  EXPECT_EQ(Text(2, 1), "relaxed (innodb_flush_log_at_trx_commit 2, sync_binlog 1)");
}

TEST(ServerSettings, WhatTheTargetDoesNotTellIsUnknown) {
  EXPECT_EQ(DurabilityText(std::nullopt), "unknown (the target does not tell)");
}

ServerSettings RunningRelaxed() { return {2, std::nullopt, 512 * kMebibyte, 256 * kMebibyte}; }

TEST(ServerSettings, ASharedServerThatHasWhatTheJobSetsNeedsNoNote) {
  const Job job = Read("durability = \"relaxed\"\nbuffer_pool = \"512MiB\"");
  EXPECT_EQ(SharedServerNote(job, RunningRelaxed(), "local:/db"), "");
}

TEST(ServerSettings, WhereTheJobSetsNothingAnotherServerThanTheUsualIsTold) {
  EXPECT_EQ(SharedServerNote(Read("log_size = \"256MiB\""), RunningRelaxed(), "local:/db"),
            "warning: the server of local:/db was started by another lkbench with durability relaxed, "
            "buffer_pool 512MiB (default: durability durable, buffer_pool 1GiB): the figures are of that");
}

TEST(ServerSettings, ASharedServerThatLacksWhatTheJobSetsIsRefused) {
  const Job job = Read("durability = \"durable\"\nlog_size = \"1GiB\"");
  try {
    SharedServerNote(job, RunningRelaxed(), "local:/db");
    FAIL() << "not refused";
  } catch (const PrepareError& error) {
    EXPECT_STREQ(
        error.what(),
        "the server of local:/db is in use already, with durability relaxed, log_size 256MiB where the "
        "job sets durability durable, log_size 1GiB: wait until the other lkbench has ended, or use "
        "another folder");
  }
}

TEST(ServerSettings, TheJobThatRepeatsARunNamesThemForALocalTargetOnly) {
  const Job local = Read("target = \"local:db\"\ndurability = \"relaxed\"");
  EXPECT_EQ(FindJobKey("durability")->type.toml(local), "\"relaxed\"");
  EXPECT_EQ(FindJobKey("buffer_pool")->type.toml(local), "\"1GiB\"");
  const Job remote = Read("target = \"mariadb://u@h/s\"");
  for (const char* key : {"durability", "buffer_pool", "log_size"})
    EXPECT_EQ(FindJobKey(key)->type.toml(remote), "") << key;
}

TEST(ServerSettings, OnlyAPrivateServerIsToldItsSettings) {
  for (const char* target : {"mariadb://u@h/s", "oracle://u@//h/s"})
    for (const char* text : {"durability = \"durable\"", "buffer_pool = \"1GiB\"", "log_size = \"256MiB\""})
      EXPECT_THROW(RequireLocalTarget(Read(text), ParseTarget(target, "")), UsageError) << target << text;
  RequireLocalTarget(Read("users = 3"), ParseTarget("mariadb://u@h/s", ""));
  RequireLocalTarget(Read("durability = \"relaxed\""), ParseTarget("local:db", ""));
}

}  // namespace
}  // namespace lkbench

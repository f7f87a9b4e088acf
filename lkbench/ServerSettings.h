// SPDX-License-Identifier: Apache-2.0
// The settings of the server that decide what figures mean: how a commit is kept, and how much memory and log
// there is. They are read from the server itself, never taken from the job: another lkbench may have started
// a private server with other ones. Values; all functions but ReadServerSettings are pure.
#pragma once

#include <optional>
#include <string>

#include "lkbench/Job.h"
#include "lkbench/Target.h"
#include "lkbench/Users.h"

namespace lkbench {

struct ServerSettings {
  std::int64_t flush_at_commit = 1;         // innodb_flush_log_at_trx_commit
  std::optional<std::int64_t> sync_binlog;  // missing: the server keeps no binary log
  std::uint64_t buffer_pool = 0;            // bytes
  std::uint64_t log_size = 0;               // bytes

  localdb::Durability Durability() const;
};

const char* DurabilityName(localdb::Durability durability);

// Missing for Oracle, and when the server does not tell.
std::optional<ServerSettings> ReadServerSettings(TargetKind kind, VirtualUser& user);

// "durable (innodb_flush_log_at_trx_commit 1, no binary log)"; "unknown (…)" when they are missing.
std::string DurabilityText(const std::optional<ServerSettings>& settings);

// Throws UsageError when the job sets what only a private server has, and the target is another one.
void RequireLocalTarget(const Job& job, const Target& target);

// For a private server that ran already. Throws PrepareError when it lacks what the job sets. Otherwise
// returns one line that says what differs from the defaults, empty when nothing does.
std::string SharedServerNote(const Job& job, const ServerSettings& running, const std::string& shown);

}  // namespace lkbench

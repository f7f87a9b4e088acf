// SPDX-License-Identifier: Apache-2.0
#include "lkbench/ServerSettings.h"

#include <map>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

using localdb::Durability;

using Values = std::map<std::string, std::string>;

// By name; asked of a table, as an @ stands for a database link in the texts that OCI takes.
Values AskForSettings(VirtualUser& user) {
  Values values;
  for (const auto& row :
       user.Query("SELECT UPPER(VARIABLE_NAME), VARIABLE_VALUE FROM INFORMATION_SCHEMA.GLOBAL_VARIABLES "
                  "WHERE VARIABLE_NAME IN ('INNODB_FLUSH_LOG_AT_TRX_COMMIT', 'LOG_BIN', 'SYNC_BINLOG', "
                  "'INNODB_BUFFER_POOL_SIZE', 'INNODB_LOG_FILE_SIZE')"))
    values[row.at(0)] = row.at(1);
  return values;
}

// A value that is missing or no number counts as -1.
std::int64_t Number(const Values& values, const char* name) {
  std::int64_t number = -1;
  if (const auto found = values.find(name); found != values.end()) ParseInteger(found->second, number);
  return number;
}

// One setting of a private server: as the job has it, as the server that runs has it.
struct Pair {
  const char* key;
  std::string wanted;
  std::string running;
};

std::vector<Pair> Differences(const Job& job, const ServerSettings& running) {
  std::vector<Pair> pairs = {
      {"durability", DurabilityName(job.server.durability), DurabilityName(running.Durability())},
      {"buffer_pool", SizeText(job.server.buffer_pool), SizeText(running.buffer_pool)},
      {"log_size", SizeText(job.server.log_size), SizeText(running.log_size)}};
  std::erase_if(pairs, [](const Pair& pair) { return pair.wanted == pair.running; });
  return pairs;
}

std::string Listed(const std::vector<Pair>& pairs, std::string Pair::*side) {
  std::vector<std::string> texts;
  texts.reserve(pairs.size());
  for (const Pair& pair : pairs) texts.push_back(std::string(pair.key) + ' ' + pair.*side);
  return Join(texts, ", ");
}

}  // namespace

// 3 flushes as often as 1. With a binary log the commit rests on that log: it must be flushed each time too.
Durability ServerSettings::Durability() const {
  const bool log_flushed = flush_at_commit == 1 || flush_at_commit == 3;
  return log_flushed && sync_binlog.value_or(1) == 1 ? Durability::kDurable : Durability::kRelaxed;
}

const char* DurabilityName(Durability durability) {
  return durability == Durability::kDurable ? "durable" : "relaxed";
}

std::optional<ServerSettings> ReadServerSettings(TargetKind kind, VirtualUser& user) {
  if (kind == TargetKind::kOracle) return std::nullopt;
  Values values;
  try {
    values = AskForSettings(user);
  } catch (const PrepareError&) {
    return std::nullopt;
  }
  ServerSettings settings;
  settings.flush_at_commit = Number(values, "INNODB_FLUSH_LOG_AT_TRX_COMMIT");
  if (settings.flush_at_commit < 0) return std::nullopt;
  if (values["LOG_BIN"] != "OFF") settings.sync_binlog = Number(values, "SYNC_BINLOG");
  settings.buffer_pool = static_cast<std::uint64_t>(Number(values, "INNODB_BUFFER_POOL_SIZE"));
  settings.log_size = static_cast<std::uint64_t>(Number(values, "INNODB_LOG_FILE_SIZE"));
  return settings;
}

std::string DurabilityText(const std::optional<ServerSettings>& settings) {
  if (!settings) return "unknown (the target does not tell)";
  return std::string(DurabilityName(settings->Durability())) + " (innodb_flush_log_at_trx_commit " +
         std::to_string(settings->flush_at_commit) + ", " +
         (settings->sync_binlog ? "sync_binlog " + std::to_string(*settings->sync_binlog) : "no binary log") +
         ")";
}

void RequireLocalTarget(const Job& job, const Target& target) {
  if (target.kind == TargetKind::kLocal) return;
  for (const char* key : {"durability", "buffer_pool", "log_size"})
    if (const auto origin = job.origins.find(key); origin != job.origins.end())
      throw UsageError(origin->second + ": " + key +
                       " is a setting of the private server of a local: target; " + target.text +
                       " has its own settings: leave " + key + " out");
}

std::string SharedServerNote(const Job& job, const ServerSettings& running, const std::string& shown) {
  const std::vector<Pair> differing = Differences(job, running);
  std::vector<Pair> set = differing;
  std::erase_if(set, [&](const Pair& pair) { return !job.origins.contains(pair.key); });
  if (!set.empty())
    throw PrepareError("the server of " + shown + " is in use already, with " + Listed(set, &Pair::running) +
                       " where the job sets " + Listed(set, &Pair::wanted) +
                       ": wait until the other lkbench has ended, or use another folder");
  if (differing.empty()) return {};
  return "warning: the server of " + shown + " was started by another lkbench with " +
         Listed(differing, &Pair::running) + " (default: " + Listed(differing, &Pair::wanted) +
         "): the figures are of that";
}

}  // namespace lkbench

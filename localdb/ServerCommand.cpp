// SPDX-License-Identifier: Apache-2.0
#include "localdb/ServerCommand.h"

#include <unistd.h>

#include <cstdlib>

#include "localdb/Programs.h"

namespace localdb {

namespace {

using Texts = std::vector<std::string>;

std::vector<char*> Pointers(Texts& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Nothing else is passed on: the server reads settings (MYSQL_…, UMASK, TMPDIR, NOTIFY_SOCKET) from there.
Texts ServerEnvironment() {
  Texts environment{"UMASK=0600", "UMASK_DIR=0700"};
  for (const char* name : {"PATH", "LD_LIBRARY_PATH", "TZ"})
    if (const char* value = std::getenv(name)) environment.push_back(std::string(name) + "=" + value);
  return environment;
}

std::string LogSizeArgument(const Settings& settings) {
  return "--innodb-log-file-size=" + std::to_string(settings.log_size);
}

// A relaxed commit is handed to the system, which outlives the server, and flushed once a second. No mode
// keeps a binary log: nothing replicates from here, and it would be flushed at every commit as well.
Texts SettingsArguments(const Settings& settings) {
  const bool durable = settings.durability == Durability::kDurable;
  return {"--innodb-buffer-pool-size=" + std::to_string(settings.buffer_pool), LogSizeArgument(settings),
          std::string("--innodb-flush-log-at-trx-commit=") + (durable ? "1" : "2"), "--innodb-doublewrite=ON",
          "--skip-log-bin"};
}

// --no-defaults must come first; the machine's own configuration is not for this server. What shapes the
// files (case of table names) is the same when they are made and when they are served.
Texts CommonArguments(const Folder& folder) {
  Texts arguments{FindServer(),
                  "--no-defaults",
                  "--tmpdir=" + folder.Temporary().string(),
                  "--lower-case-table-names=1",
                  "--innodb-buffer-pool-dump-at-shutdown=OFF",
                  "--innodb-buffer-pool-load-at-startup=OFF"};
  if (geteuid() == 0) arguments.emplace_back("--user=root");
  return arguments;
}

void Append(Texts& arguments, const Texts& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
}

Texts NetworkArguments(int tcp_port) {
  if (tcp_port == 0) return {"--skip-networking"};
  return {"--bind-address=127.0.0.1", "--port=" + std::to_string(tcp_port)};
}

}  // namespace

CommandLine::CommandLine(Texts arguments, Texts environment)
    : m_arguments(std::move(arguments)),
      m_environment(std::move(environment)),
      m_argument_pointers(Pointers(m_arguments)),
      m_environment_pointers(Pointers(m_environment)) {}

CommandLine ServeCommand(const Folder& folder, const Options& options) {
  Texts arguments = CommonArguments(folder);
  Append(arguments, {"--datadir=" + folder.Data().string(), "--socket=" + folder.Socket().string(),
                     "--pid-file=" + folder.PidFile().string(), "--log-error=" + folder.Log().string(),
                     "--character-set-server=utf8mb4", "--collation-server=utf8mb4_nopad_bin",
                     "--skip-name-resolve", "--max-connections=1010", "--max-prepared-stmt-count=1048576",
                     "--use-stat-tables=NEVER", "--local-infile=OFF"});
  Append(arguments, SettingsArguments(options.settings));
  Append(arguments, NetworkArguments(options.tcp_port));
  Append(arguments, options.server_arguments);
  return {std::move(arguments), ServerEnvironment()};
}

CommandLine CreateCommand(const Folder& folder, const Settings& settings) {
  Texts arguments = CommonArguments(folder);
  Append(arguments, {"--datadir=" + folder.NewData().string(), "--bootstrap",
                     "--enforce-storage-engine=", "--log-warnings=0", "--skip-networking",
                     "--loose-debug-no-sync", LogSizeArgument(settings)});
  return {std::move(arguments), ServerEnvironment()};
}

}  // namespace localdb

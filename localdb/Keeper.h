// SPDX-License-Identifier: Apache-2.0
// The keeper is a process between the users and the server. It is forked off the user that starts the server,
// starts the server as its child, waits until no user holds the users' lock (or the server has ended by
// itself), stops the server and ends. A terminal's Ctrl-C does not reach it: it has a session of its own.
// When the keeper is killed, the kernel kills the server.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "localdb/Fd.h"
#include "localdb/ServerCommand.h"

namespace localdb {

// What the keeper tells the user that started it, if something goes wrong.
struct KeeperReport {
  enum Kind : int { kCannotRun, kServerEnded } kind;
  int value;  // errno, or the status that wait gives
};

struct KeeperJob {
  const CommandLine& server;
  const std::filesystem::path& users_lock;
  const std::filesystem::path& socket;
  const Fd& server_lock;  // locked; keeper and server inherit the lock
  const Fd& log;          // for what the server says before its own log is open
  const Fd& report;       // the writing end of a pipe for a KeeperReport
};

// Returns the keeper's process id. Throws LocalServerError when no process can be made.
pid_t StartKeeper(const KeeperJob& job);

}  // namespace localdb

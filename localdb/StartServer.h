// SPDX-License-Identifier: Apache-2.0
// Starting the server of a folder that has none running.
#pragma once

#include <sys/types.h>

#include "localdb/Deadline.h"
#include "localdb/Folder.h"
#include "localdb/LocalServer.h"
#include "localdb/StartLock.h"

namespace localdb {

struct StartedServer {
  pid_t keeper;  // a child of this process
  pid_t server;
};

// Makes the data when there is none, starts keeper and server and waits until the server answers. Throws
// LocalServerError; a server that came too late is stopped by its keeper once this user lets go.
// REQUIRES: this user holds the start lock and the users' lock; server_lock is locked alone. It stays locked,
// by the keeper, after the caller has closed it.
StartedServer StartServer(const Folder& folder, const Options& options, const StartLock& start_lock,
                          const Fd& server_lock, const Deadline& deadline);

}  // namespace localdb

// SPDX-License-Identifier: Apache-2.0
// Whether a server answers on a socket, found out without logging in: it greets whoever connects.
// Allocates nothing, so that it may be called after a fork.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>

namespace localdb {

// The process id of the server that greets on the socket; nothing when none does within the time.
std::optional<pid_t> AskServer(const std::filesystem::path& socket, std::chrono::milliseconds patience);

}  // namespace localdb

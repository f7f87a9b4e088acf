// SPDX-License-Identifier: Apache-2.0
#include "localdb/Answer.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

#include "localdb/Fd.h"

namespace localdb {

namespace {

bool Connect(const Fd& client, const std::filesystem::path& socket_path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socket_path.native().size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, socket_path.c_str(), socket_path.native().size());
  return connect(client.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool IsGreeted(const Fd& client, std::chrono::milliseconds patience) {
  pollfd wait{client.Get(), POLLIN, 0};
  char first = 0;
  return poll(&wait, 1, static_cast<int>(patience.count())) == 1 && recv(client.Get(), &first, 1, 0) == 1;
}

}  // namespace

std::optional<pid_t> AskServer(const std::filesystem::path& socket_path, std::chrono::milliseconds patience) {
  // Not blocking: a full backlog means no answer for now.
  const Fd client(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!client.IsOpen() || !Connect(client, socket_path) || !IsGreeted(client, patience)) return std::nullopt;
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(client.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
  return peer.pid;
}

}  // namespace localdb

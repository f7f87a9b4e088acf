// SPDX-License-Identifier: Apache-2.0
#include "CountingProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace oci_test {
namespace {

sockaddr_un AddressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) throw std::runtime_error("path too long for a socket: " + path);
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

// False at the end of the stream.
bool PassOn(int from, int to) {
  char buffer[65536];
  const ssize_t length = read(from, buffer, sizeof buffer);
  if (length <= 0) return false;
  for (ssize_t sent = 0; sent < length;) {
    const ssize_t more = write(to, buffer + sent, static_cast<std::size_t>(length - sent));
    if (more <= 0) return false;
    sent += more;
  }
  return true;
}

}  // namespace

CountingProxy::CountingProxy(std::string server_socket)
    : m_server_socket(std::move(server_socket)), m_listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_un address = AddressOf(SocketPath());
  if (bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(m_listener, 5) != 0 || pipe(m_stop) != 0)
    throw std::runtime_error("cannot listen on " + SocketPath());
  m_thread = std::thread([this] { Serve(); });
}

CountingProxy::~CountingProxy() {
  close(m_stop[1]);
  m_thread.join();
  close(m_stop[0]);
  close(m_listener);
}

void CountingProxy::Serve() {
  for (;;) {
    pollfd waiting[] = {{m_listener, POLLIN, 0}, {m_stop[0], POLLIN, 0}};
    poll(waiting, 2, -1);
    if (waiting[1].revents != 0) return;
    const int client = accept(m_listener, nullptr, nullptr);
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = AddressOf(m_server_socket);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
      Relay(client, server);
    close(client);
    close(server);
  }
}

void CountingProxy::Relay(int client, int server) {
  bool asked = false;  // the client has spoken since the last answer
  for (;;) {
    pollfd waiting[] = {{client, POLLIN, 0}, {server, POLLIN, 0}, {m_stop[0], POLLIN, 0}};
    poll(waiting, 3, -1);
    if (waiting[2].revents != 0) return;
    if (waiting[0].revents != 0) {
      asked = true;
      if (!PassOn(client, server)) return;
    } else if (waiting[1].revents != 0) {
      if (asked) ++m_answers;  // before the client can see the answer
      asked = false;
      if (!PassOn(server, client)) return;
    }
  }
}

}  // namespace oci_test

// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/LeanLink.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>

namespace ocimaria {

LeanLink::LeanLink(MYSQL* mysql) : m_usual(mysql->net.pvio->methods) {
  static_cast<PVIO_METHODS&>(m_methods) = *m_usual;
  m_methods.link = this;
  m_methods.read = Read;
  m_methods.write = Write;
  mysql->net.pvio->methods = &m_methods;
}

void LeanLink::Close(MYSQL_STMT* statement) {
  m_hold = true;
  mysql_stmt_close(statement);
  m_hold = false;  // a statement that was never prepared writes nothing
}

// Polls although a recv would wait, too: the wait of a recv on a unix socket also ends when the other side
// has taken what was sent to it, which is once more for every request.
ssize_t LeanLink::Read(MARIADB_PVIO* pvio, unsigned char* buffer, std::size_t length) {
  const int socket = static_cast<int>(mysql_get_socket(pvio->mysql));
  pollfd answer{socket, POLLIN, 0};
  for (;;) {
    if (poll(&answer, 1, -1) < 0 && errno != EINTR) return -1;
    const ssize_t got = recv(socket, buffer, length, MSG_DONTWAIT);
    if (got >= 0 || (errno != EINTR && errno != EAGAIN)) return got;
  }
}

ssize_t LeanLink::Write(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length) {
  LeanLink& link = Of(pvio);
  if (link.m_hold) {
    link.m_waiting.insert(link.m_waiting.end(), buffer, buffer + length);
    return static_cast<ssize_t>(length);
  }
  if (link.m_waiting.empty()) return link.m_usual->write(pvio, buffer, length);
  return link.WriteBehindWaiting(pvio, buffer, length);
}

ssize_t LeanLink::WriteBehindWaiting(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length) {
  constexpr std::size_t kMostToCopy = 65536;
  std::vector<unsigned char> waiting = std::move(m_waiting);
  m_waiting.clear();
  if (length > kMostToCopy) {
    if (WriteAll(pvio, waiting.data(), waiting.size()) < 0) return -1;
    return m_usual->write(pvio, buffer, length);
  }
  waiting.insert(waiting.end(), buffer, buffer + length);
  return WriteAll(pvio, waiting.data(), waiting.size()) < 0 ? -1 : static_cast<ssize_t>(length);
}

ssize_t LeanLink::WriteAll(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length) {
  std::size_t written = 0;
  while (written < length) {
    const ssize_t part = m_usual->write(pvio, buffer + written, length - written);
    if (part <= 0) return -1;
    written += static_cast<std::size_t>(part);
  }
  return static_cast<ssize_t>(written);
}

}  // namespace ocimaria

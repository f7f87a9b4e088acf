// SPDX-License-Identifier: Apache-2.0
// How a session's connection reads and writes, with fewer calls of the system than Connector/C makes by
// itself. A read polls and receives, where Connector/C tries to receive before that. The order to close a
// statement, which no server answers, waits for the next request and travels in front of it: sent alone, it
// would wake the server for nothing. A connection with TLS goes on as it is.
// REQUIRES a connection without time limits (WatchLink). Threads: as the connection. It must outlive the
// MYSQL that it was made for.
#pragma once

#include <mysql.h>
// The header behind it needs mysql.h.
#include <ma_pvio.h>

#include <cstddef>
#include <vector>

namespace ocimaria {

class LeanLink {
 public:
  explicit LeanLink(MYSQL* mysql);
  LeanLink(const LeanLink&) = delete;
  LeanLink& operator=(const LeanLink&) = delete;

  // Closes a statement; what that writes waits for the next request.
  void Close(MYSQL_STMT* statement);

 private:
  // What Connector/C calls; it finds its way back to the object.
  struct Methods : PVIO_METHODS {
    LeanLink* link;
  };
  static LeanLink& Of(MARIADB_PVIO* pvio) { return *static_cast<Methods*>(pvio->methods)->link; }
  static ssize_t Read(MARIADB_PVIO* pvio, unsigned char* buffer, std::size_t length);
  static ssize_t Write(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length);
  ssize_t WriteAll(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length);
  ssize_t WriteBehindWaiting(MARIADB_PVIO* pvio, const unsigned char* buffer, std::size_t length);

  Methods m_methods;
  const PVIO_METHODS* m_usual;
  bool m_hold = false;
  std::vector<unsigned char> m_waiting;
};

}  // namespace ocimaria

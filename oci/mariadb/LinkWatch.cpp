// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/LinkWatch.h"

#include <ma_pvio.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>

namespace ocimaria {
namespace {

constexpr unsigned kNoLimit = 0;

void Set(int socket, int level, int option, int value) {
  setsockopt(socket, level, option, &value, sizeof value);  // of no effect on a unix socket
}

}  // namespace

void LimitLogIn(MYSQL* mysql, unsigned seconds) {
  mysql_options(mysql, MYSQL_OPT_CONNECT_TIMEOUT, &seconds);
  mysql_options(mysql, MYSQL_OPT_READ_TIMEOUT, &seconds);
  mysql_options(mysql, MYSQL_OPT_WRITE_TIMEOUT, &seconds);
}

// Questions are sent from a third of the time on. The user timeout ends the link when one, or data, has had
// no answer for the whole time; it counts instead of the number of questions.
void WatchLink(MYSQL* mysql, unsigned seconds) {
  const int limit = static_cast<int>(seconds);
  const int socket = static_cast<int>(mysql_get_socket(mysql));
  Set(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
  Set(socket, IPPROTO_TCP, TCP_KEEPIDLE, std::max(1, limit / 3));
  Set(socket, IPPROTO_TCP, TCP_KEEPINTVL, std::max(1, limit / 6));
  Set(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, limit * 1000);
  // The options alone are read only while connecting.
  mysql_options(mysql, MYSQL_OPT_READ_TIMEOUT, &kNoLimit);
  mysql_options(mysql, MYSQL_OPT_WRITE_TIMEOUT, &kNoLimit);
  MARIADB_PVIO* link = mysql->net.pvio;
  link->methods->set_timeout(link, PVIO_READ_TIMEOUT, kNoLimit);
  link->methods->set_timeout(link, PVIO_WRITE_TIMEOUT, kNoLimit);
}

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
// What keeps a call from waiting for ever: a server that falls silent in the log-in, and the settings of a
// link.
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <set>

#include "Contract.h"
#include "SilentServer.h"

namespace oci_test {
namespace {

// The TCP sockets of this process.
std::set<int> TcpSockets() {
  std::set<int> found;
  for (int fd = 0; fd < 1024; ++fd) {
    int protocol = 0;
    socklen_t size = sizeof protocol;
    if (getsockopt(fd, SOL_SOCKET, SO_PROTOCOL, &protocol, &size) == 0 && protocol == IPPROTO_TCP)
      found.insert(fd);
  }
  return found;
}

int Option(int fd, int level, int option) {
  int value = -1;
  socklen_t size = sizeof value;
  getsockopt(fd, level, option, &value, &size);
  return value;
}

TEST(Link, ASilentOneCountsAsLostAfterTheTimeOfTheConnectString) {
  const std::string connect_string = TheServer().ConnectString() + "?link-timeout=12";
  const std::set<int> before = TcpSockets();
  Client client;
  client.Connect(connect_string, TheServer().User(), TheServer().Password());
  std::set<int> links;
  for (const int fd : TcpSockets())
    if (!before.contains(fd)) links.insert(fd);
  ASSERT_EQ(links.size(), 1u);
  const int link = *links.begin();
  EXPECT_EQ(Option(link, SOL_SOCKET, SO_KEEPALIVE), 1);
  EXPECT_EQ(Option(link, IPPROTO_TCP, TCP_KEEPIDLE), 4);
  EXPECT_EQ(Option(link, IPPROTO_TCP, TCP_KEEPINTVL), 2);
  EXPECT_EQ(Option(link, IPPROTO_TCP, TCP_USER_TIMEOUT), 12000);
}

TEST(Link, AStatementMayRunLongerThanTheTimesOfTheConnectString) {
  Client client;
  client.Connect(TheServer().ConnectString() + "?connect-timeout=1&link-timeout=1", TheServer().User(),
                 TheServer().Password());
  EXPECT_EQ(Value(client, "SELECT SLEEP(3) FROM DUAL"), "0");
}

TEST(Link, AServerThatFallsSilentInTheLogInEndsTheAttempt) {
  for (const auto silence : {SilentServer::kFromTheBegin, SilentServer::kAfterTheGreeting}) {
    const SilentServer server(silence);
    Client client;
    ASSERT_EQ(client.Attach(server.ConnectString() + "?connect-timeout=1"), OCI_SUCCESS);
    EXPECT_EQ(client.Begin("u", "p"), OCI_ERROR);
    EXPECT_EQ(client.Code(), 12170) << client.LastReport().text;
  }
}

}  // namespace
}  // namespace oci_test

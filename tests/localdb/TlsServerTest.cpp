// SPDX-License-Identifier: Apache-2.0
#include "TlsServer.h"

#include <gtest/gtest.h>

#include <csignal>

#include "SqlClient.h"

using test_support::Encryption;
using test_support::TlsServer;

namespace {

TcpLogin Login(const TlsServer& server) {
  return {server.Host(), server.Port(), server.User(), server.Password(), "", "", ""};
}

}  // namespace

TEST(TlsServer, IsReachedByTcpWithAVerifiedCertificate) {
  const TlsServer server;
  TcpLogin login = Login(server);
  login.authority = server.Authority();
  SqlClient client(login);
  EXPECT_NE(client.Cipher(), "");
  EXPECT_EQ(client.Value("SELECT CURRENT_USER()"), "distant@127.0.0.1");
}

TEST(TlsServer, FailsTheCheckAgainstAnotherAuthority) {
  const TlsServer server;
  TcpLogin login = Login(server);
  login.authority = server.OtherAuthority();
  EXPECT_THROW(SqlClient{login}, std::runtime_error);
}

TEST(TlsServer, RefusesAWrongPassword) {
  const TlsServer server;
  TcpLogin login = Login(server);
  login.password = "wrong";
  EXPECT_THROW(SqlClient{login}, std::runtime_error);
}

TEST(TlsServer, LetsTheCertifiedUserInWithItsCertificateOnly) {
  const TlsServer server;
  TcpLogin login = Login(server);
  login.authority = server.Authority();
  login.user = server.UserWithCertificate();
  EXPECT_THROW(SqlClient{login}, std::runtime_error);
  login.certificate = server.ClientCertificate();
  login.key = server.ClientKey();
  EXPECT_EQ(SqlClient(login).Value("SELECT CURRENT_USER()"), "certified@127.0.0.1");
}

TEST(TlsServer, WithoutEncryptionAnswersInPlainText) {
  const TlsServer server(Encryption::kNone);
  EXPECT_EQ(SqlClient(Login(server)).Cipher(), "");
}

TEST(TlsServer, ComesBackOnItsPortWithItsDataAfterAKill) {
  TlsServer server;
  SqlClient(Login(server)).Run("CREATE TABLE t (a INT) AS SELECT 7 AS a");
  kill(server.Local().ServerPid(), SIGKILL);
  server.Restart();
  EXPECT_EQ(SqlClient(Login(server)).Value("SELECT a FROM t"), "7");
}

// SPDX-License-Identifier: Apache-2.0
// A server that is killed: the error, the state of the handles, and the data afterwards.
#include <csignal>

#include "Contract.h"

namespace oci_test {
namespace {

class Losing : public testing::TestWithParam<Transport> {
 protected:
  Losing() { client.Connect(ConnectString(), User(), Password()); }

  bool Tls() const { return GetParam() == Transport::kTls; }
  std::string ConnectString() const {
    return Tls() ? server.ConnectString() + "?tls=required" : server.Local().ConnectString();
  }
  std::string User() const { return Tls() ? server.User() : server.Local().User(); }
  std::string Password() const { return Tls() ? server.Password() : server.Local().Password(); }
  void Kill() { kill(server.Local().ServerPid(), SIGKILL); }

  test_support::TlsServer server;
  Client client;
};
INSTANTIATE_TEST_SUITE_P(Over, Losing, testing::Values(Transport::kSocket, Transport::kTls), TransportName);

TEST_P(Losing, TheServerIsToldAndKeepsWhatWasCommitted) {
  MustExec(client, "CREATE TABLE T_LOSS (ID NUMBER NOT NULL, S VARCHAR2(10), PRIMARY KEY(ID))");
  MustExec(client, "INSERT INTO T_LOSS VALUES (1, 'kept')", OCI_COMMIT_ON_SUCCESS);
  MustExec(client, "INSERT INTO T_LOSS VALUES (2, 'open')");
  Statement bound(client, "INSERT INTO T_LOSS VALUES (:1, 'x')");
  double id = 3;
  bound.Bind(1, &id, 8, SQLT_FLT);
  Kill();

  EXPECT_EQ(bound.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3113);
  EXPECT_EQ(client.ServerStatus(), 0u);
  EXPECT_EQ(Exec(client, "DELETE FROM T_LOSS"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3114);
  EXPECT_EQ(bound.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3114);
  EXPECT_EQ(client.Commit(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3114);
  EXPECT_EQ(client.End(), OCI_SUCCESS) << client.LastReport().text;

  server.Restart();
  ASSERT_EQ(client.Begin(User(), Password()), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(client.ServerStatus(), 1u);
  EXPECT_EQ(Rows(client, "SELECT * FROM T_LOSS"), (std::vector<std::vector<std::string>>{{"1", "kept"}}));
  EXPECT_EQ(bound.Execute(), OCI_SUCCESS) << "a statement of the lost session runs in the next";
}

}  // namespace
}  // namespace oci_test

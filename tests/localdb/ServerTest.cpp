// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

#include "Processes.h"
#include "SqlClient.h"
#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

using localdb::LocalServer;
using localdb::Options;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class LocalServerTest : public testing::Test {
 protected:
  fs::path Db() const { return m_temporary.Path() / "db"; }
  test_support::TemporaryFolder m_temporary;
};

TEST_F(LocalServerTest, CreatesAFolderThatOnlyItsOwnerMayEnterAndAnswers) {
  const LocalServer server(m_temporary.Path() / "new" / "db");
  EXPECT_TRUE(server.Started());
  EXPECT_EQ(fs::status(server.Folder()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(SqlClient(server).Value("SELECT CURRENT_USER()"), "lkbench@localhost");
}

TEST_F(LocalServerTest, IsSetUpForTheBenchmark) {
  const LocalServer server(Db());
  SqlClient client(server);
  EXPECT_EQ(client.Value("SELECT DATABASE()"), "lkbench");
  EXPECT_EQ(client.Value("SELECT @@collation_database"), "utf8mb4_nopad_bin");
  EXPECT_EQ(client.Value("SELECT @@lower_case_table_names"), "1");
  EXPECT_EQ(client.Value("SELECT @@skip_networking"), "1");
  EXPECT_EQ(client.Value("SELECT @@max_connections >= 320"), "1");
}

TEST_F(LocalServerTest, ServerArgumentsOfTheOptionsWin) {
  Options options;
  options.server_arguments = {"--max-connections=17"};
  const LocalServer server(Db(), options);
  EXPECT_EQ(SqlClient(server).Value("SELECT @@max_connections"), "17");
}

TEST_F(LocalServerTest, DataSurviveARestart) {
  {
    const LocalServer server(Db());
    SqlClient(server).Run("CREATE TABLE t AS SELECT 42 AS a");
  }
  const LocalServer server(Db());
  EXPECT_TRUE(server.Started());
  EXPECT_EQ(SqlClient(server).Value("SELECT a FROM t"), "42");
}

TEST_F(LocalServerTest, TheLastUserStopsTheServerCleanly) {
  pid_t server_pid = 0;
  pid_t keeper_pid = 0;
  {
    const LocalServer server(Db());
    server_pid = server.ServerPid();
    keeper_pid = ParentOf(server_pid);
    EXPECT_TRUE(IsRunning(server_pid));
    EXPECT_TRUE(IsRunning(keeper_pid));
  }
  EXPECT_FALSE(IsRunning(server_pid));
  EXPECT_FALSE(IsRunning(keeper_pid));
  EXPECT_THAT(ReadFile(Db() / "server.log"), HasSubstr("Shutdown complete"));
  EXPECT_FALSE(fs::exists(Db() / "mariadb.sock"));
}

TEST_F(LocalServerTest, ASecondUserOfTheProcessJoinsAndOutlivesTheFirst) {
  auto first = std::make_unique<LocalServer>(Db());
  const LocalServer second(Db());
  EXPECT_FALSE(second.Started());
  EXPECT_EQ(second.ServerPid(), first->ServerPid());
  SqlClient client(second);
  first.reset();
  EXPECT_EQ(client.Value("SELECT 1"), "1");
}

TEST_F(LocalServerTest, AUserOfAnotherProcessJoinsAndItsEndDoesNotDisturb) {
  const LocalServer server(Db());
  SqlClient client(server);
  UserProcess other(Db());
  EXPECT_FALSE(other.Started());
  EXPECT_EQ(other.ServerPid(), server.ServerPid());
  other.Leave();
  EXPECT_EQ(client.Value("SELECT 1"), "1");
}

TEST_F(LocalServerTest, TheStarterMayEndBeforeOthers) {
  UserProcess starter(Db());
  EXPECT_TRUE(starter.Started());
  const LocalServer server(Db());
  SqlClient client(server);
  starter.Leave();
  EXPECT_EQ(client.Value("SELECT 1"), "1");
  EXPECT_EQ(server.ServerPid(), starter.ServerPid());
}

TEST_F(LocalServerTest, TheLastUserStopsTheServerAlsoWhenItHasJoined) {
  UserProcess starter(Db());
  const pid_t server_pid = starter.ServerPid();
  {
    const LocalServer joined(Db());
    starter.Leave();
    EXPECT_TRUE(IsRunning(server_pid));
  }
  EXPECT_FALSE(IsRunning(server_pid));
}

TEST_F(LocalServerTest, OfManyThatBeginAtOnceOneStartsAndTheOthersJoin) {
  std::deque<UserProcess> users;
  for (int i = 0; i < 8; ++i) users.emplace_back(Db());
  int started = 0;
  for (UserProcess& user : users) {
    started += user.Started() ? 1 : 0;
    EXPECT_EQ(user.ServerPid(), users.front().ServerPid());
  }
  EXPECT_EQ(started, 1);
}

TEST_F(LocalServerTest, ComingWhileAnotherLeavesGivesARunningServer) {
  UserProcess leaving(Db());
  leaving.ServerPid();
  for (int i = 0; i < 10; ++i) {
    UserProcess coming(Db());
    leaving.Leave();
    EXPECT_TRUE(IsRunning(coming.ServerPid()));
    UserProcess next(Db());
    coming.Leave();
    EXPECT_TRUE(IsRunning(next.ServerPid()));
  }
}

TEST_F(LocalServerTest, ConnectStringNamesTheSocketPercentEncoded) {
  const LocalServer server(m_temporary.Path() / "a b%&ü");
  EXPECT_EQ(server.ConnectString(),
            "mariadb:///lkbench?socket=" + m_temporary.Path().string() + "/a%20b%25%26%C3%BC/mariadb.sock");
  EXPECT_EQ(server.SocketPath(), m_temporary.Path() / "a b%&ü" / "mariadb.sock");
  EXPECT_EQ(SqlClient(server).Value("SELECT 1"), "1");
}

TEST_F(LocalServerTest, WithoutANetworkOptionNoPortIsOpen) {
  const LocalServer server(Db());
  EXPECT_EQ(SqlClient(server).Value("SELECT @@port"), "0");
}

TEST_F(LocalServerTest, KeepsTheLogOfTheRunBefore) {
  { const LocalServer first(Db()); }
  const LocalServer second(Db());
  EXPECT_THAT(ReadFile(Db() / "server.log.old"), HasSubstr("Shutdown complete"));
  EXPECT_THAT(ReadFile(Db() / "server.log"), Not(HasSubstr("Shutdown complete")));
}

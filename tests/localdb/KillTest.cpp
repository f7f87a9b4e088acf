// SPDX-License-Identifier: Apache-2.0
// Whatever is killed: nothing is orphaned and nothing committed is lost.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "Processes.h"
#include "SqlClient.h"
#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

using localdb::LocalServer;
using testing::HasSubstr;

namespace fs = std::filesystem;

class LocalServerKill : public testing::Test {
 protected:
  fs::path Db() const { return m_temporary.Path() / "db"; }

  // A committed row, written by a user that comes and goes.
  void Commit(const std::string& value) const {
    const LocalServer server(Db());
    SqlClient client(server);
    client.Run("CREATE TABLE IF NOT EXISTS t (a INT PRIMARY KEY)");
    client.Run("INSERT INTO t VALUES (" + value + ")");
  }
  std::string Sum() const {
    const LocalServer server(Db());
    return SqlClient(server).Value("SELECT SUM(a) FROM t");
  }

  test_support::TemporaryFolder m_temporary;
};

TEST_F(LocalServerKill, OfTheOnlyUserStopsTheServerAndKeepsTheData) {
  UserProcess user(Db());
  const pid_t server = user.ServerPid();
  const pid_t keeper = ParentOf(server);
  Commit("5");
  user.Kill();
  EXPECT_TRUE(Eventually([&] { return !IsRunning(server) && !IsRunning(keeper); }));
  EXPECT_THAT(ReadFile(Db() / "server.log"), HasSubstr("Shutdown complete"));
  EXPECT_EQ(Sum(), "5");
}

TEST_F(LocalServerKill, OfOneUserDoesNotDisturbTheOthers) {
  UserProcess starter(Db());
  EXPECT_TRUE(starter.Started());
  const LocalServer server(Db());
  SqlClient client(server);
  starter.Kill();
  EXPECT_EQ(client.Value("SELECT 1"), "1");
}

TEST_F(LocalServerKill, OfTheKeeperEndsTheServerAndTheNextUserRecovers) {
  UserProcess user(Db());
  Commit("6");
  const pid_t server = user.ServerPid();
  kill(ParentOf(server), SIGKILL);
  EXPECT_TRUE(Eventually([&] { return !IsRunning(server); }));
  EXPECT_EQ(Sum(), "6");
}

TEST_F(LocalServerKill, OfTheServerEndsTheKeeperAndTheNextUserRecovers) {
  UserProcess user(Db());
  Commit("7");
  const pid_t server = user.ServerPid();
  const pid_t keeper = ParentOf(server);
  kill(server, SIGKILL);
  EXPECT_TRUE(Eventually([&] { return !IsRunning(keeper); }));
  EXPECT_EQ(Sum(), "7");
}

TEST_F(LocalServerKill, OfTheServerLetsAnotherComeWhileTheUserStays) {
  UserProcess user(Db());
  kill(user.ServerPid(), SIGKILL);
  const LocalServer next(Db());
  EXPECT_TRUE(next.Started());
  EXPECT_NE(next.ServerPid(), user.ServerPid());
  user.Leave();
  EXPECT_EQ(SqlClient(next).Value("SELECT 1"), "1");
}

TEST_F(LocalServerKill, OfUserKeeperAndServerTogetherLosesNothingCommitted) {
  UserProcess user(Db());
  Commit("8");
  const pid_t server = user.ServerPid();
  const pid_t keeper = ParentOf(server);
  kill(server, SIGKILL);
  kill(keeper, SIGKILL);
  user.Kill();
  EXPECT_EQ(Sum(), "8");
}

// The moments are spread over the making of the data, the start and the time after it.
TEST_F(LocalServerKill, AtAnyMomentOfTheFirstStartLeavesAFolderThatCanBeUsed) {
  for (int milliseconds = 0; milliseconds < 480; milliseconds += 60) {
    const fs::path folder = m_temporary.Path() / std::to_string(milliseconds);
    UserProcess user(folder);
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    user.Kill();
    const LocalServer next(folder);
    EXPECT_EQ(SqlClient(next).Value(
                  "SELECT COUNT(*) FROM information_schema.schemata WHERE schema_name = 'lkbench'"),
              "1");
    EXPECT_FALSE(fs::exists(folder / "data.new"));
  }
}

TEST_F(LocalServerKill, AtAnyMomentOfALaterStartKeepsTheData) {
  Commit("9");
  for (int milliseconds = 0; milliseconds < 120; milliseconds += 15) {
    UserProcess user(Db());
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    user.Kill();
  }
  EXPECT_EQ(Sum(), "9");
}

TEST_F(LocalServerKill, TerminatingTheKeeperStopsTheServerCleanly) {
  UserProcess user(Db());
  const pid_t server = user.ServerPid();
  kill(ParentOf(server), SIGTERM);
  EXPECT_TRUE(Eventually([&] { return !IsRunning(server); }));
  EXPECT_THAT(ReadFile(Db() / "server.log"), HasSubstr("Shutdown complete"));
}

TEST_F(LocalServerKill, ASignalToTheGroupOfTheTerminalReachesTheUserOnly) {
  UserProcess user(Db(), [] { setpgid(0, 0); });
  const pid_t server = user.ServerPid();
  const LocalServer other(Db());
  kill(-user.Pid(), SIGTERM);
  EXPECT_TRUE(Eventually([&] { return !IsRunning(user.Pid()); }));
  EXPECT_EQ(SqlClient(other).Value("SELECT 1"), "1");
  EXPECT_EQ(other.ServerPid(), server);
}

TEST_F(LocalServerKill, ServerAndKeeperHoldNoPipeOfTheUser) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  UserProcess starter(Db());  // inherits the pipe
  EXPECT_TRUE(starter.Started());
  const LocalServer other(Db());
  close(ends[1]);
  starter.Leave();
  pollfd wait{ends[0], POLLIN, 0};
  EXPECT_EQ(poll(&wait, 1, 10'000), 1);
  EXPECT_NE(wait.revents & POLLHUP, 0);
  close(ends[0]);
}

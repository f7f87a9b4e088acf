// SPDX-License-Identifier: Apache-2.0
// What a private server is told, asked of the server itself.
#include <gtest/gtest.h>

#include <csignal>

#include "SqlClient.h"
#include "TemporaryFolder.h"

using localdb::Durability;
using localdb::kMebibyte;
using localdb::LocalServer;
using localdb::Options;

class SettingsTest : public testing::Test {
 protected:
  static Options With(Durability durability, std::uint64_t buffer_pool, std::uint64_t log_size) {
    Options options;
    options.settings = {durability, buffer_pool * kMebibyte, log_size * kMebibyte};
    return options;
  }
  std::filesystem::path Db() const { return m_temporary.Path() / "db"; }
  test_support::TemporaryFolder m_temporary;
};

TEST_F(SettingsTest, CommitsAreDurableUnlessToldOtherwise) {
  const LocalServer server(Db());
  SqlClient client(server);
  EXPECT_EQ(client.Value("SELECT @@innodb_flush_log_at_trx_commit"), "1");
  EXPECT_EQ(client.Value("SELECT @@innodb_doublewrite"), "1");
  EXPECT_EQ(client.Value("SELECT @@log_bin"), "0");
  EXPECT_EQ(client.Value("SELECT @@innodb_buffer_pool_size"), "1073741824");
  EXPECT_EQ(client.Value("SELECT @@innodb_log_file_size"), "268435456");
}

TEST_F(SettingsTest, ARelaxedServerLeavesTheFlushAndNothingElseToTheSystem) {
  const LocalServer server(Db(), With(Durability::kRelaxed, 64, 16));
  SqlClient client(server);
  EXPECT_EQ(client.Value("SELECT @@innodb_flush_log_at_trx_commit"), "2");
  EXPECT_EQ(client.Value("SELECT @@innodb_flush_log_at_timeout"), "1");
  EXPECT_EQ(client.Value("SELECT @@innodb_doublewrite"), "1");
  EXPECT_EQ(client.Value("SELECT @@log_bin"), "0");
}

TEST_F(SettingsTest, SizesAreTakenToTheMebibyte) {
  const LocalServer server(Db(), With(Durability::kDurable, 33, 9));
  SqlClient client(server);
  EXPECT_EQ(client.Value("SELECT @@innodb_buffer_pool_size DIV 1048576"), "33");
  EXPECT_EQ(client.Value("SELECT @@innodb_log_file_size DIV 1048576"), "9");
  EXPECT_EQ(std::filesystem::file_size(Db() / "data" / "ib_logfile0"), 9 * kMebibyte);
}

TEST_F(SettingsTest, AnyStartMayChangeThemAlsoAfterACrash) {
  {
    const LocalServer server(Db());
    SqlClient(server).Run("CREATE TABLE t AS SELECT 42 AS a");
    kill(server.ServerPid(), SIGKILL);
  }
  const LocalServer server(Db(), With(Durability::kRelaxed, 48, 24));
  EXPECT_TRUE(server.Started());
  SqlClient client(server);
  EXPECT_EQ(client.Value("SELECT a FROM t"), "42");
  EXPECT_EQ(client.Value("SELECT @@innodb_log_file_size DIV 1048576"), "24");
  EXPECT_EQ(client.Value("SELECT @@innodb_buffer_pool_size DIV 1048576"), "48");
}

TEST_F(SettingsTest, ARelaxedCommitSurvivesTheEndOfTheServer) {
  const Options options = With(Durability::kRelaxed, 64, 16);
  {
    const LocalServer server(Db(), options);
    SqlClient client(server);
    client.Run("CREATE TABLE t (a INT)");
    client.Run("INSERT INTO t VALUES (7)");
    kill(server.ServerPid(), SIGKILL);
  }
  const LocalServer server(Db(), options);
  EXPECT_EQ(SqlClient(server).Value("SELECT a FROM t"), "7");
}

TEST_F(SettingsTest, WhoJoinsFindsTheSettingsOfWhoStarted) {
  const LocalServer first(Db(), With(Durability::kRelaxed, 64, 16));
  const LocalServer second(Db());
  EXPECT_FALSE(second.Started());
  EXPECT_EQ(SqlClient(second).Value("SELECT @@innodb_flush_log_at_trx_commit"), "2");
}

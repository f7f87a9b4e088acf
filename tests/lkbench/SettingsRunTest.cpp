// SPDX-License-Identifier: Apache-2.0
// Which durability a run reports: that of the server it ran on, whatever the job says.
#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "Program.h"
#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

namespace {

using localdb::LocalServer;
using testing::HasSubstr;
using testing::StartsWith;

class SettingsRun : public testing::Test {
 protected:
  std::filesystem::path Db() const { return m_folder.Path() / "db"; }
  Outcome Run(std::vector<std::string> arguments, const std::string& target) const {
    arguments.insert(arguments.end(), {"--target", target, "--json", Results(), "--results",
                                       m_folder.Path() / "results", "--tables", "1", "--duration", "100ms"});
    return RunProgram(arguments);
  }
  std::string Local() const { return "local:" + Db().string(); }
  static std::string Remote(const LocalServer& server) {
    return "mariadb://" + server.User() + "@/lkbench?socket=" + server.SocketPath().string();
  }
  nlohmann::json Server() const {
    std::ifstream stream(Results());
    return nlohmann::json::parse(stream)["environment"]["server"]["settings"];
  }
  std::string Results() const { return m_folder.Path() / "results.json"; }

  test_support::TemporaryFolder m_folder;
};

TEST_F(SettingsRun, OnAServerOfItsOwnSettingsApplyAndAreReported) {
  const Outcome outcome =
      Run({"run", "--durability", "relaxed", "--buffer-pool", "64M", "--log-size", "16MiB"}, Local());
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              HasSubstr("\ndurability: relaxed (innodb_flush_log_at_trx_commit 2, no binary log)\n"));
  const nlohmann::json expected = {{"durability", "relaxed"},
                                   {"innodb_flush_log_at_trx_commit", 2},
                                   {"log_bin", false},
                                   {"innodb_buffer_pool_size", 67108864},
                                   {"innodb_log_file_size", 16777216}};
  EXPECT_EQ(Server(), expected);
}

TEST_F(SettingsRun, AServerInUseThatLacksWhatTheJobSetsIsNotMeasured) {
  const LocalServer server(Db());
  const Outcome outcome = Run({"run", "--durability", "relaxed"}, Local());
  EXPECT_EQ(outcome.code, 5);
  EXPECT_THAT(outcome.err, StartsWith("lkbench: the server of local:" + Db().string() +
                                      " is in use already, with durability durable where the job sets "
                                      "durability relaxed: "));
  EXPECT_THAT(outcome.out, StartsWith("results  "));
}

TEST_F(SettingsRun, AServerInUseWithUnusualSettingsIsToldAndReported) {
  localdb::Options options;
  options.settings.durability = localdb::Durability::kRelaxed;
  const LocalServer server(Db(), options);
  const Outcome outcome = Run({"run"}, Local());
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.err, StartsWith("lkbench: warning: the server of local:" + Db().string()));
  EXPECT_THAT(outcome.err, HasSubstr("with durability relaxed (default: durability durable)"));
  EXPECT_EQ(Server()["durability"], "relaxed");
}

TEST_F(SettingsRun, ABinaryLogThatIsNotFlushedMakesADatabaseRelaxed) {
  localdb::Options options;
  options.server_arguments = {"--log-bin=" + (m_folder.Path() / "binlog").string(), "--server-id=1",
                              "--sync-binlog=0"};
  const LocalServer server(Db(), options);
  const Outcome outcome = Run({"run"}, Remote(server));
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              HasSubstr("\ndurability: relaxed (innodb_flush_log_at_trx_commit 1, sync_binlog 0)\n"));
  EXPECT_EQ(Server()["log_bin"], true);
  EXPECT_EQ(Server()["sync_binlog"], 0);
}

TEST_F(SettingsRun, OfAnOracleTargetTheDurabilityIsUnknown) {
  const LocalServer server(Db());
  const std::filesystem::path libraries = std::filesystem::path(LKBENCH_PROGRAM) / ".." / ".." / "lib";
  const Outcome outcome = Run({"run", "--oci", (libraries / "libocimariadb.so").lexically_normal()},
                              "oracle://" + server.User() + "@" + server.ConnectString());
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\ndurability: unknown (the target does not tell)\n"));
  EXPECT_EQ(Server(), nlohmann::json({{"durability", "unknown"}}));
}

}  // namespace

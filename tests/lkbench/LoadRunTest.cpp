// SPDX-License-Identifier: Apache-2.0
#include <csignal>

#include "RunTest.h"

namespace {

using testing::HasSubstr;

const std::vector<std::string> kUserCounts = {"1", "2", "3", "5", "7"};

class LoadRun : public RunTest {
 protected:
  void Create(const std::string& tables) { Do({"create", "--tables", tables}); }
  void ExpectIds(int tables, int rows) {
    for (int table = 1; table <= tables; ++table)
      EXPECT_EQ(Ids("LK_REP_TABLE" + std::to_string(table)), Exactly(rows)) << "table " << table;
  }
  // Starts a load that is far too long, and returns once it has sent rows beyond `rows` into `table`.
  std::unique_ptr<Program> StartLongLoad(const std::string& table, int rows,
                                         const std::vector<std::string>& flags = {}) {
    std::vector<std::string> arguments = {"load", "--scale", "5000"};
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    auto program = std::make_unique<Program>(Arguments(arguments));
    EXPECT_TRUE(program->WaitFor([&] {
      return HasTable(table) && std::stoi(Value("SELECT COALESCE(MAX(ID), 0) FROM " + table)) > rows;
    }));
    return program;
  }
};

TEST_F(LoadRun, FillsEachTableWithExactlyTheIdsOfTheScaleForAnyNumberOfUsers) {
  for (const std::string& users : kUserCounts) {
    SCOPED_TRACE(users);
    Create("2");
    Do({"load", "--scale", "1.5", "--users", users});
    ExpectIds(2, 1500);
    Do({"load", "--scale", "2", "--users", users});
    ExpectIds(2, 2000);
    EXPECT_EQ(NextId(), "2001");
    EXPECT_EQ(Property("Scale"), "2");
    Do({"drop"});
  }
}

TEST_F(LoadRun, FillsBackupsAndTablesWithExactlyTheIdsOfTheScaleForAnyNumberOfUsers) {
  for (const std::string& users : kUserCounts) {
    SCOPED_TRACE(users);
    Create("2");
    Do({"load", "--scale", "1.5", "--users", users, "--use-backup"});
    ExpectIds(2, 1500);
    Do({"load", "--scale", "2", "--users", users, "--use-backup"});
    ExpectIds(2, 2000);
    EXPECT_EQ(Ids("LK_REP_TABLE1_BAK"), Exactly(2000));
    EXPECT_EQ(Ids("LK_REP_TABLE2_BAK"), Exactly(2000));
    Do({"drop"});
    EXPECT_FALSE(HasTable("LK_REP_TABLE1_BAK"));
  }
}

TEST_F(LoadRun, RaisingTheScaleLeavesTheRowsThatAreThereAlone) {
  Create("1");
  Do({"load", "--scale", "1"});
  m_sql.Run("DELETE FROM LK_REP_TABLE1 WHERE ID = 7");
  Do({"load", "--scale", "2"});
  EXPECT_EQ(Ids("LK_REP_TABLE1"), "1999 rows 1999 ids 1..2000");
  EXPECT_EQ(Value("SELECT COUNT(*) FROM LK_REP_TABLE1 WHERE ID = 7"), "0");
}

TEST_F(LoadRun, ALoadWithoutAScaleTakesTheOneOfTheSchema) {
  Do({"create", "--tables", "2", "--scale", "1.2"});
  Do({"load"});
  ExpectIds(2, 1200);
}

TEST_F(LoadRun, AnInterruptedLoadSaysSoAndTheNextOneIsRight) {
  Create("2");
  Do({"load", "--scale", "1"});
  const auto load = StartLongLoad("LK_REP_TABLE1", 3000);
  load->Signal(SIGINT);
  const Outcome outcome = load->Wait();
  EXPECT_EQ(outcome.code, 130) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("interrupted"));
  EXPECT_EQ(State("table.1.scale"), "1");
  const Outcome workload = Run({"workload"});
  EXPECT_EQ(workload.code, 1);
  EXPECT_THAT(workload.err, HasSubstr("run `lkbench load` first"));
  Do({"load", "--scale", "2", "--users", "3"});
  ExpectIds(2, 2000);
  EXPECT_EQ(NextId(), "2001");
}

TEST_F(LoadRun, ATerminatedLoadEndsWithItsOwnExitCode) {
  Create("1");
  const auto load = StartLongLoad("LK_REP_TABLE1", 0);
  load->Signal(SIGTERM);
  EXPECT_EQ(load->Wait().code, 143);
}

TEST_F(LoadRun, AfterAKilledLoadTheNextOneIsRight) {
  Create("2");
  Do({"load", "--scale", "1"});
  const auto load = StartLongLoad("LK_REP_TABLE2", 3000);
  load->Signal(SIGKILL);
  EXPECT_EQ(load->Wait().signal, SIGKILL);
  Do({"load", "--scale", "2"});
  ExpectIds(2, 2000);
}

TEST_F(LoadRun, ARefreshPutsAKilledLoadBackToWhatWasLoadedBefore) {
  Create("2");
  Do({"load", "--scale", "1"});
  const auto load = StartLongLoad("LK_REP_TABLE2", 3000);
  load->Signal(SIGKILL);
  load->Wait();
  Do({"refresh"});
  ExpectIds(2, 1000);
  Do({"workload", "--duration", "100ms"});
}

TEST_F(LoadRun, AKilledLoadThroughBackupsIsMadeGoodByEitherKindOfLoad) {
  for (const char* option : {"--use-backup", "--no-use-backup"}) {
    SCOPED_TRACE(option);
    Create("2");
    Do({"load", "--scale", "1"});
    const auto load = StartLongLoad("LK_REP_TABLE1_BAK", 3000, {"--use-backup"});
    load->Signal(SIGKILL);
    load->Wait();
    EXPECT_EQ(Ids("LK_REP_TABLE1"), Exactly(1000));
    Do({"load", "--scale", "2", option});
    ExpectIds(2, 2000);
    Do({"drop"});
  }
}

TEST_F(LoadRun, ATableThatAKilledLoadLeftMissingIsMadeFromItsBackup) {
  for (const char* option : {"--use-backup", "--no-use-backup"}) {
    SCOPED_TRACE(option);
    Create("2");
    Do({"load", "--scale", "1", "--use-backup"});
    m_sql.Run("DROP TABLE LK_REP_TABLE1");
    m_sql.Run("INSERT INTO LKBENCH_STATE VALUES ('table.1.loading', 'backup 1')");
    Do({"load", "--scale", "2", option});
    ExpectIds(2, 2000);
    Do({"drop"});
  }
}

TEST_F(LoadRun, AnInterruptedLoadThroughBackupsLeavesTheTablesAndDropsTheBackups) {
  Create("2");
  Do({"load", "--scale", "1"});
  const auto load = StartLongLoad("LK_REP_TABLE1_BAK", 3000, {"--use-backup"});
  load->Signal(SIGINT);
  EXPECT_EQ(load->Wait().code, 130);
  ExpectIds(2, 1000);
  EXPECT_FALSE(HasTable("LK_REP_TABLE1_BAK"));
  EXPECT_FALSE(HasTable("LK_REP_TABLE2_BAK"));
  Do({"load", "--scale", "2", "--use-backup"});
  ExpectIds(2, 2000);
}

TEST_F(LoadRun, TheBackupOptionMayChangeFromLoadToLoad) {
  Create("2");
  Do({"load", "--scale", "1", "--use-backup"});
  Do({"load", "--scale", "2"});
  ExpectIds(2, 2000);
  EXPECT_EQ(Ids("LK_REP_TABLE1_BAK"), Exactly(1000));
  Do({"load", "--scale", "3", "--use-backup"});
  ExpectIds(2, 3000);
  EXPECT_EQ(Ids("LK_REP_TABLE1_BAK"), Exactly(3000));
}

TEST_F(LoadRun, AUserThatFailsEndsTheLoadForAllAndTheNextOneIsRight) {
  Create("2");
  m_sql.Run(
      "CREATE TRIGGER broken BEFORE INSERT ON LK_REP_TABLE2 FOR EACH ROW IF NEW.ID = 700 THEN SIGNAL "
      "SQLSTATE '45000' SET MESSAGE_TEXT = 'told to fail'; END IF");
  const Outcome outcome = Run({"load", "--scale", "3", "--users", "4"});
  EXPECT_EQ(outcome.code, 5) << outcome.out;
  EXPECT_THAT(outcome.err, HasSubstr("told to fail"));
  m_sql.Run("DROP TRIGGER broken");
  Do({"load", "--scale", "1"});
  ExpectIds(2, 1000);
}

TEST_F(LoadRun, AUserThatFailsInABackupDropsAllBackupsAndLeavesTheTables) {
  Create("2");
  Do({"load", "--scale", "1", "--use-backup"});
  m_sql.Run(
      "CREATE TRIGGER broken BEFORE INSERT ON LK_REP_TABLE2_BAK FOR EACH ROW IF NEW.ID = 1700 THEN SIGNAL "
      "SQLSTATE '45000' SET MESSAGE_TEXT = 'told to fail'; END IF");
  EXPECT_EQ(Run({"load", "--scale", "3", "--users", "4", "--use-backup"}).code, 5);
  ExpectIds(2, 1000);
  EXPECT_FALSE(HasTable("LK_REP_TABLE1_BAK"));
  EXPECT_FALSE(HasTable("LK_REP_TABLE2_BAK"));
  Do({"load", "--scale", "2", "--use-backup"});
  ExpectIds(2, 2000);
}

TEST_F(LoadRun, NewTablesAreLoadedBesideThoseThatAreThere) {
  Create("2");
  Do({"load", "--scale", "1"});
  Do({"create", "--first-table", "3", "--tables", "5"});
  EXPECT_EQ(Property("Number Of Tables"), "5");
  Do({"load", "--first-table", "3", "--scale", "1", "--users", "2"});
  ExpectIds(5, 1000);
  Do({"drop", "--first-table", "4"});
  EXPECT_EQ(Property("Number Of Tables"), "3");
  ExpectIds(3, 1000);
}

}  // namespace

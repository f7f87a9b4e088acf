// SPDX-License-Identifier: Apache-2.0
#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "RunTest.h"

namespace {

using testing::HasSubstr;

class WorkloadRun : public RunTest {
 protected:
  std::string HighestOfAll(int tables) {
    std::string query;
    for (int table = 1; table <= tables; ++table)
      query += (query.empty() ? "" : " UNION ALL ") + std::string("SELECT MAX(ID) AS id FROM LK_REP_TABLE") +
               std::to_string(table);
    return Value("SELECT MAX(id) FROM (" + query + ") AS highest");
  }
  nlohmann::json Json(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return nlohmann::json::parse(stream);
  }
  // The session that was opened last, this one apart.
  std::string LastSession() {
    return Value("SELECT MAX(id) FROM information_schema.processlist WHERE id <> CONNECTION_ID()");
  }
  int Count(const std::string& like) {
    return std::stoi(
        Value("SELECT COUNT(*) FROM information_schema.tables WHERE table_schema = DATABASE() AND table_name "
              "LIKE '" +
              like + "'"));
  }
};

TEST_F(WorkloadRun, ARunCreatesLoadsWorksAndRefreshes) {
  const auto file = m_folder.Path() / "results.json";
  Do({"run", "--duration", "1s", "--json", file});
  EXPECT_EQ(Count("lk_rep_table%"), 4);
  EXPECT_EQ(Property("Number Of Tables"), "4");
  EXPECT_EQ(HighestOfAll(4), "1000");
  EXPECT_EQ(NextId(), "1001");
  const nlohmann::json json = Json(file);
  EXPECT_EQ(json["schema_version"], 2);
  EXPECT_EQ(json["load"]["rows"], 4000);
  const nlohmann::json& measured = json["workload"]["measured"];
  EXPECT_EQ(measured["total"]["failures"], 0);
  EXPECT_GT(measured["total"]["executions"], 0);
  std::uint64_t sum = 0;
  for (const auto& xact : measured["transactions"]) sum += xact["executions"].get<std::uint64_t>();
  EXPECT_EQ(measured["total"]["executions"], sum);
}

TEST_F(WorkloadRun, EveryExecutionIsCountedForTheTableThatItWorkedOn) {
  const auto file = m_folder.Path() / "results.json";
  Do({"run", "--tables", "3", "--min-columns", "4", "--max-columns", "4", "--count", "300", "--json", file});
  const nlohmann::json workload = Json(file)["workload"]["measured"];
  std::uint64_t sum = 0;
  for (const auto& table : workload["tables"]) {
    sum += table["executions"].get<std::uint64_t>();
    EXPECT_EQ(table["columns"], 4);
  }
  EXPECT_EQ(workload["tables"].size(), 3u);
  EXPECT_EQ(workload["tables"][2]["name"], "LK_REP_TABLE3");
  EXPECT_EQ(sum, 300u);
}

TEST_F(WorkloadRun, AFailureIsCountedForItsTableToo) {
  const auto file = m_folder.Path() / "results.json";
  Do({"create", "--tables", "2"});
  Do({"load"});
  m_sql.Run("CREATE TRIGGER broken BEFORE DELETE ON LK_REP_TABLE2 FOR EACH ROW SIGNAL SQLSTATE '45000'");
  EXPECT_EQ(Run({"workload", "--count", "100", "--mix", "delete=1", "--json", file}).code, 2);
  const nlohmann::json tables = Json(file)["workload"]["measured"]["tables"];
  EXPECT_EQ(tables[0]["failures"], 0);
  EXPECT_GT(tables[1]["failures"], 0);
}

TEST_F(WorkloadRun, ASecondRunUsesTheSchemaThatIsThere) {
  Do({"run", "--duration", "200ms"});
  const Outcome outcome = Run({"run", "--duration", "200ms", "--tables", "4"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("using it"));
  EXPECT_EQ(HighestOfAll(4), "1000");
}

TEST_F(WorkloadRun, AWorkloadInsertsAboveTheScaleAndARefreshTakesThatBack) {
  Do({"create", "--tables", "2"});
  Do({"load", "--scale", "2"});
  Do({"workload", "--duration", "500ms", "--mix", "insert=1"});
  EXPECT_GT(std::stoi(HighestOfAll(2)), 2000);
  EXPECT_GT(std::stoi(NextId()), 2001);
  Do({"refresh"});
  EXPECT_EQ(Ids("LK_REP_TABLE1"), Exactly(2000));
  EXPECT_EQ(Ids("LK_REP_TABLE2"), Exactly(2000));
  EXPECT_EQ(NextId(), "2001");
}

TEST_F(WorkloadRun, ALoadAfterAWorkloadAddsOnlyWhatIsMissing) {
  Do({"create", "--tables", "2"});
  Do({"load", "--scale", "1"});
  Do({"workload", "--duration", "300ms", "--mix", "insert=1"});
  Do({"load", "--scale", "2"});
  EXPECT_EQ(Ids("LK_REP_TABLE1"), Exactly(2000));
  EXPECT_EQ(Ids("LK_REP_TABLE2"), Exactly(2000));
  EXPECT_EQ(NextId(), "2001");
}

TEST_F(WorkloadRun, ARefreshToALowerScaleIsRemembered) {
  Do({"create", "--tables", "2"});
  Do({"load", "--scale", "2"});
  Do({"refresh", "--scale", "1"});
  EXPECT_EQ(Ids("LK_REP_TABLE2"), Exactly(1000));
  EXPECT_EQ(NextId(), "1001");
  Do({"load", "--scale", "3"});
  EXPECT_EQ(Ids("LK_REP_TABLE2"), Exactly(3000));
}

TEST_F(WorkloadRun, ARefreshCutsTheBackupsToo) {
  Do({"create", "--tables", "3"});
  Do({"load", "--scale", "2", "--use-backup"});
  Do({"refresh", "--scale", "1", "--use-backup", "--users", "5"});
  for (const char* table : {"LK_REP_TABLE1", "LK_REP_TABLE3", "LK_REP_TABLE1_BAK", "LK_REP_TABLE3_BAK"})
    EXPECT_EQ(Ids(table), Exactly(1000)) << table;
}

TEST_F(WorkloadRun, AfterAKilledRefreshALoadFillsTheGapAgain) {
  Do({"create", "--tables", "1"});
  Do({"load", "--scale", "60"});
  Program refresh(Arguments({"refresh", "--scale", "1"}));
  EXPECT_TRUE(refresh.WaitFor([&] { return Value("SELECT COUNT(*) FROM LK_REP_TABLE1") != "60000"; }));
  refresh.Signal(SIGKILL);
  EXPECT_EQ(refresh.Wait().signal, SIGKILL);
  EXPECT_NE(Ids("LK_REP_TABLE1"), Exactly(1000));
  Do({"load", "--scale", "60"});
  EXPECT_EQ(Ids("LK_REP_TABLE1"), Exactly(60000));
}

TEST_F(WorkloadRun, AnInterruptedWorkloadStillReports) {
  Do({"create", "--tables", "1"});
  Do({"load"});
  Program workload(Arguments({"workload", "--duration", "10m"}));
  EXPECT_TRUE(workload.WaitFor([&] { return workload.OutSoFar().find("tx/s") != std::string::npos; }));
  workload.Signal(SIGINT);
  const Outcome outcome = workload.Wait();
  EXPECT_EQ(outcome.code, 130);
  EXPECT_THAT(outcome.out, HasSubstr("Insert Transaction"));
}

TEST_F(WorkloadRun, ACallThatHangsIsBrokenByTheFirstSignal) {
  Do({"create", "--tables", "1"});
  Do({"load"});
  SqlClient other(m_server);
  other.Run("LOCK TABLES LK_REP_TABLE1 WRITE");
  Program workload(Arguments({"workload", "--duration", "10m", "--mix", "delete=1"}));
  EXPECT_TRUE(workload.WaitFor([&] {
    return Value(
               "SELECT COUNT(*) FROM information_schema.processlist WHERE state LIKE 'Waiting for table%'") ==
           "2";
  }));
  workload.Signal(SIGINT);
  EXPECT_EQ(workload.Wait().code, 130);
  other.Run("UNLOCK TABLES");
}

TEST_F(WorkloadRun, ASecondSignalQuitsAtOnce) {
  Do({"create", "--tables", "1"});
  Do({"load"});
  SqlClient other(m_server);
  other.Run("LOCK TABLES LK_REP_TABLE1 WRITE");
  Program workload(Arguments({"workload", "--duration", "10m", "--mix", "delete=1"}));
  EXPECT_TRUE(workload.WaitFor([&] {
    return Value(
               "SELECT COUNT(*) FROM information_schema.processlist WHERE state LIKE 'Waiting for table%'") ==
           "2";
  }));
  workload.Signal(SIGINT);
  workload.Signal(SIGTERM);
  EXPECT_EQ(workload.Wait().code, 143);
}

TEST_F(WorkloadRun, EqualFailuresAreOneLineAndANumber) {
  Do({"create", "--tables", "1"});
  Do({"load"});
  m_sql.Run(
      "CREATE TRIGGER broken BEFORE DELETE ON LK_REP_TABLE1 FOR EACH ROW SIGNAL SQLSTATE '45000' SET "
      "MESSAGE_TEXT = 'told to fail'");
  const Outcome outcome = Run({"workload", "--duration", "500ms", "--users", "3", "--mix", "delete=1"});
  EXPECT_EQ(outcome.code, 2);
  EXPECT_THAT(outcome.out, HasSubstr(" times: "));
  const size_t first = outcome.err.find("told to fail");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(outcome.err.find("told to fail", first + 1), std::string::npos) << outcome.err;
}

TEST_F(WorkloadRun, ALostSessionIsReopenedAndTheRunGoesOn) {
  Do({"create", "--tables", "1"});
  Do({"load"});
  Program workload(Arguments({"workload", "--duration", "2s", "--users", "3"}));
  EXPECT_TRUE(workload.WaitFor([&] { return workload.OutSoFar().find("tx/s") != std::string::npos; }));
  m_sql.Run("KILL " + LastSession());
  const Outcome outcome = workload.Wait();
  EXPECT_EQ(outcome.code, 2) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("3 users, 1 failure"));
  EXPECT_THAT(outcome.out, testing::Not(HasSubstr("lost the session")));
}

TEST_F(WorkloadRun, AHundredUsersEndWithoutAFailure) {
  Do({"create", "--tables", "4"});
  Do({"load"});
  Do({"workload", "--duration", "1s", "--users", "100"});
}

TEST_F(WorkloadRun, ACreateThatDidNotEndIsSeenAndDropped) {
  Do({"create", "--tables", "2"});
  m_sql.Run("DROP TABLE LK_REP_TABLE2");
  m_sql.Run("DROP TABLE LK_REP_PROPERTIES");
  m_sql.Run("INSERT INTO LKBENCH_STATE VALUES ('creating', '1..2')");
  for (const char* verb : {"run", "load", "workload"}) {
    const Outcome outcome = Run({verb});
    EXPECT_EQ(outcome.code, 1) << verb;
    EXPECT_THAT(outcome.err, HasSubstr("an earlier create did not end: run `lkbench drop`")) << verb;
  }
  EXPECT_THAT(Run({"create"}).err, HasSubstr("run `lkbench drop` first"));
  Do({"drop"});
  EXPECT_EQ(Count("lk%"), 0);
}

TEST_F(WorkloadRun, TablesThatLkbenchDidNotMakeAreLeftAloneButForADrop) {
  m_sql.Run("CREATE TABLE LK_REP_TABLE1 (ID INT)");
  const Outcome outcome = Run({"run"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("holds LK_REP_TABLE1 but no LKBENCH_STATE"));
  EXPECT_TRUE(HasTable("LK_REP_TABLE1"));
  Do({"drop"});
  EXPECT_EQ(Count("lk%"), 0);
}

TEST_F(WorkloadRun, AMariaDbTargetReachesTheSameTables) {
  Do({"create", "--tables", "1"});
  const Outcome outcome =
      RunProgram({"load", "--target",
                  "mariadb://" + m_server.User() + "@/lkbench?socket=" + m_server.SocketPath().string()});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(Ids("LK_REP_TABLE1"), Exactly(1000));
}

TEST_F(WorkloadRun, DropRemovesEverythingAlsoBehindAGap) {
  Do({"run", "--duration", "100ms", "--use-backup"});
  m_sql.Run("DROP TABLE LK_REP_TABLE2");
  Do({"drop"});
  EXPECT_EQ(Count("lk%"), 0);
  const Outcome again = Run({"drop"});
  EXPECT_EQ(again.code, 0);
  EXPECT_THAT(again.out, HasSubstr("nothing to drop"));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// Schemas in a state that a verb cannot work on: the line says what to do first.
#include "RunTest.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class StateRun : public RunTest {
 protected:
  void CreateAndLoad() {
    Do({"create", "--tables", "2"});
    Do({"load"});
  }
  // The first line of standard error, of a verb that fails with the code.
  std::string Line(int code, const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    return outcome.err.substr(0, outcome.err.find('\n'));
  }
  std::string LastLine(int code, const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    const std::string text = outcome.err.substr(0, outcome.err.size() - 1);
    return text.substr(text.rfind('\n') + 1);
  }
};

TEST_F(StateRun, TablesBesideNoneAreNotCreated) {
  EXPECT_EQ(
      Line(1, {"create", "--first-table", "3", "--tables", "4"}),
      "lkbench: create: first_table is 3 but there are no tables before it: leave it out for a new schema");
}

TEST_F(StateRun, ACreateThatWasBrokenOffIsDroppedFirst) {
  Do({"create", "--tables", "1"});
  m_sql.Run("INSERT INTO LKBENCH_STATE VALUES ('creating', '1..1')");
  EXPECT_THAT(Line(1, {"create"}), HasSubstr(" of an earlier create: run `lkbench drop` first"));
  EXPECT_EQ(Line(1, {"load"}),
            "lkbench: load: an earlier create did not end: run `lkbench drop`, then `lkbench create`");
}

TEST_F(StateRun, TablesOfSomebodyElseAreDroppedFirst) {
  m_sql.Run("CREATE TABLE LK_REP_TABLE1 (ID INT)");
  EXPECT_EQ(
      Line(1, {"load"}),
      "lkbench: load: the schema holds LK_REP_TABLE1 but no LKBENCH_STATE, so lkbench did not make it: run "
      "`lkbench drop`, then `lkbench create`");
}

TEST_F(StateRun, AMissingTableIsNamed) {
  CreateAndLoad();
  m_sql.Run("DROP TABLE LK_REP_TABLE2");
  EXPECT_EQ(Line(1, {"load"}),
            "lkbench: load: LK_REP_TABLE2 is missing: run `lkbench drop`, then `lkbench create`");
  EXPECT_EQ(
      Line(1, {"load", "--use-backup"}),
      "lkbench: load: LK_REP_TABLE2 and its backup are missing: run `lkbench drop`, then `lkbench create`");
  EXPECT_EQ(Line(1, {"refresh"}),
            "lkbench: refresh: LK_REP_TABLE2 is missing: run `lkbench drop`, then `lkbench create` and "
            "`lkbench load`");
}

TEST_F(StateRun, ALoadThatWasBrokenOffIsEndedFirst) {
  CreateAndLoad();
  m_sql.Run("INSERT INTO LKBENCH_STATE VALUES ('table.1.loading', 'tables 2')");
  EXPECT_EQ(
      Line(1, {"workload"}),
      "lkbench: workload: LK_REP_TABLE1 was being loaded when lkbench was stopped: run `lkbench load` first");
}

TEST_F(StateRun, TablesBehindTheLastAreCreatedFirst) {
  CreateAndLoad();
  EXPECT_EQ(Line(1, {"load", "--first-table", "5"}),
            "lkbench: load: the schema has 2 tables, first_table is 5: create the tables first");
}

TEST_F(StateRun, AWorkloadOnEmptyTablesWarns) {
  Do({"create", "--tables", "1"});
  EXPECT_EQ(Line(0, {"workload", "--count", "5", "--mix", "insert=1"}),
            "lkbench: warning: the tables are empty: updates and deletes find no rows until `lkbench load`");
}

TEST_F(StateRun, AWorkloadAboveTheLoadedScaleWarns) {
  CreateAndLoad();
  EXPECT_EQ(
      Line(0, {"workload", "--count", "5", "--scale", "5"}),
      "lkbench: warning: scale is 5 but the tables are loaded to 1 only: the workload uses what is there");
}

TEST_F(StateRun, ATableThatCannotBeDroppedIsNamed) {
  CreateAndLoad();
  m_sql.Run("CREATE TABLE holder AS SELECT ID FROM LK_REP_TABLE1 WHERE 1 = 0");
  m_sql.Run("ALTER TABLE holder ADD FOREIGN KEY (ID) REFERENCES LK_REP_TABLE1 (ID)");
  EXPECT_EQ(LastLine(5, {"drop"}), "lkbench: drop: LK_REP_TABLE1 could not be dropped");
}

TEST_F(StateRun, ALoadThatFailsSaysHowToGoOn) {
  Do({"create", "--tables", "1"});
  m_sql.Run("CREATE TRIGGER broken BEFORE INSERT ON LK_REP_TABLE1 FOR EACH ROW SIGNAL SQLSTATE '45000'");
  const std::string line = LastLine(5, {"load"});
  EXPECT_THAT(line, StartsWith("lkbench: load: user "));
  EXPECT_THAT(line, HasSubstr(": run `lkbench load` again to go on"));
}

TEST_F(StateRun, ALoadWhoseRowsAreNotThereSaysSo) {
  Do({"create", "--tables", "1"});
  m_sql.Run("CREATE TRIGGER turned BEFORE INSERT ON LK_REP_TABLE1 FOR EACH ROW SET NEW.ID = -NEW.ID");
  EXPECT_EQ(LastLine(5, {"load"}),
            "lkbench: load: LK_REP_TABLE1 ends with ID -1 instead of 1000: run `lkbench load` again");
}

TEST_F(StateRun, ARefreshThatFailsSaysHowToGoOn) {
  Do({"create", "--tables", "1"});
  Do({"load", "--scale", "2"});
  m_sql.Run("CREATE TRIGGER broken BEFORE DELETE ON LK_REP_TABLE1 FOR EACH ROW SIGNAL SQLSTATE '45000'");
  EXPECT_THAT(LastLine(5, {"refresh", "--scale", "1"}), HasSubstr(": run `lkbench refresh` again to go on"));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// Tables that change under sessions that use them: who waits, what each is told, and what is described then.
#include <atomic>
#include <set>
#include <thread>

#include "Column.h"
#include "Contract.h"
#include "OtherProcess.h"
#include "Waiting.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Ddl);

TEST_P(Ddl, WaitsForWorkOnItsTableAndGoesOnAfterTheCommit) {
  Table("T_DDL", "ID NUMBER");
  MustExec(client, "INSERT INTO T_DDL VALUES (1)");
  const auto other = Another(), watcher = Another();
  WaitingCall alter(*other, *watcher, "ALTER TABLE T_DDL ADD (N NUMBER(5))");
  client.Commit();
  EXPECT_EQ(alter.Status(), OCI_SUCCESS) << other->LastReport().text;
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").size(), 2u);
}

TEST_P(Ddl, GivesUpWithResourceBusyWhereTheWorkGoesOn) {
  Table("T_DDL", "ID NUMBER");
  MustExec(client, "INSERT INTO T_DDL VALUES (1)");
  const auto other = Another();
  MustExec(*other, "SET SESSION lock_wait_timeout = 0");
  for (const char* text : {"DROP TABLE T_DDL", "TRUNCATE TABLE T_DDL"}) {
    EXPECT_EQ(Exec(*other, text), OCI_ERROR) << text;
    EXPECT_EQ(other->Code(), 54) << text;
  }
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_DDL"), "1");
}

TEST_P(Ddl, ThatDropsATableLeavesItsWaitersWithoutIt) {
  Table("T_DDL", "ID NUMBER");
  MustExec(client, "INSERT INTO T_DDL VALUES (1)");
  const auto dropping = Another(), inserting = Another(), watcher = Another();
  WaitingCall drop(*dropping, *watcher, "DROP TABLE T_DDL");
  WaitingCall insert(*inserting, *watcher, "INSERT INTO T_DDL (ID) VALUES (2)");
  client.Commit();
  EXPECT_EQ(drop.Status(), OCI_SUCCESS) << dropping->LastReport().text;
  EXPECT_EQ(insert.Status(), OCI_ERROR);
  EXPECT_EQ(inserting->Code(), 942);
}

// What a session may be told while others read, insert and empty the table.
TEST_P(Ddl, AmidReadersAndWritersFailsNobodyElse) {
  Table("T_DDL", "ID NUMBER");
  std::atomic<bool> done{false};
  std::array<std::set<int>, 4> told;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < told.size(); ++i)
    threads.emplace_back([&, i] {
      const auto mine = Another();
      const char* text = i % 2 == 0 ? "INSERT INTO T_DDL VALUES (1)" : "SELECT * FROM T_DDL";
      while (!done)
        if (Exec(*mine, text, OCI_COMMIT_ON_SUCCESS) != OCI_SUCCESS) told[i].insert(mine->Code());
    });
  int emptied = 0;
  for (int i = 0; i < 6; ++i) emptied += Exec(client, "TRUNCATE TABLE T_DDL") == OCI_SUCCESS;
  done = true;
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(emptied, 6);
  for (const auto& codes : told) EXPECT_EQ(codes, std::set<int>{});
}

TEST_P(Ddl, AStatementPreparedBeforeRunsOnTheTableMadeAnew) {
  Table("T_DDL", "ID NUMBER");
  double id = 7;
  Statement insert(client, "INSERT INTO T_DDL VALUES (:1)");
  insert.Bind(1, &id, 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(), OCI_SUCCESS);
  client.Commit();
  const auto other = Another();
  MustExec(*other, "DROP TABLE T_DDL");
  EXPECT_EQ(insert.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
  MustExec(*other, "CREATE TABLE T_DDL (ID NUMBER)");
  EXPECT_EQ(insert.Execute(), OCI_SUCCESS) << client.LastReport().text;
  client.Commit();
  MustExec(*other, "ALTER TABLE T_DDL ADD (N NUMBER)");
  EXPECT_EQ(insert.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 947);
}

TEST_P(Ddl, AQueryPreparedBeforeShowsTheColumnsOfNow) {
  Table("T_DDL", "A NUMBER(3), B VARCHAR2(5)");
  MustExec(client, "INSERT INTO T_DDL VALUES (1, 'one')", OCI_COMMIT_ON_SUCCESS);
  Statement query(client, "SELECT * FROM T_DDL");
  char texts[3][20] = {};
  sb2 indicators[3] = {};
  for (ub4 i = 0; i < 3; ++i) query.Define(i + 1, texts[i], 20, SQLT_STR, &indicators[i]);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS);
  const auto other = Another();
  MustExec(*other, "ALTER TABLE T_DDL ADD (C NUMBER(9,2))");
  ASSERT_EQ(query.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(query.Attribute<ub4>(OCI_ATTR_PARAM_COUNT), 3u);
  EXPECT_EQ(ColumnOf(client, query, 3).precision, 9);
  EXPECT_EQ(indicators[2], OCI_IND_NULL);
  MustExec(*other, "DROP TABLE T_DDL");
  MustExec(*other, "CREATE TABLE T_DDL (B VARCHAR2(15))");
  MustExec(*other, "INSERT INTO T_DDL VALUES ('one and a half')", OCI_COMMIT_ON_SUCCESS);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(query.Attribute<ub4>(OCI_ATTR_PARAM_COUNT), 1u);
  EXPECT_STREQ(texts[0], "one and a half");
}

TEST_P(Ddl, AQueryPreparedBeforeShowsTheTypesOfNow) {
  Table("T_DDL", "A NUMBER(3)");
  MustExec(client, "INSERT INTO T_DDL VALUES (1)", OCI_COMMIT_ON_SUCCESS);
  Statement query(client, "SELECT A FROM T_DDL");
  char text[41] = {};
  query.Define(1, text, sizeof text, SQLT_STR);
  const auto after = [&](const std::string& column, const std::string& value) {
    MustExec(client, "DROP TABLE T_DDL");
    MustExec(client, "CREATE TABLE T_DDL (A " + column + ")");
    MustExec(client, "INSERT INTO T_DDL VALUES (" + value + ")", OCI_COMMIT_ON_SUCCESS);
    EXPECT_EQ(query.Execute(), OCI_SUCCESS) << client.LastReport().text;
    return std::string(text);
  };
  ASSERT_EQ(query.Execute(), OCI_SUCCESS);
  EXPECT_STREQ(text, "1");
  EXPECT_EQ(after("VARCHAR2(40)", "'a text much longer than the number was'"),
            "a text much longer than the number was");
  EXPECT_EQ(after("DATE", "TO_DATE('2001-02-03', 'YYYY-MM-DD')"), "2001-02-03 00:00:00");
  EXPECT_EQ(ColumnOf(client, query, 1).type, SQLT_DAT);
  EXPECT_EQ(after("NUMBER", "0.25"), ".25");
  EXPECT_EQ(after("NUMBER(30,10)", "12345678901234567890.5"), "12345678901234567890.5");
}

TEST_P(Ddl, OfAnotherSessionIsDescribedAtOnce) {
  Table("T_DDL", "A NUMBER(9)");
  const auto other = Another();
  const auto column = [&] { return DescribeQuery(client, "SELECT * FROM T_DDL").at(0); };
  EXPECT_EQ(column().precision, 9);
  MustExec(*other, "DROP TABLE T_DDL");
  MustExec(*other, "CREATE TABLE T_DDL (A NUMBER(7,-2))");  // stored alike
  EXPECT_EQ(column().scale, -2);
  MustExec(*other, "ALTER TABLE T_DDL ADD (B TIMESTAMP(3))");
  EXPECT_EQ(DescribeQuery(client, "SELECT B FROM T_DDL").at(0).scale, 3);
}

TEST_P(Ddl, OfAnotherProcessIsDescribedAtOnceWhereItIsStoredOtherwise) {
  Table("T_DDL", "A NUMBER(9)");
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).precision, 9);
  RunElsewhere(GetParam(), {"DROP TABLE T_DDL", "CREATE TABLE T_DDL (A NUMBER(8,-2))"});
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).scale, -2);
  RunElsewhere(GetParam(), {"DROP TABLE T_DDL", "CREATE TABLE T_DDL (A NUMBER(9) NOT NULL)"});
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).precision, 9);
}

// The two are stored alike, and a prepare does not tell one from the other.
TEST_P(Ddl, OfAnotherProcessIsDescribedFromTheNextSessionOnWhereItIsStoredAlike) {
  Table("T_DDL", "A NUMBER(9)");
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).precision, 9);
  RunElsewhere(GetParam(), {"DROP TABLE T_DDL", "CREATE TABLE T_DDL (A NUMBER(7,-2))"});
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).scale, 0);
  Another();
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).scale, -2);
}

TEST_P(Ddl, OfOnesOwnIsDescribedWhereAnotherProcessHadChangedTheTable) {
  Table("T_DDL", "A NUMBER(9)");
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).precision, 9);
  RunElsewhere(GetParam(), {"DROP TABLE T_DDL", "CREATE TABLE T_DDL (A NUMBER(7,-2))"});
  Drop("TABLE T_NOT_THERE");  // any DDL, even one that fails
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_DDL").at(0).scale, -2);
}

}  // namespace
}  // namespace oci_test

// SPDX-License-Identifier: Apache-2.0
// Statements that stay prepared on the server when their handle is gone: who gets them, and that a table
// changed by another program is noticed all the same.
#include <numeric>

#include "Contract.h"
#include "OtherProcess.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(KeptStatement);

constexpr char kInsert[] = "INSERT INTO T_KEPT (ID) VALUES (:ID)";

// By a handle of its own, which ends here.
sword Insert(Client& client, double id, const std::string& text = kInsert) {
  Statement insert(client, text);
  insert.Bind(1, &id, sizeof id, SQLT_FLT);
  return insert.Execute();
}

sword InsertArray(Client& client, ub4 count) {
  std::vector<double> ids(count);
  std::iota(ids.begin(), ids.end(), 1);
  Statement insert(client, kInsert);
  insert.Bind(1, ids.data(), sizeof(double), SQLT_FLT);
  return insert.Execute(count);
}

int Status(Client& client, const std::string& variable) {
  return std::stoi(
      Value(client, "SELECT variable_value FROM information_schema.session_status WHERE variable_name = '" +
                        variable + "'"));
}

TEST_P(KeptStatement, IsPreparedOnceForManyHandles) {
  Table("T_KEPT", "ID NUMBER");
  EXPECT_EQ(Insert(client, 1), OCI_SUCCESS);
  const int before = Status(client, "COM_STMT_PREPARE");
  const int asking = Status(client, "COM_STMT_PREPARE") - before;  // what the question itself prepares
  for (double id = 2; id < 10; ++id) EXPECT_EQ(Insert(client, id), OCI_SUCCESS);
  EXPECT_EQ(Status(client, "COM_STMT_PREPARE") - before - asking, asking);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_KEPT"), "9");
}

TEST_P(KeptStatement, SeesThatAnotherProgramDroppedItsTable) {
  Table("T_KEPT", "ID NUMBER");
  Insert(client, 1);
  client.Commit();
  RunElsewhere(GetParam(), {"DROP TABLE T_KEPT"});
  EXPECT_EQ(Insert(client, 2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
}

TEST_P(KeptStatement, TakesATableThatAnotherProgramMadeAnew) {
  Table("T_KEPT", "ID NUMBER");
  Insert(client, 1);
  client.Commit();
  RunElsewhere(GetParam(), {"DROP TABLE T_KEPT", "CREATE TABLE T_KEPT (S VARCHAR2(5), ID VARCHAR2(10))"});
  EXPECT_EQ(Insert(client, 7), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT ID, S FROM T_KEPT"),
            (std::vector<std::vector<std::string>>{{"7", "(null)"}}));
}

TEST_P(KeptStatement, TakesATableMadeAnewForAnArrayToo) {
  Table("T_KEPT", "ID NUMBER");
  InsertArray(client, 3);
  client.Commit();
  RunElsewhere(GetParam(), {"DROP TABLE T_KEPT", "CREATE TABLE T_KEPT (S VARCHAR2(5), ID NUMBER(9))"});
  EXPECT_EQ(InsertArray(client, 3), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Value(client, "SELECT SUM(ID) FROM T_KEPT"), "6");
}

TEST_P(KeptStatement, ThatLostAColumnFailsAndIsGoodOnceTheColumnIsBack) {
  Table("T_KEPT", "ID NUMBER, S VARCHAR2(5)");
  Insert(client, 1);
  client.Commit();
  RunElsewhere(GetParam(), {"ALTER TABLE T_KEPT DROP COLUMN ID"});
  EXPECT_EQ(Insert(client, 2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 904);
  RunElsewhere(GetParam(), {"ALTER TABLE T_KEPT ADD (ID NUMBER)"});
  EXPECT_EQ(Insert(client, 3), OCI_SUCCESS) << client.LastReport().text;
}

TEST_P(KeptStatement, HoldsNoLockThatADdlWouldWaitFor) {
  Table("T_KEPT", "ID NUMBER");
  Insert(client, 1);
  client.Commit();
  const auto other = Another();
  MustExec(*other, "SET SESSION lock_wait_timeout = 0");
  EXPECT_EQ(Exec(*other, "DROP TABLE T_KEPT"), OCI_SUCCESS) << other->LastReport().text;
}

int Prepared(Client& client) {
  return std::stoi(Value(client,
                         "SELECT variable_value FROM information_schema.global_status "
                         "WHERE variable_name = 'PREPARED_STMT_COUNT'"));
}

TEST_P(KeptStatement, IsNoQuery) {
  Table("T_KEPT", "ID NUMBER");
  const int before = Prepared(client);
  for (int i = 0; i < 5; ++i) {
    Statement describe(client, "SELECT * FROM T_KEPT");
    describe.Execute(0, OCI_DESCRIBE_ONLY);
    Statement query(client, "SELECT ID FROM T_KEPT");
    query.Execute(0);
  }
  EXPECT_EQ(Prepared(client), before);
}

TEST_P(KeptStatement, AreTwentyAtMost) {
  Table("T_KEPT", "ID NUMBER");
  const int before = Prepared(client);
  for (int i = 0; i < 30; ++i)
    EXPECT_EQ(Insert(client, i, std::string(kInsert) + " /* " + std::to_string(i) + " */"), OCI_SUCCESS);
  EXPECT_EQ(Prepared(client) - before, 20);
}

TEST_P(KeptStatement, ServesTwoHandlesAtOnce) {
  Table("T_KEPT", "ID NUMBER");
  Insert(client, 1);
  double first = 2, second = 3;
  Statement one(client, kInsert), two(client, kInsert);
  one.Bind(1, &first, sizeof first, SQLT_FLT);
  two.Bind(1, &second, sizeof second, SQLT_FLT);
  EXPECT_EQ(one.Execute(), OCI_SUCCESS);
  EXPECT_EQ(two.Execute(), OCI_SUCCESS);
  EXPECT_EQ(one.Execute(), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT SUM(ID) FROM T_KEPT"), "8");
}

}  // namespace
}  // namespace oci_test

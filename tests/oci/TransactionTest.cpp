// SPDX-License-Identifier: Apache-2.0
// What a transaction keeps, hides, locks and ends.
#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Transactions);

TEST_P(Transactions, ADdlCommitsWhatIsOpen) {
  Table("T_TX", "ID NUMBER");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  Drop("TABLE T_TX2");
  MustExec(client, "CREATE TABLE T_TX2 (ID NUMBER)");
  client.Rollback();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_TX"), "1");
}

TEST_P(Transactions, ADdlHasNoRowCount) {
  Statement create(client, "CREATE TABLE T_TX_COUNT (ID NUMBER)");
  Drop("TABLE T_TX_COUNT");
  ASSERT_EQ(create.Execute(), OCI_SUCCESS);
  EXPECT_EQ(create.RowCount(), 0u);
}

TEST_P(Transactions, ADdlTakesNoBinds) {
  Statement create(client, "CREATE TABLE T_TX_BIND AS SELECT :1 AS A FROM DUAL");
  double value = 1;
  create.Bind(1, &value, 8, SQLT_FLT);
  EXPECT_EQ(create.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1027);
}

TEST_P(Transactions, ALiteralKeepsItsBackslash) {
  EXPECT_EQ(Value(client, "SELECT 'a\\n' FROM DUAL"), "a\\n");
}

TEST_P(Transactions, OthersSeeWorkOnceItIsCommitted) {
  Table("T_TX", "ID NUMBER");
  const auto other = Another();
  EXPECT_EQ(Value(*other, "SELECT COUNT(*) FROM T_TX"), "0");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  EXPECT_EQ(Value(*other, "SELECT COUNT(*) FROM T_TX"), "0");
  ASSERT_EQ(client.Commit(), OCI_SUCCESS);
  EXPECT_EQ(Value(*other, "SELECT COUNT(*) FROM T_TX"), "1");
}

TEST_P(Transactions, CommitAndRollbackSucceedWithNothingOpen) {
  EXPECT_EQ(client.Commit(), OCI_SUCCESS);
  EXPECT_EQ(client.Rollback(), OCI_SUCCESS);
}

TEST_P(Transactions, ASessionThatOnlyReadBlocksNoDdl) {
  Table("T_TX", "ID NUMBER");
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_TX"), "0");
  EXPECT_EQ(Exec(*Another(), "DROP TABLE T_TX"), OCI_SUCCESS);
}

TEST_P(Transactions, AReadThatFailsBlocksNoDdl) {
  Table("T_TX", "ID NUMBER");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  client.Commit();
  EXPECT_EQ(Exec(client, "SELECT (SELECT 1 FROM DUAL UNION ALL SELECT 2 FROM DUAL) FROM T_TX"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1427);
  EXPECT_EQ(Exec(*Another(), "DROP TABLE T_TX"), OCI_SUCCESS);
}

TEST_P(Transactions, AReadWithinWorkDoesNotCommitIt) {
  Table("T_TX", "ID NUMBER");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_TX"), "1");
  client.Rollback();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_TX"), "0");
}

TEST_P(Transactions, LockedRowsStayLockedUntilTheEnd) {
  Table("T_TX", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  client.Commit();
  EXPECT_EQ(Value(client, "SELECT ID FROM T_TX WHERE ID = 1 FOR UPDATE"), "1");
  const auto other = Another();
  EXPECT_EQ(Exec(*other, "SELECT ID FROM T_TX WHERE ID = 1 FOR UPDATE NOWAIT"), OCI_ERROR);
  EXPECT_EQ(other->Code(), 54);
  client.Rollback();
  EXPECT_EQ(Exec(*other, "SELECT ID FROM T_TX WHERE ID = 1 FOR UPDATE NOWAIT"), OCI_SUCCESS);
}

TEST_P(Transactions, ASequenceCountsOnAcrossRollbacks) {
  Drop("SEQUENCE S_TX");
  MustExec(client, "CREATE SEQUENCE S_TX START WITH 1001 CACHE 100");
  Statement next(client, "SELECT S_TX.NEXTVAL FROM DUAL");
  double value = 0;
  next.Define(1, &value, 8, SQLT_FLT);
  ASSERT_EQ(next.Execute(), OCI_SUCCESS);
  EXPECT_EQ(value, 1001);
  client.Rollback();
  ASSERT_EQ(next.Execute(), OCI_SUCCESS);
  EXPECT_EQ(value, 1002);
}

TEST_P(Transactions, AFailedStatementKeepsTheOnesBefore) {
  Table("T_TX", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  MustExec(client, "INSERT INTO T_TX VALUES (1)");
  EXPECT_EQ(Exec(client, "INSERT INTO T_TX VALUES (1)"), OCI_ERROR);
  client.Commit();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_TX"), "1");
}

TEST_P(Transactions, MissingObjectsAreToldByTheirNumbers) {
  EXPECT_EQ(Exec(client, "DROP TABLE T_NOT_THERE"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
  EXPECT_EQ(client.LastReport().text, "ORA-00942: table or view does not exist\n");
  EXPECT_EQ(Exec(client, "DROP SEQUENCE S_NOT_THERE"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 2289);
}

}  // namespace
}  // namespace oci_test

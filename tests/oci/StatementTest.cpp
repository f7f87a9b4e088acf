// SPDX-License-Identifier: Apache-2.0
// Queries, DML and blocks: what they return and what they leave.
#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Fetching);

constexpr char kThree[] = "SELECT 1 AS A FROM DUAL UNION ALL SELECT 2 FROM DUAL UNION ALL SELECT 3 FROM DUAL";

TEST_P(Fetching, ExecuteDeliversAsManyRowsAsIterations) {
  Statement query(client, kThree);
  sb4 values[5] = {};
  query.Define(1, values, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(2), OCI_SUCCESS);
  EXPECT_EQ(values[0], 1);
  EXPECT_EQ(values[1], 2);
  EXPECT_EQ(values[2], 0);
  EXPECT_EQ(query.RowCount(), 2u);
  EXPECT_EQ(query.Attribute<ub4>(OCI_ATTR_ROWS_FETCHED), 2u);
}

TEST_P(Fetching, FewerRowsThanWantedAreDeliveredWithNoData) {
  Statement query(client, kThree);
  sb4 values[5] = {};
  query.Define(1, values, 4, SQLT_INT);
  EXPECT_EQ(query.Execute(5), OCI_NO_DATA);
  EXPECT_EQ(client.Code(), 1403);
  EXPECT_EQ(values[2], 3);
  EXPECT_EQ(query.Attribute<ub4>(OCI_ATTR_ROWS_FETCHED), 3u);
}

TEST_P(Fetching, GoesOnBehindTheExecutedRowsToTheEnd) {
  Statement query(client, kThree);
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS);
  ASSERT_EQ(query.Fetch(), OCI_SUCCESS);
  EXPECT_EQ(value, 2);
  ASSERT_EQ(query.Fetch(), OCI_SUCCESS);
  EXPECT_EQ(value, 3);
  EXPECT_EQ(query.RowCount(), 3u);
  EXPECT_EQ(query.Fetch(), OCI_NO_DATA);
  EXPECT_EQ(client.Code(), 1403);
  EXPECT_EQ(query.Fetch(), OCI_NO_DATA);
}

TEST_P(Fetching, NoIterationsSucceedWhateverTheRowCount) {
  Statement query(client, "SELECT 1 FROM DUAL WHERE 1 = 0");
  EXPECT_EQ(query.Execute(0), OCI_SUCCESS);
  EXPECT_EQ(query.RowCount(), 0u);
}

TEST_P(Fetching, ABlockOfRowsFillsTheArrays) {
  Statement query(client, kThree);
  sb4 values[2] = {};
  query.Define(1, values, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(0), OCI_SUCCESS);
  ASSERT_EQ(query.Fetch(2), OCI_SUCCESS);
  EXPECT_EQ(values[1], 2);
  EXPECT_EQ(query.Fetch(2), OCI_NO_DATA);
  EXPECT_EQ(values[0], 3);
  EXPECT_EQ(query.Attribute<ub4>(OCI_ATTR_ROWS_FETCHED), 1u);
}

TEST_P(Fetching, NeedsAnExecutionAndADefine) {
  Statement query(client, kThree);
  EXPECT_EQ(query.Fetch(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24338);
  EXPECT_EQ(query.Execute(1), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24374);
  ASSERT_EQ(query.Execute(0), OCI_SUCCESS);
  EXPECT_EQ(query.Fetch(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24374);
}

TEST_P(Fetching, NoRowsGiveTheCursorUp) {
  Statement query(client, kThree);
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(0), OCI_SUCCESS);
  EXPECT_EQ(query.Fetch(0), OCI_SUCCESS);
  EXPECT_EQ(query.Fetch(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1002);
}

TEST_P(Fetching, OnlyGoesForward) {
  Statement query(client, kThree);
  ASSERT_EQ(query.Execute(0), OCI_SUCCESS);
  EXPECT_EQ(OCIStmtFetch2(query.handle, client.error, 1, 0x10, 0, OCI_DEFAULT), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24300);
}

TEST_P(Fetching, AnExactFetchRefusesMoreRows) {
  Statement query(client, kThree);
  sb4 values[3] = {};
  query.Define(1, values, 4, SQLT_INT);
  EXPECT_EQ(query.Execute(2, OCI_EXACT_FETCH), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1422);
  EXPECT_EQ(query.Execute(3, OCI_EXACT_FETCH), OCI_SUCCESS);
}

TEST_P(Fetching, AQueryTakesBinds) {
  Statement query(client, "SELECT :B * 2 + :A FROM DUAL");
  sb4 a = 1, b = 20, result = 0;
  OCIBind* bind = nullptr;
  const auto name = [&](const char* text, sb4* value) {
    return OCIBindByName(query.handle, &bind, client.error, reinterpret_cast<const OraText*>(text), 2, value,
                         4, SQLT_INT, nullptr, nullptr, nullptr, 0, nullptr, OCI_DEFAULT);
  };
  ASSERT_EQ(name(":A", &a), OCI_SUCCESS);
  ASSERT_EQ(name(":B", &b), OCI_SUCCESS);
  query.Define(1, &result, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(result, 41);
  b = 1;
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS);
  EXPECT_EQ(result, 3);
}

TEST_P(Fetching, OtherStatementsMayRunBetweenTwoFetches) {
  Statement query(client, kThree);
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS);
  Table("T_BETWEEN", "ID NUMBER");
  MustExec(client, "INSERT INTO T_BETWEEN VALUES (1)");
  client.Commit();
  ASSERT_EQ(query.Fetch(), OCI_SUCCESS);
  EXPECT_EQ(value, 2);
}

OCI_CONTRACT_SUITE(Dml);

TEST_P(Dml, CountsTheRowsThatItMatched) {
  Table("T_DML", "ID NUMBER, S VARCHAR2(5)");
  MustExec(client, "INSERT INTO T_DML SELECT ROWNUM, 'x' FROM INFORMATION_SCHEMA.COLUMNS WHERE ROWNUM <= 10");
  Statement update(client, "UPDATE T_DML SET S = 'x' WHERE ID > 3");
  ASSERT_EQ(update.Execute(), OCI_SUCCESS);
  EXPECT_EQ(update.RowCount(), 7u) << "rows that held the value already count too";
  Statement remove(client, "DELETE FROM T_DML WHERE ID <= 3");
  ASSERT_EQ(remove.Execute(), OCI_SUCCESS);
  EXPECT_EQ(remove.RowCount(), 3u);
}

TEST_P(Dml, OfNoRowsIsASuccess) {
  Table("T_DML", "ID NUMBER");
  Statement update(client, "update T_DML set ID=5 where id = 5");
  EXPECT_EQ(update.Execute(), OCI_SUCCESS);
  EXPECT_EQ(update.RowCount(), 0u);
}

TEST_P(Dml, TheCountIsOfTheLastExecution) {
  Table("T_DML", "ID NUMBER");
  Statement insert(client, "INSERT INTO T_DML VALUES (1)");
  EXPECT_EQ(insert.RowCount(), 0u);
  insert.Execute();
  insert.Execute();
  EXPECT_EQ(insert.RowCount(), 1u);
}

TEST_P(Dml, ATextRunsAsManyTimesAsIterations) {
  Table("T_DML", "ID NUMBER");
  Statement insert(client, "INSERT INTO T_DML VALUES (1)");
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS);
  EXPECT_EQ(insert.RowCount(), 3u);
}

TEST_P(Dml, AnArrayOfUpdatesAddsUpItsRows) {
  Table("T_DML", "ID NUMBER, N NUMBER");
  MustExec(
      client,
      "INSERT INTO T_DML SELECT ROWNUM, MOD(ROWNUM, 3) FROM INFORMATION_SCHEMA.COLUMNS WHERE ROWNUM <= 9");
  Statement update(client, "UPDATE T_DML SET ID = ID + 100 WHERE N = :1");
  sb4 groups[] = {0, 7, 2};
  update.Bind(1, groups, 4, SQLT_INT);
  ASSERT_EQ(update.Execute(3), OCI_SUCCESS);
  EXPECT_EQ(update.RowCount(), 6u);
}

TEST_P(Dml, AnArrayOfDeletesStopsAtTheFailingRow) {
  Table("T_DML", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  MustExec(client, "INSERT INTO T_DML VALUES (1)");
  MustExec(client, "INSERT INTO T_DML VALUES (2)");
  Statement update(client, "UPDATE T_DML SET ID = :1 WHERE ID = 1");
  double ids[] = {1, 2, 3};
  update.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(update.Execute(3), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(update.RowCount(), 1u);
}

TEST_P(Dml, NeedsIterations) {
  Statement insert(client, "DELETE FROM T_DML");
  EXPECT_EQ(insert.Execute(0), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24333);
  EXPECT_EQ(insert.Execute(2, OCI_DEFAULT, 2), OCI_ERROR);
}

TEST_P(Dml, NeedsEveryPlaceholderBound) {
  Table("T_DML", "ID NUMBER, N NUMBER");
  Statement insert(client, "INSERT INTO T_DML VALUES (:1, :2)");
  double value = 1;
  insert.Bind(1, &value, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1008);
}

TEST_P(Dml, ANameBindsAllItsOccurrences) {
  Table("T_DML", "A NUMBER, B NUMBER, C NUMBER");
  Statement insert(client, "INSERT INTO T_DML VALUES (:X, :Y, :x)");
  double x = 1, y = 2;
  OCIBind* bind = nullptr;
  OCIBindByName(insert.handle, &bind, client.error, reinterpret_cast<const OraText*>("X"), 1, &x, 8, SQLT_FLT,
                nullptr, nullptr, nullptr, 0, nullptr, OCI_DEFAULT);
  insert.Bind(2, &y, 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT * FROM T_DML")[0], (std::vector<std::string>{"1", "2", "1"}));
}

TEST_P(Dml, ASyntaxErrorTellsItsPlace) {
  Statement statement(client, "DELETE FROMM T_DML WHERE ID = 1");
  EXPECT_EQ(statement.Execute(), OCI_ERROR);
  EXPECT_EQ(statement.Attribute<ub2>(OCI_ATTR_PARSE_ERROR_OFFSET), 13);
}

TEST_P(Dml, AnEmptyTextIsNoStatement) {
  Statement statement(client);
  ASSERT_EQ(statement.Prepare(""), OCI_SUCCESS);
  EXPECT_EQ(statement.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 900);
}

TEST_P(Dml, AModeThatIsNoneIsRefused) {
  Statement statement(client, "DELETE FROM T_DML");
  EXPECT_EQ(statement.Execute(1, 0x40000000), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24300);
}

TEST_P(Dml, ParsingFindsAMissingTableAndChangesNothing) {
  Table("T_DML", "ID NUMBER");
  Statement insert(client, "INSERT INTO T_DML VALUES (1)");
  EXPECT_EQ(insert.Execute(1, OCI_PARSE_ONLY), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_DML"), "0");
  Statement wrong(client, "INSERT INTO T_NOT_THERE VALUES (1)");
  EXPECT_EQ(wrong.Execute(1, OCI_PARSE_ONLY), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
}

OCI_CONTRACT_SUITE(Blocks);

TEST_P(Blocks, RunWholeAndCountAsOneExecution) {
  Table("T_BLOCK", "ID NUMBER");
  Statement block(client, "BEGIN INSERT INTO T_BLOCK VALUES (1); INSERT INTO T_BLOCK VALUES (2); END;");
  ASSERT_EQ(block.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(block.RowCount(), 1u);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "2");
  client.Rollback();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "0");
}

constexpr char kFailingBlock[] = "BEGIN INSERT INTO T_BLOCK VALUES (1); INSERT INTO T_BLOCK VALUES (1); END;";

TEST_P(Blocks, AFailureUndoesTheBlockWhole) {
  Table("T_BLOCK", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  EXPECT_EQ(Exec(client, kFailingBlock), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "0");
}

TEST_P(Blocks, AFailureKeepsWhatTheTransactionDidBefore) {
  Table("T_BLOCK", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  MustExec(client, "INSERT INTO T_BLOCK VALUES (7)");
  EXPECT_EQ(Exec(client, kFailingBlock), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(Value(client, "SELECT MIN(ID) FROM T_BLOCK"), "7");
  client.Commit();
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_BLOCK"), "1");
}

TEST_P(Blocks, ADdlInsideDoesNotHideTheFailure) {
  Table("T_BLOCK", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  Drop("TABLE T_BLOCK2");
  MustExec(client, "INSERT INTO T_BLOCK VALUES (7)");
  EXPECT_EQ(Exec(client,
                 "BEGIN EXECUTE IMMEDIATE 'CREATE TABLE T_BLOCK2 (A INT)'; INSERT INTO T_BLOCK VALUES (1); "
                 "INSERT INTO "
                 "T_BLOCK VALUES (1); END;"),
            OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "1")
      << "the DDL committed the 7, the rest is undone";
}

TEST_P(Blocks, TakeBindsByDistinctName) {
  Table("T_BLOCK", "A NUMBER, B NUMBER");
  Statement block(client,
                  "BEGIN INSERT INTO T_BLOCK VALUES (:X, :Y); INSERT INTO T_BLOCK VALUES (:Y, :X); END;");
  double x = 1, y = 2;
  ASSERT_EQ(block.Bind(1, &x, 8, SQLT_FLT), OCI_SUCCESS);
  ASSERT_EQ(block.Bind(2, &y, 8, SQLT_FLT), OCI_SUCCESS);
  EXPECT_EQ(block.Bind(3, &y, 8, SQLT_FLT), OCI_ERROR);
  ASSERT_EQ(block.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_BLOCK ORDER BY A"),
            (std::vector<std::vector<std::string>>{{"1", "2"}, {"2", "1"}}));
}

TEST_P(Blocks, RaisedNoDataFoundIsNoData) {
  EXPECT_EQ(Exec(client, "BEGIN RAISE NO_DATA_FOUND; END;"), OCI_NO_DATA);
  EXPECT_EQ(client.Code(), 1403);
}

TEST_P(Blocks, ASelectWithoutRowsEndsTheBlockAndUndoesIt) {
  Table("T_BLOCK", "ID NUMBER");
  EXPECT_EQ(Exec(client,
                 "DECLARE X NUMBER; BEGIN INSERT INTO T_BLOCK VALUES (1); SELECT ID INTO X FROM T_BLOCK "
                 "WHERE ID = 2; "
                 "INSERT INTO T_BLOCK VALUES (3); END;"),
            OCI_NO_DATA);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "0");
}

TEST_P(Blocks, ALoopOverNoRowsIsNoFailure) {
  Table("T_BLOCK", "ID NUMBER");
  EXPECT_EQ(Exec(client,
                 "BEGIN FOR R IN (SELECT ID FROM T_BLOCK) LOOP NULL; END LOOP; UPDATE T_BLOCK SET ID = 1; "
                 "INSERT INTO "
                 "T_BLOCK VALUES (1); END;"),
            OCI_SUCCESS)
      << client.LastReport().text;
}

TEST_P(Blocks, AHandledExceptionIsNoFailure) {
  Table("T_BLOCK", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  EXPECT_EQ(
      Exec(client,
           "BEGIN INSERT INTO T_BLOCK VALUES (1); INSERT INTO T_BLOCK VALUES (1); EXCEPTION WHEN OTHERS THEN "
           "NULL; END;"),
      OCI_SUCCESS)
      << client.LastReport().text;
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BLOCK"), "1");
}

TEST_P(Blocks, CommitOnSuccessCommits) {
  Table("T_BLOCK", "ID NUMBER");
  ASSERT_EQ(Exec(client, "BEGIN INSERT INTO T_BLOCK VALUES (1); END;", OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS);
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_BLOCK"), "1");
}

}  // namespace
}  // namespace oci_test

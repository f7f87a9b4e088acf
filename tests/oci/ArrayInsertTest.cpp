// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <limits>
#include <numeric>

#include "Contract.h"
#include "RowErrors.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(ArrayInsert);

// IDs 1, 2, … for an insert of one column.
std::vector<double> Ids(std::size_t count, double first = 1) {
  std::vector<double> ids(count);
  std::iota(ids.begin(), ids.end(), first);
  return ids;
}

constexpr char kInsertId[] = "INSERT INTO T_ARRAY (ID) VALUES (:ID)";

TEST_P(ArrayInsert, WritesEveryRowOfTheArrays) {
  Table("T_ARRAY", "ID NUMBER NOT NULL, D DATE, S VARCHAR2(20), PRIMARY KEY(ID)");
  Statement insert(client,
                   "INSERT INTO T_ARRAY (ID, D, S) VALUES (:ID, TO_DATE(:D, 'YYYY/MM/DD HH24:MI:SS'), :S)");
  constexpr ub4 kRows = 500;
  auto ids = Ids(kRows);
  std::vector<std::array<char, 35>> dates(kRows);
  std::vector<std::array<char, 21>> texts(kRows);
  for (ub4 i = 0; i < kRows; ++i) {
    std::snprintf(dates[i].data(), 35, "%04u/12/31 23:59:58", 1950 + i);
    std::snprintf(texts[i].data(), 21, "text %u", i);
  }
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  insert.Bind(2, dates.data(), 35, SQLT_STR);
  insert.Bind(3, texts.data(), 21, SQLT_STR);
  ASSERT_EQ(insert.Execute(kRows), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(insert.RowCount(), kRows);
  EXPECT_EQ(insert.Attribute<ub8>(OCI_ATTR_UB8_ROW_COUNT), kRows);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "500");
  EXPECT_EQ(Rows(client, "SELECT * FROM T_ARRAY WHERE ID = 51")[0],
            (std::vector<std::string>{"51", "2000-12-31 23:59:58", "text 50"}));
}

TEST_P(ArrayInsert, AnIndicatorSkipOfZeroIsTheFirstIndicatorForEveryRow) {
  Table("T_ARRAY", "ID NUMBER, S VARCHAR2(5)");
  Statement insert(client, "INSERT INTO T_ARRAY (ID, S) VALUES (:ID, :S)");
  auto ids = Ids(3);
  char texts[3][6] = {"a", "b", "c"};
  sb2 indicators[3] = {-1, 0, 0};
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  OCIBind* bind = nullptr;
  ASSERT_EQ(OCIBindByPos(insert.handle, &bind, client.error, 2, texts, 6, SQLT_STR, indicators, nullptr,
                         nullptr, 0, nullptr, OCI_DEFAULT),
            OCI_SUCCESS);
  ASSERT_EQ(OCIBindArrayOfStruct(bind, client.error, 6, 0, 0, 0), OCI_SUCCESS);
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY WHERE S IS NULL"), "3");
  indicators[0] = 5;  // any number from 0 on: the values count
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY WHERE S IS NULL"), "3");
}

TEST_P(ArrayInsert, ValuesOfAStructLieOneSkipApart) {
  Table("T_ARRAY", "ID NUMBER, S VARCHAR2(5)");
  struct Row {
    double id;
    char text[6];
    sb2 indicator;
  } rows[] = {{1, "one", 0}, {2, "two", -1}, {3, "three", 0}};
  Statement insert(client, "INSERT INTO T_ARRAY (ID, S) VALUES (:1, :2)");
  OCIBind* bind = nullptr;
  OCIBindByPos(insert.handle, &bind, client.error, 1, &rows[0].id, 8, SQLT_FLT, nullptr, nullptr, nullptr, 0,
               nullptr, OCI_DEFAULT);
  OCIBindArrayOfStruct(bind, client.error, sizeof(Row), 0, 0, 0);
  OCIBindByPos(insert.handle, &bind, client.error, 2, rows[0].text, 6, SQLT_STR, &rows[0].indicator, nullptr,
               nullptr, 0, nullptr, OCI_DEFAULT);
  OCIBindArrayOfStruct(bind, client.error, sizeof(Row), sizeof(Row), 0, 0);
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS);
  EXPECT_EQ(Rows(client, "SELECT S FROM T_ARRAY ORDER BY ID"),
            (std::vector<std::vector<std::string>>{{"one"}, {"(null)"}, {"three"}}));
}

TEST_P(ArrayInsert, AFailingRowKeepsTheRowsBeforeItAndCountsThem) {
  for (const ub4 failing : {0u, 1u, 249u, 250u, 498u, 499u}) {
    Table("T_ARRAY", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
    MustExec(client, "INSERT INTO T_ARRAY VALUES (100000)");
    auto ids = Ids(500);
    ids[failing] = 100000;
    Statement insert(client, kInsertId);
    insert.Bind(1, ids.data(), 8, SQLT_FLT);
    EXPECT_EQ(insert.Execute(500), OCI_ERROR);
    EXPECT_EQ(client.Code(), 1);
    EXPECT_EQ(insert.RowCount(), failing);
    EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), std::to_string(failing + 1));
    EXPECT_EQ(Value(client, "SELECT NVL(MAX(ID), 0) FROM T_ARRAY WHERE ID < 100000"),
              std::to_string(failing));
  }
}

TEST_P(ArrayInsert, AFailureCommitsNothingAndARollbackUndoesTheRest) {
  Table("T_ARRAY", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  auto ids = Ids(10);
  ids[7] = 1;
  Statement insert(client, kInsertId);
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(10, OCI_COMMIT_ON_SUCCESS), OCI_ERROR);
  EXPECT_EQ(insert.RowCount(), 7u);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "7");
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_ARRAY"), "0");
  client.Rollback();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "0");
}

TEST_P(ArrayInsert, CommitOnSuccessCommitsAWholeSuccess) {
  Table("T_ARRAY", "ID NUMBER");
  auto ids = Ids(10);
  Statement insert(client, kInsertId);
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(10, OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS);
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_ARRAY"), "10");
}

TEST_P(ArrayInsert, ExecutingAgainSendsWhatTheArraysHoldThen) {
  Table("T_ARRAY", "ID NUMBER");
  auto ids = Ids(4);
  Statement insert(client, kInsertId);
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(4), OCI_SUCCESS);
  ids = {11, 12, 13, 14};
  ASSERT_EQ(insert.Execute(2), OCI_SUCCESS);
  EXPECT_EQ(insert.RowCount(), 2u);
  ASSERT_EQ(insert.Execute(1), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT SUM(ID) FROM T_ARRAY"), std::to_string(1 + 2 + 3 + 4 + 11 + 12 + 11));
}

TEST_P(ArrayInsert, TheRowOffsetSkipsElements) {
  Table("T_ARRAY", "ID NUMBER");
  auto ids = Ids(10);
  Statement insert(client, kInsertId);
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(10, OCI_DEFAULT, 7), OCI_SUCCESS);
  EXPECT_EQ(insert.RowCount(), 3u);
  EXPECT_EQ(Value(client, "SELECT MIN(ID) FROM T_ARRAY"), "8");
}

TEST_P(ArrayInsert, MoreParametersThanAStatementMayHave) {
  Table("T_ARRAY", "ID NUMBER");
  auto ids = Ids(70000);
  Statement insert(client, kInsertId);
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(70000), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(insert.RowCount(), 70000u);
  EXPECT_EQ(Value(client, "SELECT COUNT(DISTINCT ID) FROM T_ARRAY"), "70000");
}

TEST_P(ArrayInsert, MoreBytesThanAPacketMayHold) {
  Table("T_ARRAY", "ID NUMBER, S VARCHAR2(4000)");
  constexpr ub4 kRows = 6000;  // 24 MB
  auto ids = Ids(kRows);
  std::vector<char> texts(std::size_t{kRows} * 4001, 'x');
  for (ub4 i = 0; i < kRows; ++i) texts[std::size_t{i} * 4001 + 4000] = 0;
  Statement insert(client, "INSERT INTO T_ARRAY (ID, S) VALUES (:1, :2)");
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  insert.Bind(2, texts.data(), 4001, SQLT_STR);
  ASSERT_EQ(insert.Execute(kRows), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(insert.RowCount(), kRows);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY WHERE LENGTH(S) = 4000"), "6000");
}

TEST_P(ArrayInsert, AFailureInALaterPacketCountsTheEarlierOnes) {
  Table("T_ARRAY", "ID NUMBER NOT NULL, S VARCHAR2(4000), PRIMARY KEY(ID)");
  constexpr ub4 kRows = 3000;  // two packets
  auto ids = Ids(kRows);
  ids[2900] = 1;
  std::vector<char> texts(std::size_t{kRows} * 4001, 'x');
  for (ub4 i = 0; i < kRows; ++i) texts[std::size_t{i} * 4001 + 4000] = 0;
  Statement insert(client, "INSERT INTO T_ARRAY (ID, S) VALUES (:1, :2)");
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  insert.Bind(2, texts.data(), 4001, SQLT_STR);
  EXPECT_EQ(insert.Execute(kRows), OCI_ERROR);
  EXPECT_EQ(insert.RowCount(), 2900u);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "2900");
}

TEST_P(ArrayInsert, TextWithoutItsZeroByteFailsItsRow) {
  Table("T_ARRAY", "S VARCHAR2(5)");
  char texts[3][3] = {{'a', 0, 0}, {'b', 'c', 'd'}, {'e', 0, 0}};
  Statement insert(client, "INSERT INTO T_ARRAY (S) VALUES (:S)");
  insert.Bind(1, texts, 3, SQLT_STR);
  EXPECT_EQ(insert.Execute(3), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1480);
  EXPECT_EQ(insert.RowCount(), 1u);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "1");
}

TEST_P(ArrayInsert, ADateThatDoesNotFitItsMaskFailsItsRow) {
  Table("T_ARRAY", "D DATE");
  char dates[3][20] = {"2001/02/03 04:05:06", "2001/13/03 04:05:06", "2001/02/03 04:05:06"};
  Statement insert(client, "INSERT INTO T_ARRAY (D) VALUES (TO_DATE(:D, 'YYYY/MM/DD HH24:MI:SS'))");
  insert.Bind(1, dates, 20, SQLT_STR);
  EXPECT_EQ(insert.Execute(3), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1843);
  EXPECT_EQ(insert.RowCount(), 1u);
}

TEST_P(ArrayInsert, ARowThatIsTooLongNamesItsColumn) {
  Table("T_ARRAY", "S VARCHAR2(3)");
  char texts[2][6] = {"abc", "abcd"};
  Statement insert(client, "INSERT INTO T_ARRAY (S) VALUES (:S)");
  insert.Bind(1, texts, 6, SQLT_STR);
  EXPECT_EQ(insert.Execute(2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 12899);
  EXPECT_EQ(insert.RowCount(), 1u);
}

TEST_P(ArrayInsert, FromAQueryWithBindsRunsElementByElement) {
  Table("T_ARRAY", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  double ids[] = {1, 2, 1, 4};
  Statement insert(client, "INSERT INTO T_ARRAY (ID) SELECT :ID FROM DUAL");
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(4), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(insert.RowCount(), 2u);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "2");
}

TEST_P(ArrayInsert, AMissingTableIsToldAndCountsNothing) {
  auto ids = Ids(500);
  Statement insert(client, "INSERT INTO T_NOT_THERE (ID) VALUES (:1)");
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(500), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
  EXPECT_EQ(insert.RowCount(), 0u);
}

TEST_P(ArrayInsert, NumbersThatTheServerCannotHoldAreRefused) {
  Table("T_ARRAY", "ID NUMBER");
  double ids[] = {1, std::numeric_limits<double>::infinity()};
  Statement insert(client, kInsertId);
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1426);
  EXPECT_EQ(insert.RowCount(), 1u);
}

OCI_CONTRACT_SUITE(RowErrors);

TEST_P(RowErrors, AreCollectedWhileTheGoodRowsGoIn) {
  Table("T_ARRAY", "ID NUMBER(4) NOT NULL, PRIMARY KEY(ID)");
  double ids[] = {1, 2, 1, 4, 123456, 6, 2};
  Statement insert(client, kInsertId);
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(7, OCI_BATCH_ERRORS | OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(client.Code(), 24381);
  EXPECT_EQ(insert.RowCount(), 4u);
  EXPECT_EQ(insert.Attribute<ub4>(OCI_ATTR_NUM_DML_ERRORS), 3u);
  EXPECT_EQ(FailedRows(client, insert), (std::vector<FailedRow>{{2, 1}, {4, 1438}, {6, 1}}));
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_ARRAY"), "4");
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_ARRAY"), "0") << "committed in spite of errors";
}

TEST_P(RowErrors, NoneLeavesAPlainSuccessThatCommits) {
  Table("T_ARRAY", "ID NUMBER");
  double ids[] = {1, 2, 3};
  Statement insert(client, kInsertId);
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(3, OCI_BATCH_ERRORS | OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS);
  EXPECT_EQ(insert.Attribute<ub4>(OCI_ATTR_NUM_DML_ERRORS), 0u);
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_ARRAY"), "3");
}

TEST_P(RowErrors, APositionBehindTheLastIsRefused) {
  void* row = nullptr;
  EXPECT_EQ(OCIParamGet(client.error, OCI_HTYPE_ERROR, client.error, &row, 0), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24334);
}

TEST_P(RowErrors, AHandleIsMadeWhereTheCallerBroughtNone) {
  Table("T_ARRAY", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  double ids[] = {1, 1};
  Statement insert(client, kInsertId);
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(2, OCI_BATCH_ERRORS), OCI_SUCCESS_WITH_INFO);
  void* row = nullptr;
  ASSERT_EQ(OCIParamGet(client.error, OCI_HTYPE_ERROR, client.error, &row, 0), OCI_SUCCESS);
  EXPECT_EQ(ReportOf(static_cast<OCIError*>(row)).code, 1);
}

}  // namespace
}  // namespace oci_test

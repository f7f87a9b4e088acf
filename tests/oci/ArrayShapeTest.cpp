// SPDX-License-Identifier: Apache-2.0
// How arrays lie in memory and how large they may be: offsets, skips, indicators, lengths, packets.
#include <array>
#include <cstring>
#include <numeric>

#include "Contract.h"
#include "RowErrors.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(ArrayShape);

using Texts = std::vector<std::vector<std::string>>;

// Binds a place and gives its handle.
OCIBind* BindAt(Client& client, Statement& statement, ub4 position, void* values, sb4 size, ub2 type,
                sb2* indicators = nullptr, ub2* lengths = nullptr, ub2* codes = nullptr) {
  OCIBind* bind = nullptr;
  EXPECT_EQ(OCIBindByPos(statement.handle, &bind, client.error, position, values, size, type, indicators,
                         lengths, codes, 0, nullptr, OCI_DEFAULT),
            OCI_SUCCESS);
  return bind;
}

TEST_P(ArrayShape, AFailureBehindARowOffsetIsCountedFromTheOffset) {
  Table("T_SHAPE", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  double ids[] = {1, 2, 3, 4, 5, 6, 3, 8};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1)");
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(8, OCI_DEFAULT, 2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(insert.RowCount(), 4u) << "3, 4, 5, 6";
  EXPECT_EQ(Value(client, "SELECT MIN(ID) FROM T_SHAPE"), "3");
}

TEST_P(ArrayShape, CollectedRowsBehindARowOffsetKeepTheirPlaceInTheArray) {
  Table("T_SHAPE", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
  double ids[] = {1, 2, 3, 4, 3, 6};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1)");
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(6, OCI_BATCH_ERRORS, 2), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(insert.RowCount(), 3u);
  EXPECT_EQ(FailedRows(client, insert), (std::vector<FailedRow>{{4, 1}}));
}

TEST_P(ArrayShape, AnOffsetOfTheLastElementSendsOneRow) {
  Table("T_SHAPE", "ID NUMBER");
  double ids[] = {1, 2, 3};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1)");
  insert.Bind(1, ids, 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(3, OCI_DEFAULT, 2), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT MAX(ID) FROM T_SHAPE"), "3");
  EXPECT_EQ(insert.RowCount(), 1u);
}

TEST_P(ArrayShape, EverySkipIsAByteDistanceOfItsOwn) {
  Table("T_SHAPE", "A VARCHAR2(4), B NUMBER");
  struct Row {
    ub2 length;
    sb2 indicator;
    char text[4];
    sb4 number;
  } rows[] = {{2, 0, {'a', 'b', 'c', 'd'}, 1}, {4, 0, {'e', 'f', 'g', 'h'}, 2}, {1, -1, {'x'}, 3}};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  OCIBind* text = BindAt(client, insert, 1, rows[0].text, 4, SQLT_CHR, &rows[0].indicator, &rows[0].length);
  OCIBindArrayOfStruct(text, client.error, sizeof(Row), sizeof(Row), sizeof(Row), 0);
  OCIBind* number = BindAt(client, insert, 2, &rows[0].number, 4, SQLT_INT);
  OCIBindArrayOfStruct(number, client.error, sizeof(Row), 0, 0, 0);
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_SHAPE ORDER BY B"),
            (Texts{{"ab", "1"}, {"efgh", "2"}, {"(null)", "3"}}));
}

TEST_P(ArrayShape, AValueOrLengthSkipOfZeroIsTheFirstForEveryRow) {
  Table("T_SHAPE", "A VARCHAR2(4), B NUMBER");
  char texts[] = "abcdefgh";
  ub2 lengths[] = {3, 1};
  sb4 numbers[] = {1, 2};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  OCIBind* text = BindAt(client, insert, 1, texts, 4, SQLT_CHR, nullptr, lengths);
  OCIBindArrayOfStruct(text, client.error, 0, 0, 0, 0);
  BindAt(client, insert, 2, numbers, 4, SQLT_INT);
  ASSERT_EQ(insert.Execute(2), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_SHAPE ORDER BY B"), (Texts{{"abc", "1"}, {"abc", "2"}}));
}

TEST_P(ArrayShape, WithoutSkipsEachArrayIsDense) {
  Table("T_SHAPE", "A VARCHAR2(3), B NUMBER");
  char texts[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i'};
  sb2 indicators[] = {0, -1, 0};
  ub2 lengths[] = {3, 3, 1};
  sb1 numbers[] = {1, 2, 3};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  BindAt(client, insert, 1, texts, 3, SQLT_CHR, indicators, lengths);
  BindAt(client, insert, 2, numbers, 1, SQLT_INT);
  ASSERT_EQ(insert.Execute(3), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_SHAPE ORDER BY B"),
            (Texts{{"abc", "1"}, {"(null)", "2"}, {"g", "3"}}));
}

TEST_P(ArrayShape, IndicatorsBelowZeroAreNullAndTheValueIsNotRead) {
  Table("T_SHAPE", "A VARCHAR2(3), B NUMBER");
  char texts[4][4] = {"abc", {'x', 'x', 'x', 'x'}, {'y', 'y', 'y', 'y'}, "def"};  // no zero byte where null
  sb2 indicators[] = {0, -1, -2, 32767};
  sb4 numbers[] = {1, 2, 3, 4};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  BindAt(client, insert, 1, texts, 4, SQLT_STR, indicators);
  BindAt(client, insert, 2, numbers, 4, SQLT_INT);
  ASSERT_EQ(insert.Execute(4), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_SHAPE ORDER BY B"),
            (Texts{{"abc", "1"}, {"(null)", "2"}, {"(null)", "3"}, {"def", "4"}}));
}

TEST_P(ArrayShape, ANullBufferIsNull) {
  Table("T_SHAPE", "A VARCHAR2(3), B NUMBER");
  sb4 numbers[] = {1, 2};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  BindAt(client, insert, 1, nullptr, 4, SQLT_STR);
  BindAt(client, insert, 2, numbers, 4, SQLT_INT);
  ASSERT_EQ(insert.Execute(2), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_SHAPE WHERE A IS NULL"), "2");
}

TEST_P(ArrayShape, LengthsAtTheirEndsAreTakenByTheByte) {
  Table("T_SHAPE", "A VARCHAR2(8), B NUMBER");
  char texts[4][8];
  std::memset(texts, 'x', sizeof texts);
  ub2 lengths[] = {0, 1, 8, 65535};  // the last one ends at the size that was bound
  sb4 numbers[] = {1, 2, 3, 4};
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  BindAt(client, insert, 1, texts, 8, SQLT_CHR, nullptr, lengths);
  BindAt(client, insert, 2, numbers, 4, SQLT_INT);
  ASSERT_EQ(insert.Execute(4), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Rows(client, "SELECT A, B FROM T_SHAPE ORDER BY B"),
            (Texts{{"(null)", "1"}, {"x", "2"}, {"xxxxxxxx", "3"}, {"xxxxxxxx", "4"}}));
}

TEST_P(ArrayShape, MoreThan65535ParametersFailAtTheirLastRow) {
  Table("T_SHAPE", "A NUMBER NOT NULL, B NUMBER, C NUMBER, PRIMARY KEY(A)");
  constexpr ub4 kRows = 22000;  // 66,000 parameters
  std::vector<sb4> numbers(kRows);
  std::iota(numbers.begin(), numbers.end(), 1);
  std::vector<sb4> keys = numbers;
  keys.back() = 1;
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2, :3)");
  BindAt(client, insert, 1, keys.data(), 4, SQLT_INT);
  BindAt(client, insert, 2, numbers.data(), 4, SQLT_INT);
  BindAt(client, insert, 3, numbers.data(), 4, SQLT_INT);
  EXPECT_EQ(insert.Execute(kRows), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(insert.RowCount(), kRows - 1);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_SHAPE WHERE A = B AND B = C"), std::to_string(kRows - 1));
}

// Rows of about a megabyte: eight or so make a packet.
class LargeRows {
 public:
  static constexpr std::size_t kBytes = 1000000;
  explicit LargeRows(ub4 rows) : ids(rows), texts(rows * (kBytes + 1), 'x') {
    std::iota(ids.begin(), ids.end(), 1);
    for (ub4 row = 1; row <= rows; ++row) texts[row * (kBytes + 1) - 1] = 0;
  }
  void BindTo(Statement& insert) {
    insert.Bind(1, ids.data(), 4, SQLT_INT);
    insert.Bind(2, texts.data(), kBytes + 1, SQLT_STR);
  }
  std::vector<sb4> ids;
  std::vector<char> texts;
};

TEST_P(ArrayShape, FailuresInSeveralPacketsAreAllCollected) {
  Table("T_SHAPE", "ID NUMBER NOT NULL, S CLOB, PRIMARY KEY(ID)");
  LargeRows rows(20);
  rows.ids[3] = rows.ids[12] = rows.ids[19] = 1;
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  rows.BindTo(insert);
  EXPECT_EQ(insert.Execute(20, OCI_BATCH_ERRORS), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(insert.RowCount(), 17u);
  EXPECT_EQ(FailedRows(client, insert), (std::vector<FailedRow>{{3, 1}, {12, 1}, {19, 1}}));
  EXPECT_EQ(Value(client, "SELECT SUM(LENGTH(S)) FROM T_SHAPE"), "17000000");
}

TEST_P(ArrayShape, AFailureInTheThirdPacketBehindAnOffset) {
  Table("T_SHAPE", "ID NUMBER NOT NULL, S CLOB, PRIMARY KEY(ID)");
  LargeRows rows(24);
  rows.ids[21] = 5;
  Statement insert(client, "INSERT INTO T_SHAPE VALUES (:1, :2)");
  rows.BindTo(insert);
  EXPECT_EQ(insert.Execute(24, OCI_DEFAULT, 2), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1);
  EXPECT_EQ(insert.RowCount(), 19u);
  EXPECT_EQ(Value(client, "SELECT MAX(ID) FROM T_SHAPE"), "21");
}

class LargeValue : public Contract {
 protected:
  // Inserts one text of this many bytes.
  sword Insert(std::size_t bytes) {
    std::vector<char> text(bytes, 'x');
    Statement insert(client, "INSERT INTO T_LARGE VALUES (:1)");
    insert.Bind(1, text.data(), static_cast<sb4>(bytes), SQLT_LNG);
    return insert.Execute();
  }
};
INSTANTIATE_TEST_SUITE_P(Over, LargeValue, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

TEST_P(LargeValue, OfSixteenMillionBytesGoesInAlone) {
  Table("T_LARGE", "S CLOB");
  ASSERT_EQ(Insert(16000000), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Value(client, "SELECT LENGTH(S) FROM T_LARGE"), "16000000");
}

TEST_P(LargeValue, BeyondThePacketLimitIsRefusedAndTheSessionGoesOn) {
  Table("T_LARGE", "S CLOB");
  MustExec(client, "INSERT INTO T_LARGE VALUES ('before')");
  for (const std::size_t bytes : {16777216u, 40000000u}) {
    EXPECT_EQ(Insert(bytes), OCI_ERROR);
    EXPECT_EQ(client.Code(), 28500);
    EXPECT_NE(client.LastReport().text.find("max_allowed_packet"), std::string::npos)
        << client.LastReport().text;
  }
  EXPECT_EQ(Value(client, "SELECT S FROM T_LARGE"), "before");
}

TEST_P(LargeValue, AmongOthersFailsItsRowAlone) {
  Table("T_LARGE", "S CLOB");
  constexpr std::size_t kBytes = 17000000;
  std::vector<char> texts(3 * kBytes, 'x');
  Statement insert(client, "INSERT INTO T_LARGE VALUES (:1)");
  texts[4] = texts[2 * kBytes + 6] = 0;
  texts[2 * kBytes - 1] = 0;
  insert.Bind(1, texts.data(), kBytes, SQLT_STR);
  EXPECT_EQ(insert.Execute(3), OCI_ERROR);
  EXPECT_EQ(client.Code(), 28500);
  EXPECT_EQ(insert.RowCount(), 1u);
  EXPECT_EQ(insert.Execute(3, OCI_BATCH_ERRORS), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(FailedRows(client, insert), (std::vector<FailedRow>{{1, 28500}}));
  EXPECT_EQ(insert.RowCount(), 2u);
}

TEST_P(LargeValue, AStatementBeyondThePacketLimitIsRefused) {
  const std::string text = "SELECT LENGTH('" + std::string(17000000, 'x') + "') FROM DUAL";
  EXPECT_EQ(Exec(client, text), OCI_ERROR);
  EXPECT_EQ(client.Code(), 28500);
  EXPECT_EQ(Value(client, "SELECT 1 FROM DUAL"), "1");
}

}  // namespace
}  // namespace oci_test

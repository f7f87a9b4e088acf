// SPDX-License-Identifier: Apache-2.0
// Values of every external type, in and out.
#include <cstring>
#include <limits>

#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Values);

// Inserts one bound value into a column of this type and gives it back as text.
class InAndOut {
 public:
  InAndOut(Client& client, const std::string& column) : m_client(client) {
    Exec(client, "DROP TABLE T_VALUE");
    MustExec(client, "CREATE TABLE T_VALUE (C " + column + ")");
  }
  std::string Text(void* value, sb4 size, ub2 type, sb2* indicator = nullptr, ub2* length = nullptr) {
    Statement insert(m_client, "INSERT INTO T_VALUE VALUES (:1)");
    if (insert.Bind(1, value, size, type, indicator, length) != OCI_SUCCESS ||
        insert.Execute() != OCI_SUCCESS)
      return "ORA-" + std::to_string(m_client.Code());
    const std::string text = Value(m_client, "SELECT C FROM T_VALUE");
    MustExec(m_client, "DELETE FROM T_VALUE");
    return text;
  }

 private:
  Client& m_client;
};

TEST_P(Values, IntegersOfEveryWidthGoIn) {
  InAndOut number(client, "NUMBER(20)");
  sb1 one = -128;
  sb2 two = -32768;
  sb4 four = std::numeric_limits<sb4>::min();
  sb8 eight = std::numeric_limits<sb8>::min();
  EXPECT_EQ(number.Text(&one, 1, SQLT_INT), "-128");
  EXPECT_EQ(number.Text(&two, 2, SQLT_INT), "-32768");
  EXPECT_EQ(number.Text(&four, 4, SQLT_INT), "-2147483648");
  EXPECT_EQ(number.Text(&eight, 8, SQLT_INT), "-9223372036854775808");
  ub8 large = std::numeric_limits<ub8>::max();
  EXPECT_EQ(number.Text(&large, 8, SQLT_UIN), "18446744073709551615");
  ub1 byte = 255;
  EXPECT_EQ(number.Text(&byte, 1, SQLT_UIN), "255");
}

TEST_P(Values, RealNumbersGoIn) {
  InAndOut number(client, "NUMBER");
  double wide = -0.5;
  float narrow = 1.5;
  EXPECT_EQ(number.Text(&wide, 8, SQLT_FLT), "-.5");
  EXPECT_EQ(number.Text(&wide, 8, SQLT_BDOUBLE), "-.5");
  EXPECT_EQ(number.Text(&narrow, 4, SQLT_FLT), "1.5");
  EXPECT_EQ(number.Text(&narrow, 4, SQLT_BFLOAT), "1.5");
  wide = 1e15;
  EXPECT_EQ(number.Text(&wide, 8, SQLT_FLT), "1000000000000000");
}

TEST_P(Values, RealNumbersAreRoundedToTheirColumn) {
  InAndOut number(client, "NUMBER(5,2)");
  double value = 12.345;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT), "12.35");
  value = 12345;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT), "ORA-1438");
}

TEST_P(Values, NotANumberIsRefused) {
  InAndOut number(client, "NUMBER");
  double value = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT), "ORA-1426");
}

TEST_P(Values, TextGoesInWithAndWithoutItsZeroByte) {
  InAndOut text(client, "VARCHAR2(10)");
  char buffer[8] = "abc";
  EXPECT_EQ(text.Text(buffer, 8, SQLT_STR), "abc");
  EXPECT_EQ(text.Text(buffer, 8, SQLT_AVC), "abc");
  EXPECT_EQ(text.Text(buffer, 3, SQLT_CHR), "abc");
  EXPECT_EQ(text.Text(buffer, 3, SQLT_AFC), "abc");
  EXPECT_EQ(text.Text(buffer, 3, SQLT_LNG), "abc");
  EXPECT_EQ(text.Text(buffer, 3, SQLT_STR), "ORA-1480");
}

TEST_P(Values, ALengthSaysHowMuchOfATextCounts) {
  InAndOut text(client, "VARCHAR2(10)");
  char buffer[8] = "abcdefg";
  ub2 length = 2;
  EXPECT_EQ(text.Text(buffer, 8, SQLT_CHR, nullptr, &length), "ab");
  length = 8;  // of a zero-ended text: with its zero byte
  EXPECT_EQ(text.Text(buffer, 8, SQLT_STR, nullptr, &length), "abcdefg");
  length = 3;
  EXPECT_EQ(text.Text(buffer, 8, SQLT_STR, nullptr, &length), "ORA-1480");
}

TEST_P(Values, BlanksQuotesBackslashesAndOtherScriptsAreKept) {
  InAndOut text(client, "VARCHAR2(40)");
  char buffer[] = " it's \\n \"x\" größe ☃ ";
  EXPECT_EQ(text.Text(buffer, sizeof buffer, SQLT_STR), buffer);
}

TEST_P(Values, AnEmptyTextIsNull) {
  InAndOut text(client, "VARCHAR2(10)");
  char buffer[4] = "";
  ub2 length = 0;
  EXPECT_EQ(text.Text(buffer, 4, SQLT_STR), "(null)");
  EXPECT_EQ(text.Text(buffer, 4, SQLT_CHR, nullptr, &length), "(null)");
}

TEST_P(Values, IndicatorsDecideAboutNull) {
  InAndOut number(client, "NUMBER");
  double value = 7;
  sb2 indicator = -1;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT, &indicator), "(null)");
  indicator = -2;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT, &indicator), "(null)");
  indicator = 0;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT, &indicator), "7");
  indicator = 8;
  EXPECT_EQ(number.Text(&value, 8, SQLT_FLT, &indicator), "7");
}

TEST_P(Values, OracleDatesGoIn) {
  InAndOut date(client, "DATE");
  ub1 bytes[7] = {119, 199, 12, 31, 24, 60, 59};
  EXPECT_EQ(date.Text(bytes, 7, SQLT_DAT), "1999-12-31 23:59:58");
  bytes[2] = 13;
  EXPECT_EQ(date.Text(bytes, 7, SQLT_DAT), "ORA-1843");
  ub1 before_christ[7] = {53, 88, 1, 1, 1, 1, 1};  // 4712 BC
  EXPECT_EQ(date.Text(before_christ, 7, SQLT_DAT), "ORA-1841");
  ub1 no_such_day[7] = {120, 101, 2, 30, 1, 1, 1};
  EXPECT_EQ(date.Text(no_such_day, 7, SQLT_DAT), "ORA-1839");
  ub1 no_hour[7] = {120, 101, 2, 3, 0, 1, 1};
  EXPECT_EQ(date.Text(no_hour, 7, SQLT_DAT), "ORA-1850");
}

TEST_P(Values, OracleNumbersGoIn) {
  InAndOut number(client, "NUMBER(30,5)");
  ub1 positive[22] = {3, 194, 2, 24};  // 123
  EXPECT_EQ(number.Text(positive, 22, SQLT_VNU), "123");
  ub1 negative[21] = {61, 100, 78, 41, 102};  // -123.6
  ub2 length = 5;
  EXPECT_EQ(number.Text(negative, 21, SQLT_NUM, nullptr, &length), "-123.6");
}

TEST_P(Values, BytesGoIn) {
  InAndOut raw(client, "RAW(4)");
  char bytes[4] = {'a', 0, '\xff', 'b'};
  Statement insert(client, "INSERT INTO T_VALUE VALUES (:1)");
  ASSERT_EQ(insert.Bind(1, bytes, 4, SQLT_BIN), OCI_SUCCESS);
  ASSERT_EQ(insert.Execute(), OCI_SUCCESS) << client.LastReport().text;
  Statement query(client, "SELECT C FROM T_VALUE");
  char out[4] = {};
  ub2 length = 0;
  query.Define(1, out, 4, SQLT_BIN, nullptr, &length);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS);
  EXPECT_EQ(length, 4);
  EXPECT_EQ(std::memcmp(out, bytes, 4), 0);
}

TEST_P(Values, ATextWithAMaskBecomesADate) {
  Exec(client, "DROP TABLE T_VALUE");
  MustExec(client, "CREATE TABLE T_VALUE (C DATE)");
  Statement insert(client, "INSERT INTO T_VALUE VALUES (TO_DATE(:1, 'YYYY/MM/DD HH24:MI:SS'))");
  char text[35] = "2500-01-02 03.04.05";  // any punctuation
  insert.Bind(1, text, 35, SQLT_STR);
  ASSERT_EQ(insert.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Value(client, "SELECT C FROM T_VALUE"), "2500-01-02 03:04:05");
}

TEST_P(Values, FractionsOfATimestampComeOutWithItsDigits) {
  Exec(client, "DROP TABLE T_VALUE");
  MustExec(client, "CREATE TABLE T_VALUE (C TIMESTAMP(3))");
  MustExec(client,
           "INSERT INTO T_VALUE VALUES (TO_TIMESTAMP('2001-02-03 04:05:06.7', 'YYYY-MM-DD HH24:MI:SS.FF'))");
  EXPECT_EQ(Value(client, "SELECT C FROM T_VALUE"), "2001-02-03 04:05:06.700");
}

TEST_P(Values, ShortCharactersComeOutPadded) {
  for (const char* type : {"CHAR(5)", "CHAR(300)"}) {
    InAndOut character(client, type);
    char text[] = "ab";
    const std::string out = character.Text(text, sizeof text, SQLT_STR);
    const std::size_t width = std::strcmp(type, "CHAR(5)") == 0 ? 5 : 300;
    EXPECT_EQ(out, "ab" + std::string(width - 2, ' ')) << type;
  }
}

// What one query of one value delivers into a buffer of a type.
template <class T>
T Out(Client& client, const std::string& expression, ub2 type, sword expected = OCI_SUCCESS) {
  Statement query(client, "SELECT " + expression + " FROM DUAL");
  T value{};
  EXPECT_EQ(query.Define(1, &value, sizeof value, type), OCI_SUCCESS);
  EXPECT_EQ(query.Execute(), expected) << expression;
  return value;
}

TEST_P(Values, NumbersComeOutAsIntegers) {
  EXPECT_EQ(Out<sb1>(client, "-7", SQLT_INT), -7);
  EXPECT_EQ(Out<sb2>(client, "300", SQLT_INT), 300);
  EXPECT_EQ(Out<sb4>(client, "2.6", SQLT_INT), 3);
  EXPECT_EQ(Out<sb8>(client, "9000000000", SQLT_INT), 9000000000);
  EXPECT_EQ(Out<ub4>(client, "'42'", SQLT_UIN), 42u);
}

TEST_P(Values, ANumberThatDoesNotFitIsAnError) {
  Out<sb1>(client, "128", SQLT_INT, OCI_ERROR);
  EXPECT_EQ(client.Code(), 1455);
  Out<ub4>(client, "-1", SQLT_UIN, OCI_ERROR);
  EXPECT_EQ(client.Code(), 1455);
}

TEST_P(Values, NumbersComeOutAsReals) {
  EXPECT_EQ(Out<double>(client, "1.25", SQLT_FLT), 1.25);
  EXPECT_EQ(Out<double>(client, "1E100", SQLT_BDOUBLE), 1e100);
  EXPECT_EQ(Out<float>(client, "-0.5", SQLT_BFLOAT), -0.5f);
}

TEST_P(Values, TextThatIsNoNumberIsAnError) {
  Out<double>(client, "'abc'", SQLT_FLT, OCI_ERROR);
  EXPECT_EQ(client.Code(), 1722);
}

TEST_P(Values, NumbersComeOutAsOracleNumbers) {
  struct Bytes {
    ub1 bytes[22];
  };
  const Bytes number = Out<Bytes>(client, "-123.6", SQLT_VNU);
  EXPECT_EQ(std::vector<ub1>(number.bytes, number.bytes + 6), (std::vector<ub1>{5, 61, 100, 78, 41, 102}));
}

TEST_P(Values, NumbersComeOutAsOracleWritesThem) {
  EXPECT_EQ(Value(client, "SELECT 0.50 FROM DUAL"), ".5");
  EXPECT_EQ(Value(client, "SELECT -0.25 FROM DUAL"), "-.25");
  EXPECT_EQ(Value(client, "SELECT 100.00 FROM DUAL"), "100");
  EXPECT_EQ(Value(client, "SELECT 1E10 FROM DUAL"), "10000000000");
}

TEST_P(Values, DatesComeOutAsOracleDates) {
  struct Bytes {
    ub1 bytes[7];
  };
  const Bytes date = Out<Bytes>(client, "TO_DATE('1999-12-31 23:59:58', 'YYYY-MM-DD HH24:MI:SS')", SQLT_DAT);
  EXPECT_EQ(std::vector<ub1>(date.bytes, date.bytes + 7), (std::vector<ub1>{119, 199, 12, 31, 24, 60, 59}));
}

TEST_P(Values, CutTextTellsItsLengthAndIsEnded) {
  Statement query(client, "SELECT 'abcdef' FROM DUAL");
  char text[4];
  sb2 indicator = 0;
  ub2 length = 0;
  query.Define(1, text, 4, SQLT_STR, &indicator, &length);
  EXPECT_EQ(query.Execute(), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(client.Code(), 1406);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(indicator, 6);
  EXPECT_EQ(length, 3);
}

// A length has sixteen bits, a text may have more bytes.
TEST_P(Values, ATextAbove65535BytesComesWholeAndTellsTheLargestLength) {
  Statement query(client, "SELECT RPAD('a', 70000, 'b') FROM DUAL");
  std::vector<char> text(100000, '!');
  sb2 indicator = 7;
  ub2 length = 0;
  query.Define(1, text.data(), static_cast<sb4>(text.size()), SQLT_STR, &indicator, &length);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(std::strlen(text.data()), 70000u);
  EXPECT_EQ(indicator, 0);
  EXPECT_EQ(length, 65535);
}

TEST_P(Values, ACutTextAbove32767BytesTellsNoLength) {
  Statement query(client, "SELECT RPAD('a', 70000, 'b') FROM DUAL");
  char text[10];
  sb2 indicator = 7;
  query.Define(1, text, sizeof text, SQLT_STR, &indicator);
  EXPECT_EQ(query.Execute(), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(client.Code(), 1406);
  EXPECT_EQ(indicator, -2);
  EXPECT_STREQ(text, "abbbbbbbb");
}

TEST_P(Values, ACodeTakesTheReportOfACutText) {
  Statement query(client, "SELECT 'abcdef' FROM DUAL");
  char text[4];
  sb2 indicator = 0;
  ub2 code = 0;
  query.Define(1, text, 4, SQLT_STR, &indicator, nullptr, &code);
  EXPECT_EQ(query.Execute(), OCI_SUCCESS);
  EXPECT_EQ(code, 1406);
}

TEST_P(Values, NullLeavesTheBufferAndTellsTheIndicator) {
  Statement query(client, "SELECT NULL FROM DUAL");
  sb4 value = 77;
  sb2 indicator = 0;
  query.Define(1, &value, 4, SQLT_INT, &indicator);
  EXPECT_EQ(query.Execute(), OCI_SUCCESS);
  EXPECT_EQ(indicator, -1);
  EXPECT_EQ(value, 77);
}

TEST_P(Values, NullWithoutAnIndicatorIsTold) {
  Statement query(client, "SELECT NULL FROM DUAL");
  sb4 value = 77;
  query.Define(1, &value, 4, SQLT_INT);
  EXPECT_EQ(query.Execute(), OCI_SUCCESS_WITH_INFO);
  EXPECT_EQ(client.Code(), 1405);
}

}  // namespace
}  // namespace oci_test

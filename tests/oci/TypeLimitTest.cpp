// SPDX-License-Identifier: Apache-2.0
// What the types hold at their ends, and what a user gets where the server holds less than Oracle: every line
// of docs/oracle_sql.md on limits of values has a case here.
#include <cstring>
#include <limits>

#include "Contract.h"

namespace oci_test {
namespace {

class TypeLimits : public Contract {
 protected:
  // Inserts a value into a column of this type. Gives what a query reads back, or the error.
  std::string Stored(const std::string& type, const std::string& text) {
    return Stored(type, const_cast<char*>(text.data()), static_cast<sb4>(text.size()), SQLT_CHR);
  }
  std::string Stored(const std::string& type, double number) { return Stored(type, &number, 8, SQLT_FLT); }
  std::string Stored(const std::string& type, void* value, sb4 size, ub2 as) {
    if (m_type != type) Table("T_LIMIT", "C " + type);
    if (m_type == type) MustExec(client, "DELETE FROM T_LIMIT");
    m_type = type;
    Statement insert(client, "INSERT INTO T_LIMIT VALUES (:1)");
    insert.Bind(1, value, size, as);
    if (insert.Execute() != OCI_SUCCESS) return "ORA-" + std::to_string(client.Code());
    return Value(client, "SELECT C FROM T_LIMIT");
  }

 private:
  std::string m_type;  // of the table that is there
};
INSTANTIATE_TEST_SUITE_P(Over, TypeLimits, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

TEST_P(TypeLimits, ATextOf4000BytesFitsAndOneMoreDoesNot) {
  EXPECT_EQ(Stored("VARCHAR2(4000)", std::string(4000, 'x')), std::string(4000, 'x'));
  EXPECT_EQ(Stored("VARCHAR2(4000)", std::string(4001, 'x')), "ORA-12899");
  EXPECT_EQ(Exec(client, "CREATE TABLE T_LIMIT2 (C VARCHAR2(4001))"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 910);
}

TEST_P(TypeLimits, LengthsCountCharactersOfAnyWidth) {
  const std::string two = "\u00e9", three = "\u20ac", four = "\U0001F600";
  EXPECT_EQ(Stored("VARCHAR2(3)", two + three + four), two + three + four);
  EXPECT_EQ(Stored("VARCHAR2(3 BYTE)", two + three + four), two + three + four)
      << "Oracle counts nine bytes and refuses";
  EXPECT_EQ(Stored("VARCHAR2(3)", two + three + four + "x"), "ORA-12899");
}

TEST_P(TypeLimits, BytesThatAreNoUtf8AreRefused) {
  EXPECT_EQ(Stored("VARCHAR2(9)", "ab\xff"), "ORA-12703");
  EXPECT_EQ(Stored("VARCHAR2(9)", "ab\xe2\x82"), "ORA-12703");
}

TEST_P(TypeLimits, AZeroByteInsideATextIsKept) {
  Stored("VARCHAR2(5)", std::string("a\0b", 3));
  EXPECT_EQ(Value(client, "SELECT LENGTH(C) FROM T_LIMIT"), "3");
}

TEST_P(TypeLimits, CharIsPaddedToItsLengthInCharacters) {
  EXPECT_EQ(Stored("CHAR(4)", "ab"), "ab  ");
  EXPECT_EQ(Stored("CHAR(4)", "\u00e9"), "\u00e9   ");
  EXPECT_EQ(Stored("CHAR(300)", "ab"), "ab" + std::string(298, ' '));
  EXPECT_EQ(Stored("CHAR(2000)", std::string(2000, 'x')), std::string(2000, 'x'));
  EXPECT_EQ(Stored("CHAR(4)", "abcde"), "ORA-12899");
}

TEST_P(TypeLimits, CharComparesWithoutItsPaddingAndVarchar2WithIt) {
  Table("T_LIMIT", "A CHAR(4), B VARCHAR2(4)");
  MustExec(client, "INSERT INTO T_LIMIT VALUES ('ab', 'ab')");
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIMIT WHERE A = 'ab'"), "1");
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIMIT WHERE B = 'ab  '"), "0");
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIMIT WHERE B = 'AB'"), "0");
}

TEST_P(TypeLimits, AnEmptyTextIsNullWhereverItComesFrom) {
  Table("T_LIMIT", "A VARCHAR2(4), B CHAR(4), C CLOB");
  MustExec(client, "INSERT INTO T_LIMIT VALUES ('', '', '')");
  EXPECT_EQ(Rows(client, "SELECT A, B, C FROM T_LIMIT")[0],
            (std::vector<std::string>{"(null)", "(null)", "(null)"}));
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIMIT WHERE A IS NULL"), "1");
  EXPECT_EQ(Value(client, "SELECT 'a' || '' || NULL || 'b' FROM DUAL"), "ab");
  EXPECT_EQ(Value(client, "SELECT SUBSTR('abc', 9) FROM DUAL"), "(null)");
}

TEST_P(TypeLimits, DatesFromTheYear1To9999) {
  for (const char* date : {"0001-01-01 00:00:00", "1582-10-15 00:00:00", "1950-06-15 12:00:00",
                           "2000-02-29 23:59:59", "2500-12-31 23:59:59", "9999-12-31 23:59:59"})
    EXPECT_EQ(Stored("DATE", date), date);
  EXPECT_EQ(Stored("DATE", "1900-02-29 00:00:00"), "ORA-1839");
  EXPECT_EQ(Stored("DATE", "0000-00-00 00:00:00"), "ORA-1843");
  EXPECT_EQ(Stored("DATE", "2001-02-00 00:00:00"), "ORA-1847");
}

TEST_P(TypeLimits, TheYear0IsRefusedWithAMaskAndKeptWithout) {
  EXPECT_EQ(Stored("DATE", "0000-01-01 00:00:00"), "0000-01-01 00:00:00") << "Oracle: ORA-01841";
  Statement insert(client, "INSERT INTO T_LIMIT VALUES (TO_DATE(:1, 'YYYY-MM-DD'))");
  char text[] = "0000-01-01";
  insert.Bind(1, text, sizeof text, SQLT_STR);
  EXPECT_EQ(insert.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1841);
}

TEST_P(TypeLimits, MaskedDatesFromTheYear1To9999) {
  Table("T_LIMIT", "C DATE");
  Statement insert(client, "INSERT INTO T_LIMIT VALUES (TO_DATE(:1, 'YYYY/MM/DD HH24:MI:SS'))");
  char text[20];
  insert.Bind(1, text, sizeof text, SQLT_STR);
  for (const char* date :
       {"0001/01/01 00:00:00", "1950/01/01 00:00:00", "2500/12/31 23:59:59", "9999/12/31 23:59:59"}) {
    std::strcpy(text, date);
    EXPECT_EQ(insert.Execute(), OCI_SUCCESS) << date << client.LastReport().text;
  }
  EXPECT_EQ(Value(client, "SELECT MIN(C) FROM T_LIMIT"), "0001-01-01 00:00:00");
  EXPECT_EQ(Value(client, "SELECT MAX(C) FROM T_LIMIT"), "9999-12-31 23:59:59");
}

TEST_P(TypeLimits, DatesCountInDays) {
  const std::string date = "TO_DATE('2000-02-28', 'YYYY-MM-DD')";
  EXPECT_EQ(Value(client, "SELECT " + date + " + 2 FROM DUAL"), "2000-03-01 00:00:00");
  EXPECT_EQ(Value(client, "SELECT " + date + " - 59 FROM DUAL"), "1999-12-31 00:00:00");
  EXPECT_EQ(Value(client, "SELECT TO_CHAR(" + date + ", 'YYYY/MM/DD HH24:MI:SS') FROM DUAL"),
            "2000/02/28 00:00:00");
}

TEST_P(TypeLimits, TimestampsKeepSixDigitsOfASecond) {
  EXPECT_EQ(Stored("TIMESTAMP", "2001-02-03 04:05:06.123456"), "2001-02-03 04:05:06.123456");
  EXPECT_EQ(Stored("TIMESTAMP(3)", "2001-02-03 04:05:06.123"), "2001-02-03 04:05:06.123");
  EXPECT_EQ(Stored("TIMESTAMP(9)", "2001-02-03 04:05:06.123456789"), "2001-02-03 04:05:06.123456");
  EXPECT_EQ(Stored("TIMESTAMP(0)", "2001-02-03 04:05:06"), "2001-02-03 04:05:06");
}

TEST_P(TypeLimits, NumbersOf38DigitsAreExact) {
  const std::string nines(38, '9');
  EXPECT_EQ(Stored("NUMBER(38)", nines), nines);
  EXPECT_EQ(Stored("NUMBER(38)", "-" + nines), "-" + nines);
  EXPECT_EQ(Stored("INTEGER", nines), nines);
  EXPECT_EQ(Stored("NUMBER(38,10)", nines.substr(0, 28) + "." + nines.substr(0, 10)),
            nines.substr(0, 28) + "." + nines.substr(0, 10));
  EXPECT_EQ(Stored("NUMBER(38)", "1" + std::string(38, '0')), "ORA-1438");
  EXPECT_EQ(Stored("NUMBER(38,38)", "." + nines), "." + nines);
}

TEST_P(TypeLimits, NumberWithoutPrecisionKeeps15Digits) {
  EXPECT_EQ(Stored("NUMBER", "123456789012345"), "123456789012345");
  EXPECT_EQ(Stored("NUMBER", "12345678901234567890"), "12345678901234567168") << "Oracle keeps all";
  EXPECT_EQ(Stored("NUMBER", 1e125), "1.0E+125");
  EXPECT_EQ(Stored("NUMBER", "1E308"), "1.0E+308") << "Oracle ends below 1E126";
  EXPECT_EQ(Stored("NUMBER", "1E309"), "ORA-1438");
}

TEST_P(TypeLimits, DigitsBehindTheScaleAreRounded) {
  EXPECT_EQ(Stored("NUMBER(5,2)", "123.454"), "123.45");
  EXPECT_EQ(Stored("NUMBER(5,2)", "123.455"), "123.46");
  EXPECT_EQ(Stored("NUMBER(5,2)", "-123.455"), "-123.46");
  EXPECT_EQ(Stored("NUMBER(5,2)", "999.995"), "ORA-1438");
}

TEST_P(TypeLimits, ANegativeScaleBoundsButDoesNotRound) {
  EXPECT_EQ(Stored("NUMBER(3,-2)", "12345"), "12345") << "Oracle stores 12300";
  EXPECT_EQ(Stored("NUMBER(3,-2)", "99999"), "99999") << "Oracle refuses: it would be 100000";
  EXPECT_EQ(Stored("NUMBER(3,-2)", "100000"), "ORA-1438");
}

TEST_P(TypeLimits, AScaleAboveThePrecisionBoundsTheScaleOnly) {
  EXPECT_EQ(Stored("NUMBER(2,4)", "0.0012"), ".0012");
  EXPECT_EQ(Stored("NUMBER(2,4)", "0.1234"), ".1234") << "Oracle refuses";
  EXPECT_EQ(Stored("NUMBER(2,4)", "1"), "ORA-1438");
}

TEST_P(TypeLimits, BinaryNumbersAreTheServers) {
  EXPECT_EQ(Stored("BINARY_DOUBLE", "0.1"), ".1");
  EXPECT_EQ(Stored("BINARY_FLOAT", "0.5"), ".5");
  EXPECT_EQ(Stored("BINARY_FLOAT", "1E39"), "ORA-1438");
}

TEST_P(TypeLimits, ARawTakesItsBytesAndNoMore) {
  char bytes[] = {0, '\xff', '\x80', 'x'};
  EXPECT_EQ(Stored("RAW(3)", bytes, 4, SQLT_BIN), "ORA-12899");
  Stored("RAW(3)", bytes, 3, SQLT_BIN);
  EXPECT_EQ(Value(client, "SELECT LENGTH(C) FROM T_LIMIT"), "3");
}

TEST_P(TypeLimits, NumbersThatAreNoneAreRefused) {
  EXPECT_EQ(Stored("BINARY_DOUBLE", std::numeric_limits<double>::quiet_NaN()), "ORA-1426");
  EXPECT_EQ(Stored("BINARY_DOUBLE", -std::numeric_limits<double>::infinity()), "ORA-1426");
}

TEST_P(TypeLimits, ACharJoinedToAVarchar2IsRefused) {
  Table("T_LIMIT", "A CHAR(4), B VARCHAR2(4)");
  EXPECT_EQ(Exec(client, "SELECT A || B FROM T_LIMIT"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 12704);
}

TEST_P(TypeLimits, AQuotedNameFindsItsColumnInAnyCase) {
  EXPECT_EQ(Exec(client, "CREATE TABLE T_LIMIT2 (ID NUMBER, \"id\" NUMBER)"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 957);
  Stored("NUMBER", "7");
  EXPECT_EQ(Value(client, "SELECT \"c\" FROM T_LIMIT"), "7");
}

// The server's strict mode does not count blanks: it tells of a VARCHAR by a note and of a CHAR not at all.
TEST_P(TypeLimits, ATextThatIsTooLongByBlanksAloneLosesThem) {
  for (const char* type : {"VARCHAR2(3)", "CHAR(3)"}) {
    EXPECT_EQ(Stored(type, "xx  "), "xx ") << "Oracle: ORA-12899";
    EXPECT_EQ(Stored(type, "xx  y"), "ORA-12899");
  }
}

}  // namespace
}  // namespace oci_test

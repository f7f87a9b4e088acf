// SPDX-License-Identifier: Apache-2.0
// Dates, numbers and natural types: the pure parts of the library.
#include <gtest/gtest.h>

#include "oci/mariadb/Dates.h"
#include "oci/mariadb/NaturalType.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/OracleNumber.h"
#include "oci/mariadb/OutputValue.h"
#include "oci/mariadb/ParseErrorOffset.h"

namespace ocimaria {
namespace {

template <class Call>
int CodeOf(Call&& call) {
  try {
    call();
    return 0;
  } catch (const OraError& error) {
    return error.Code();
  }
}

TEST(DateText, IsReadWithAndWithoutTimeAndFraction) {
  EXPECT_EQ(ToDateText(FromDateText("2001-02-03"), 0), "2001-02-03 00:00:00");
  EXPECT_EQ(ToDateText(FromDateText("2001-02-03 04:05:06"), 0), "2001-02-03 04:05:06");
  EXPECT_EQ(ToDateText(FromDateText("2001-02-03 04:05:06.7"), 6), "2001-02-03 04:05:06.700000");
  EXPECT_EQ(ToDateText(FromDateText("2001-02-03 04:05:06.123456"), 2), "2001-02-03 04:05:06.12");
}

TEST(DateText, ThatIsNoDateIsRefusedByItsNumber) {
  EXPECT_EQ(CodeOf([] { FromDateText("0000-01-01"); }), 1841);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-00-01"); }), 1843);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-01-32"); }), 1847);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-02-29"); }), 1839);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-01-01 24:00:00"); }), 1850);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-01-01 00:60:00"); }), 1851);
  EXPECT_EQ(CodeOf([] { FromDateText("2001-01-01 00:00:60"); }), 1852);
  for (const char* text : {"", "x", "2001", "2001/01/01", "2001-01-01T00:00:00", "2001-01-01 00:00:00.",
                           "2001-01-01 00:00:00.1234567", "2001-01-01 00:00", "2001-01-01x"})
    EXPECT_EQ(CodeOf([&] { FromDateText(text); }), 1861) << text;
}

TEST(DateTime, KeepsEveryPartOfWhatAMaskRead) {
  const sql::DateTime read = sql::DateMask("YYYY/MM/DD HH24:MI:SS.FF").Read("2001/02/03 14:05:06.789");
  EXPECT_EQ(ToDateText(FromDateTime(read), 6), "2001-02-03 14:05:06.789000");
}

TEST(OracleDate, RoundTripsThroughItsSevenBytes) {
  for (const char* text :
       {"0001-01-01 00:00:00", "1950-06-15 12:30:45", "2000-02-29 23:59:59", "9999-12-31 01:02:03"}) {
    ub1 bytes[kOracleDateBytes];
    ToOracleDate(FromDateText(text), bytes);
    EXPECT_EQ(ToDateText(FromOracleDate(bytes), 0), text);
  }
}

TEST(OracleNumber, HasItsKnownBytes) {
  EXPECT_EQ(TextToOracleNumber("0"), "\x80");
  EXPECT_EQ(TextToOracleNumber("1"), "\xC1\x02");
  EXPECT_EQ(TextToOracleNumber("-1"), "\x3E\x64\x66");
  EXPECT_EQ(TextToOracleNumber("100"), "\xC2\x02");
  EXPECT_EQ(TextToOracleNumber("0.01"), "\xC0\x02");
  EXPECT_EQ(TextToOracleNumber("123.45"), "\xC2\x02\x18\x2E");
}

TEST(OracleNumber, RoundTrips) {
  for (const char* text :
       {"0", "1", "-1", "12", "123", "-123.6", ".5", "-.05", "1000000", "99999999999999999999",
        "1234567890123456789012345678901234567890", "-98765.4321", ".000001"}) {
    const std::string bytes = TextToOracleNumber(text);
    EXPECT_EQ(OracleNumberToText(reinterpret_cast<const ub1*>(bytes.data()), bytes.size()), text);
  }
}

TEST(OracleNumber, RoundsWhatItCannotHoldAndRefusesWhatIsTooLarge) {
  const std::string nines = TextToOracleNumber(std::string(45, '9'));
  EXPECT_EQ(OracleNumberToText(reinterpret_cast<const ub1*>(nines.data()), nines.size()),
            "1" + std::string(45, '0'));
  EXPECT_EQ(CodeOf([] { TextToOracleNumber("1E126"); }), 1426);
  EXPECT_EQ(CodeOf([] { TextToOracleNumber("x"); }), 1722);
  EXPECT_EQ(CodeOf([] { OracleNumberToText(nullptr, 0); }), 1722);
}

TEST(NumberText, LeavesOutWhatSaysNothing) {
  EXPECT_EQ(NumberText("0.50"), ".5");
  EXPECT_EQ(NumberText("-0.50"), "-.5");
  EXPECT_EQ(NumberText("00100.00"), "100");
  EXPECT_EQ(NumberText("  7 "), "7");
  EXPECT_EQ(NumberText("-0"), "0");
  EXPECT_EQ(NumberText("1e3"), "1000");
  EXPECT_EQ(NumberText("1.5E+60"), "1.5E+60");
  EXPECT_EQ(NumberText("1e-50"), "1.0E-50");
  for (const char* text : {"", " ", "-", ".", "1x", "1e", "1.2.3", "abc"})
    EXPECT_EQ(CodeOf([&] { NumberText(text); }), 1722) << text;
}

MYSQL_FIELD Field(enum_field_types type, unsigned long length, unsigned decimals, bool of_table = true) {
  static char table[] = "t";
  MYSQL_FIELD field{};
  field.type = type;
  field.length = length;
  field.decimals = decimals;
  field.charsetnr = 45;
  field.org_table = table;
  field.org_table_length = of_table ? 1 : 0;
  return field;
}

TEST(NaturalType, OfNumbers) {
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_LONG, 11, 0)).precision, 10);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_LONG, 11, 0)).scale, 0);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_LONGLONG, 21, 0, false)).scale, -127);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_DOUBLE, 22, 31)).scale, -127);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_NEWDECIMAL, 9, 2)).precision, 7);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_NEWDECIMAL, 9, 2)).scale, 2);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_NEWDECIMAL, 6, 0)).precision, 5);
}

TEST(NaturalType, OfTextAndBytes) {
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_VAR_STRING, 80, 0)).data_type, SQLT_CHR);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_VAR_STRING, 80, 0)).data_size, 80);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_VAR_STRING, 80, 0)).char_size, 20);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_STRING, 40, 0)).data_type, SQLT_AFC);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_BLOB, 4294967295UL, 0)).data_type, SQLT_CLOB);
  MYSQL_FIELD binary = Field(MYSQL_TYPE_VAR_STRING, 16, 0);
  binary.charsetnr = 63;
  EXPECT_EQ(NaturalType(binary).data_type, SQLT_BIN);
  EXPECT_EQ(NaturalType(binary).data_size, 16);
  binary.type = MYSQL_TYPE_BLOB;
  EXPECT_EQ(NaturalType(binary).data_type, SQLT_BLOB);
}

TEST(NaturalType, OfDates) {
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_DATETIME, 19, 0)).data_type, SQLT_DAT);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_DATETIME, 26, 6)).data_type, SQLT_TIMESTAMP);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_DATETIME, 26, 6)).scale, 6);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_TIMESTAMP, 19, 0)).data_type, SQLT_TIMESTAMP);
  EXPECT_EQ(NaturalType(Field(MYSQL_TYPE_DATE, 10, 0)).data_type, SQLT_DAT);
}

TEST(ParseErrorOffset, IsWhereTheServersTextBegins) {
  const auto offset = [](const char* statement, unsigned number, const char* text) {
    return ParseErrorOffset(statement, ServerFailure(number, text));
  };
  EXPECT_EQ(offset("SELECT * FORM T", 1064, "You have an error … to use near 'FORM T' at line 1"), 9);
  EXPECT_EQ(offset("SELECT * FORM T WHERE A = :X", 1064, "… near 'FORM T WHERE A = ?' at line 1"), 9);
  EXPECT_EQ(offset("SELECT Nope FROM T", 1054, "Unknown column 'nope' in 'field list'"), 7);
  EXPECT_EQ(offset("SELECT * FROM T", 1146, "Table 's.t' doesn't exist"), 14);
  EXPECT_EQ(offset("SELECT 1", 1062, "Duplicate entry"), 0);
}

}  // namespace
}  // namespace ocimaria

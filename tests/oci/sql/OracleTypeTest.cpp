// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/OracleType.h"

#include <gtest/gtest.h>

#include "OraErrorOf.h"
#include "oci/mariadb/sql/StorageType.h"

namespace ocimaria::sql {
namespace {

struct Declared {
  std::string_view text, plain, storage;
  int data_type, data_size, precision, scale, char_used, char_size, charset_form, fsprecision, lfprecision;
};

const Declared kDeclared[] = {
    {"NUMBER", "NUMBER", "double", 2, 22, 0, -127, 0, 0, 0, 0, 0},
    {"NUMBER(*)", "NUMBER", "double", 2, 22, 0, -127, 0, 0, 0, 0, 0},
    {"NUMBER(10)", "NUMBER(10)", "decimal(10,0)", 2, 22, 10, 0, 0, 0, 0, 0, 0},
    {"number ( 12 , 4 )", "NUMBER(12,4)", "decimal(12,4)", 2, 22, 12, 4, 0, 0, 0, 0, 0},
    {"NUMBER(7,-2)", "NUMBER(7,-2)", "decimal(9,0)", 2, 22, 7, -2, 0, 0, 0, 0, 0},
    {"NUMBER(38,-84)", "NUMBER(38,-84)", "double", 2, 22, 38, -84, 0, 0, 0, 0, 0},
    {"NUMBER(3,5)", "NUMBER(3,5)", "decimal(5,5)", 2, 22, 3, 5, 0, 0, 0, 0, 0},
    {"NUMBER(3,127)", "NUMBER(3,127)", "double", 2, 22, 3, 127, 0, 0, 0, 0, 0},
    {"NUMBER(*,3)", "NUMBER(*,3)", "decimal(38,3)", 2, 22, 38, 3, 0, 0, 0, 0, 0},
    {"INTEGER", "NUMBER(*,0)", "decimal(38,0)", 2, 22, 38, 0, 0, 0, 0, 0, 0},
    {"INT", "NUMBER(*,0)", "decimal(38,0)", 2, 22, 38, 0, 0, 0, 0, 0, 0},
    {"SMALLINT", "NUMBER(*,0)", "decimal(38,0)", 2, 22, 38, 0, 0, 0, 0, 0, 0},
    {"DECIMAL", "NUMBER(*,0)", "decimal(38,0)", 2, 22, 38, 0, 0, 0, 0, 0, 0},
    {"DECIMAL(8)", "NUMBER(8)", "decimal(8,0)", 2, 22, 8, 0, 0, 0, 0, 0, 0},
    {"NUMERIC(8,2)", "NUMBER(8,2)", "decimal(8,2)", 2, 22, 8, 2, 0, 0, 0, 0, 0},
    {"DEC(8,2)", "NUMBER(8,2)", "decimal(8,2)", 2, 22, 8, 2, 0, 0, 0, 0, 0},
    {"FLOAT", "FLOAT(126)", "double", 2, 22, 126, -127, 0, 0, 0, 0, 0},
    {"FLOAT(20)", "FLOAT(20)", "double", 2, 22, 20, -127, 0, 0, 0, 0, 0},
    {"REAL", "FLOAT(63)", "double", 2, 22, 63, -127, 0, 0, 0, 0, 0},
    {"DOUBLE PRECISION", "FLOAT(126)", "double", 2, 22, 126, -127, 0, 0, 0, 0, 0},
    {"BINARY_FLOAT", "BINARY_FLOAT", "float", 100, 4, 0, 0, 0, 0, 0, 0, 0},
    {"BINARY_DOUBLE", "BINARY_DOUBLE", "double", 101, 8, 0, 0, 0, 0, 0, 0, 0},
    {"VARCHAR2(20)", "VARCHAR2(20)", "varchar(20)", 1, 20, 0, 0, 0, 20, 1, 0, 0},
    {"VARCHAR2(20 BYTE)", "VARCHAR2(20)", "varchar(20)", 1, 20, 0, 0, 0, 20, 1, 0, 0},
    {"varchar2(20 char)", "VARCHAR2(20 CHAR)", "varchar(20)", 1, 80, 0, 0, 1, 20, 1, 0, 0},
    {"VARCHAR(4000)", "VARCHAR2(4000)", "varchar(4000)", 1, 4000, 0, 0, 0, 4000, 1, 0, 0},
    {"CHARACTER VARYING(9)", "VARCHAR2(9)", "varchar(9)", 1, 9, 0, 0, 0, 9, 1, 0, 0},
    {"NVARCHAR2(20)", "NVARCHAR2(20)", "varchar(20)", 1, 80, 0, 0, 1, 20, 2, 0, 0},
    {"CHAR", "CHAR(1)", "char(1) COLLATE utf8mb4_bin", 96, 1, 0, 0, 0, 1, 1, 0, 0},
    {"CHAR(255)", "CHAR(255)", "char(255) COLLATE utf8mb4_bin", 96, 255, 0, 0, 0, 255, 1, 0, 0},
    {"CHAR(2000)", "CHAR(2000)", "varchar(2000) COLLATE utf8mb4_bin", 96, 2000, 0, 0, 0, 2000, 1, 0, 0},
    {"CHARACTER(5 CHAR)", "CHAR(5 CHAR)", "char(5) COLLATE utf8mb4_bin", 96, 20, 0, 0, 1, 5, 1, 0, 0},
    {"NCHAR(5)", "NCHAR(5)", "char(5) COLLATE utf8mb4_bin", 96, 20, 0, 0, 1, 5, 2, 0, 0},
    {"NATIONAL CHAR(5)", "NCHAR(5)", "char(5) COLLATE utf8mb4_bin", 96, 20, 0, 0, 1, 5, 2, 0, 0},
    {"DATE", "DATE", "datetime", 12, 7, 0, 0, 0, 0, 0, 0, 0},
    {"TIMESTAMP", "TIMESTAMP(6)", "datetime(6)", 187, 11, 0, 6, 0, 0, 0, 6, 0},
    {"TIMESTAMP(0)", "TIMESTAMP(0)", "datetime", 187, 11, 0, 0, 0, 0, 0, 0, 0},
    {"TIMESTAMP(9)", "TIMESTAMP(9)", "datetime(6)", 187, 11, 0, 9, 0, 0, 0, 9, 0},
    {"TIMESTAMP(3) WITH TIME ZONE", "TIMESTAMP(3) WITH TIME ZONE", "datetime(3)", 188, 13, 0, 3, 0, 0, 0, 3,
     0},
    {"TIMESTAMP WITH LOCAL TIME ZONE", "TIMESTAMP(6) WITH LOCAL TIME ZONE", "datetime(6)", 232, 11, 0, 6, 0,
     0, 0, 6, 0},
    {"INTERVAL YEAR TO MONTH", "INTERVAL YEAR(2) TO MONTH", "varchar(32)", 189, 5, 2, 0, 0, 0, 0, 0, 2},
    {"INTERVAL DAY TO SECOND", "INTERVAL DAY(2) TO SECOND(6)", "varchar(32)", 190, 11, 2, 6, 0, 0, 0, 6, 2},
    {"INTERVAL DAY(4) TO SECOND(3)", "INTERVAL DAY(4) TO SECOND(3)", "varchar(32)", 190, 11, 4, 3, 0, 0, 0, 3,
     4},
    {"RAW(16)", "RAW(16)", "varbinary(16)", 23, 16, 0, 0, 0, 0, 0, 0, 0},
    {"LONG", "LONG", "longtext", 8, 0, 0, 0, 0, 0, 0, 0, 0},
    {"LONG RAW", "LONG RAW", "longblob", 24, 0, 0, 0, 0, 0, 0, 0, 0},
    {"CLOB", "CLOB", "longtext", 112, 4000, 0, 0, 0, 0, 1, 0, 0},
    {"NCLOB", "NCLOB", "longtext", 112, 4000, 0, 0, 0, 0, 2, 0, 0},
    {"BLOB", "BLOB", "longblob", 113, 4000, 0, 0, 0, 0, 0, 0, 0},
    {"BFILE", "BFILE", "varchar(530)", 114, 530, 0, 0, 0, 0, 0, 0, 0},
    {"ROWID", "ROWID", "varchar(18)", 104, 18, 0, 0, 0, 0, 0, 0, 0},
};

TEST(OracleType, IsDescribedAsDeclared) {
  for (const Declared& declared : kDeclared) {
    SCOPED_TRACE(declared.text);
    const TypeDescription description = Describe(ParseOracleType(declared.text));
    EXPECT_EQ(description.data_type, declared.data_type);
    EXPECT_EQ(description.data_size, declared.data_size);
    EXPECT_EQ(description.precision, declared.precision);
    EXPECT_EQ(description.scale, declared.scale);
    EXPECT_EQ(description.char_used, declared.char_used);
    EXPECT_EQ(description.char_size, declared.char_size);
    EXPECT_EQ(description.charset_form, declared.charset_form);
    EXPECT_EQ(description.fsprecision, declared.fsprecision);
    EXPECT_EQ(description.lfprecision, declared.lfprecision);
  }
}

TEST(OracleType, ChoosesAStorageThatHoldsItsValues) {
  for (const Declared& declared : kDeclared) {
    EXPECT_EQ(StorageType(ParseOracleType(declared.text)), declared.storage) << declared.text;
  }
}

TEST(OracleType, ComesBackFromTheCommentOfItsColumn) {
  for (const Declared& declared : kDeclared) {
    const OracleType type = ParseOracleType(declared.text);
    EXPECT_EQ(ColumnComment(type), "ora:" + std::string(declared.plain));
    EXPECT_EQ(FromColumnComment(ColumnComment(type)), type) << declared.text;
  }
}

TEST(OracleType, TheCommentKeepsANameThatIsNotUpperCase) {
  const OracleType type = ParseOracleType("NUMBER(7,-2)");
  EXPECT_EQ(ColumnComment(type, "PLAIN"), "ora:NUMBER(7,-2)");
  const std::string comment = ColumnComment(type, "Mixed Case");
  EXPECT_EQ(comment, "ora:NUMBER(7,-2) \"Mixed Case\"");
  EXPECT_EQ(FromColumnComment(comment), type);
  EXPECT_EQ(NameInColumnComment(comment), "Mixed Case");
  EXPECT_EQ(NameInColumnComment("ora:NUMBER(7,-2)"), "");
  EXPECT_EQ(NameInColumnComment("the \"best\""), "");
}

TEST(OracleType, FindsNothingInAnotherComment) {
  EXPECT_EQ(FromColumnComment(""), std::nullopt);
  EXPECT_EQ(FromColumnComment("the price"), std::nullopt);
  EXPECT_EQ(FromColumnComment("ora:"), std::nullopt);
  EXPECT_EQ(FromColumnComment("ora:NUMBER(7"), std::nullopt);
  EXPECT_EQ(FromColumnComment("ora:NUMBER and more"), std::nullopt);
  EXPECT_EQ(FromColumnComment("ora:'"), std::nullopt);
}

TEST(OracleType, ScalesTextSizesWithTheClientsCharacterSet) {
  EXPECT_EQ(Describe(ParseOracleType("VARCHAR2(20 CHAR)"), 1).data_size, 20);
  EXPECT_EQ(Describe(ParseOracleType("VARCHAR2(20)"), 3).data_size, 20);
}

int ErrorOf(std::string_view text) {
  return OraErrorOf([&] { ParseOracleType(text); });
}

TEST(OracleType, RefusesWhatIsNoType) {
  for (const std::string_view text : {"FOO", "", "12", "VARCHAR3(2)", "NUMBER NUMBER", "NATIONAL NUMBER"}) {
    EXPECT_EQ(ErrorOf(text), 902) << text;
  }
}

TEST(OracleType, RefusesNumbersOutOfRange) {
  EXPECT_EQ(ErrorOf("NUMBER(0)"), 1727);
  EXPECT_EQ(ErrorOf("NUMBER(39)"), 1727);
  EXPECT_EQ(ErrorOf("NUMBER(-1)"), 1727);
  EXPECT_EQ(ErrorOf("NUMBER(x)"), 1727);
  EXPECT_EQ(ErrorOf("NUMBER(99999999999999999999)"), 1727);
  EXPECT_EQ(ErrorOf("NUMBER(10,-85)"), 1728);
  EXPECT_EQ(ErrorOf("NUMBER(10,128)"), 1728);
  EXPECT_EQ(ErrorOf("FLOAT(127)"), 1727);
  EXPECT_EQ(ErrorOf("VARCHAR2(4001)"), 910);
  EXPECT_EQ(ErrorOf("VARCHAR2(0)"), 1723);
  EXPECT_EQ(ErrorOf("NVARCHAR2(2001)"), 910);
  EXPECT_EQ(ErrorOf("CHAR(2001)"), 910);
  EXPECT_EQ(ErrorOf("NCHAR(1001)"), 910);
  EXPECT_EQ(ErrorOf("RAW(2001)"), 910);
  EXPECT_EQ(ErrorOf("TIMESTAMP(10)"), 30088);
}

TEST(OracleType, RefusesMissingParentheses) {
  EXPECT_EQ(ErrorOf("VARCHAR2"), 906);
  EXPECT_EQ(ErrorOf("RAW"), 906);
  EXPECT_EQ(ErrorOf("NUMBER(10"), 907);
  EXPECT_EQ(ErrorOf("NUMBER(10,2"), 907);
  EXPECT_EQ(ErrorOf("VARCHAR2(10 CHARS)"), 907);
  EXPECT_EQ(ErrorOf("INTERVAL YEAR"), 905);
}

}  // namespace
}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "Column.h"
#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Describing);

struct Declared {
  const char* type;
  int code, size, precision, scale;
};

// Oracle's own values for an implicit describe.
constexpr Declared kDeclared[] = {
    {"NUMBER", SQLT_NUM, 22, 0, -127},
    {"NUMBER(5)", SQLT_NUM, 22, 5, 0},
    {"NUMBER(10,2)", SQLT_NUM, 22, 10, 2},
    {"NUMBER(7,-2)", SQLT_NUM, 22, 7, -2},
    {"NUMBER(2,5)", SQLT_NUM, 22, 2, 5},
    {"NUMBER(*,3)", SQLT_NUM, 22, 38, 3},
    {"INTEGER", SQLT_NUM, 22, 38, 0},
    {"SMALLINT", SQLT_NUM, 22, 38, 0},
    {"DECIMAL(8)", SQLT_NUM, 22, 8, 0},
    {"FLOAT", SQLT_NUM, 22, 126, -127},
    {"FLOAT(60)", SQLT_NUM, 22, 60, -127},
    {"REAL", SQLT_NUM, 22, 63, -127},
    {"DOUBLE PRECISION", SQLT_NUM, 22, 126, -127},
    {"BINARY_FLOAT", SQLT_IBFLOAT, 4, 0, 0},
    {"BINARY_DOUBLE", SQLT_IBDOUBLE, 8, 0, 0},
    {"VARCHAR2(20)", SQLT_CHR, 20, 0, 0},
    {"VARCHAR2(20 BYTE)", SQLT_CHR, 20, 0, 0},
    {"VARCHAR2(20 CHAR)", SQLT_CHR, 80, 0, 0},
    {"VARCHAR2(4000)", SQLT_CHR, 4000, 0, 0},
    {"CHAR(10)", SQLT_AFC, 10, 0, 0},
    {"CHAR(2000)", SQLT_AFC, 2000, 0, 0},
    {"DATE", SQLT_DAT, 7, 0, 0},
    {"TIMESTAMP", SQLT_TIMESTAMP, 11, 0, 6},
    {"TIMESTAMP(3)", SQLT_TIMESTAMP, 11, 0, 3},
    {"TIMESTAMP(0)", SQLT_TIMESTAMP, 11, 0, 0},
    {"TIMESTAMP(6) WITH TIME ZONE", SQLT_TIMESTAMP_TZ, 13, 0, 6},
    {"TIMESTAMP(6) WITH LOCAL TIME ZONE", SQLT_TIMESTAMP_LTZ, 11, 0, 6},
    {"INTERVAL YEAR TO MONTH", SQLT_INTERVAL_YM, 5, 2, 0},
    {"INTERVAL DAY TO SECOND", SQLT_INTERVAL_DS, 11, 2, 6},
    {"RAW(16)", SQLT_BIN, 16, 0, 0},
    {"CLOB", SQLT_CLOB, 4000, 0, 0},
    {"BLOB", SQLT_BLOB, 4000, 0, 0},
};

TEST_P(Describing, EveryDeclaredTypeComesBackAsOracleDescribesIt) {
  for (const Declared& declared : kDeclared) {
    Table("T_TYPE", std::string("C ") + declared.type);
    const Column column = DescribeQuery(client, "SELECT * FROM T_TYPE").at(0);
    EXPECT_EQ(column.type, declared.code) << declared.type;
    EXPECT_EQ(column.size, declared.size) << declared.type;
    EXPECT_EQ(column.precision, declared.precision) << declared.type;
    EXPECT_EQ(column.scale, declared.scale) << declared.type;
  }
}

TEST_P(Describing, TextColumnsTellTheirLengthSemantics) {
  Table("T_TEXT", "A VARCHAR2(20), B VARCHAR2(20 CHAR), C NVARCHAR2(10), D CHAR(5), E NUMBER");
  const auto columns = DescribeQuery(client, "SELECT * FROM T_TEXT");
  EXPECT_EQ(columns[0].char_used, 0);
  EXPECT_EQ(columns[0].char_size, 20);
  EXPECT_EQ(columns[0].form, 1);
  EXPECT_EQ(columns[1].char_used, 1);
  EXPECT_EQ(columns[1].char_size, 20);
  EXPECT_EQ(columns[2].form, 2);
  EXPECT_EQ(columns[2].char_size, 10);
  EXPECT_EQ(columns[3].char_size, 5);
  EXPECT_EQ(columns[4].char_size, 0);
}

TEST_P(Describing, FractionAndLeadingPrecisionsAreTold) {
  Table("T_PREC", "A TIMESTAMP(4), B INTERVAL DAY TO SECOND");
  const auto columns = DescribeQuery(client, "SELECT * FROM T_PREC");
  EXPECT_EQ(columns[0].fsprecision, 4);
  EXPECT_EQ(columns[1].lfprecision, 2);
  EXPECT_EQ(columns[1].fsprecision, 6);
}

TEST_P(Describing, NamesAreUpperCaseAndOrderAndNullabilityAreKept) {
  Table("T_NAMES", "ID NUMBER NOT NULL,Column1 NUMBER NOT NULL,Column2 DATE , PRIMARY KEY(ID)");
  const auto columns = DescribeQuery(client, "SELECT * FROM T_NAMES");
  ASSERT_EQ(columns.size(), 3u);
  EXPECT_EQ(columns[0].name, "ID");
  EXPECT_EQ(columns[1].name, "COLUMN1");
  EXPECT_EQ(columns[2].name, "COLUMN2");
  EXPECT_EQ(columns[0].nullable, 0);
  EXPECT_EQ(columns[1].nullable, 0);
  EXPECT_EQ(columns[2].nullable, 1);
}

TEST_P(Describing, QuotedNamesKeepTheirCase) {
  const auto columns = DescribeQuery(client, "SELECT 1 AS \"Mixed\", 2 AS Folded FROM DUAL");
  EXPECT_EQ(columns[0].name, "Mixed");
  EXPECT_EQ(columns[1].name, "FOLDED");
}

TEST_P(Describing, AColumnDeclaredInQuotesKeepsItsCaseWhereverItIsNamed) {
  Table("T_QUOTED", "\"Mixed Case\" NUMBER(7,-2), \"lower\" VARCHAR2(9), Plain DATE, \"UPPER\" NUMBER");
  const auto names = [&](const std::string& query) {
    std::string joined;
    for (const Column& column : DescribeQuery(client, query)) joined += column.name + "|";
    return joined;
  };
  EXPECT_EQ(names("SELECT * FROM T_QUOTED"), "Mixed Case|lower|PLAIN|UPPER|");
  EXPECT_EQ(names("SELECT Q.*, PLAIN AS OTHER FROM T_QUOTED Q"), "Mixed Case|lower|PLAIN|UPPER|OTHER|");
  EXPECT_EQ(names("SELECT \"lower\", plain, \"Mixed Case\" AS folded FROM T_QUOTED"), "lower|PLAIN|FOLDED|");
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_QUOTED").at(0).scale, -2);
  Drop("TABLE T_QUOTED2");
  MustExec(client, "CREATE TABLE T_QUOTED2 AS SELECT * FROM T_QUOTED");
  EXPECT_EQ(names("SELECT * FROM T_QUOTED2"), "Mixed Case|lower|PLAIN|UPPER|");
  EXPECT_EQ(Rows(client,
                 "SELECT COLUMN_NAME, DATA_TYPE FROM USER_TAB_COLUMNS WHERE TABLE_NAME = 'T_QUOTED' ORDER BY "
                 "COLUMN_ID"),
            (std::vector<std::vector<std::string>>{
                {"Mixed Case", "NUMBER"}, {"lower", "VARCHAR2"}, {"PLAIN", "DATE"}, {"UPPER", "NUMBER"}}));
}

TEST_P(Describing, NamesAreFoundInAnyCaseAndReservedWordsInQuotes) {
  Table("T_WORDS", "\"SELECT\" NUMBER, \"Order\" NUMBER, Level_1 NUMBER, A$B#C NUMBER");
  MustExec(client, "INSERT INTO t_WORDS (\"SELECT\", \"Order\", LEVEL_1, a$b#c) VALUES (1, 2, 3, 4)");
  EXPECT_EQ(Rows(client, "SELECT \"SELECT\", \"Order\", level_1, A$B#C FROM T_words")[0],
            (std::vector<std::string>{"1", "2", "3", "4"}));
  const auto columns = DescribeQuery(client, "SELECT * FROM T_WORDS");
  EXPECT_EQ(columns[0].name, "SELECT");
  EXPECT_EQ(columns[1].name, "Order");
  EXPECT_EQ(columns[2].name, "LEVEL_1");
  EXPECT_EQ(columns[3].name, "A$B#C");
  EXPECT_EQ(Exec(client, "SELECT NO_SUCH FROM T_WORDS"), OCI_ERROR);
  EXPECT_EQ(client.LastReport().text, "ORA-00904: \"NO_SUCH\": invalid identifier\n");
}

TEST_P(Describing, AnAliasKeepsTheTypeOfItsColumn) {
  Table("T_ALIAS", "A NUMBER(7,-2)");
  const Column column = DescribeQuery(client, "SELECT X.A AS B FROM T_ALIAS X").at(0);
  EXPECT_EQ(column.name, "B");
  EXPECT_EQ(column.precision, 7);
  EXPECT_EQ(column.scale, -2);
}

TEST_P(Describing, ATableMadeFromAnotherKeepsItsTypes) {
  Table("T_SOURCE", "ID NUMBER NOT NULL, A NUMBER(7,-2), B VARCHAR2(9)");
  Drop("TABLE T_SOURCE_BAK");
  MustExec(client, "CREATE TABLE T_SOURCE_BAK AS SELECT * FROM T_SOURCE");
  const auto columns = DescribeQuery(client, "SELECT * FROM T_SOURCE_BAK");
  EXPECT_EQ(columns[0].scale, -127);
  EXPECT_EQ(columns[1].scale, -2);
  EXPECT_EQ(columns[2].size, 9);
}

TEST_P(Describing, ExpressionsHaveANaturalType) {
  const auto columns = DescribeQuery(client, "SELECT COUNT(*), 1.5 * 2, 'abc' FROM DUAL");
  EXPECT_EQ(columns[0].type, SQLT_NUM);
  EXPECT_EQ(columns[0].size, 22);
  EXPECT_EQ(columns[0].precision, 0);
  EXPECT_EQ(columns[0].scale, -127);
  EXPECT_EQ(columns[1].type, SQLT_NUM);
  EXPECT_EQ(columns[2].type, SQLT_CHR);
  EXPECT_EQ(columns[2].char_size, 3);
}

TEST_P(Describing, ATableMadeAnewIsDescribedAnew) {
  const auto other = Another();
  Table("T_ANEW", "A NUMBER(9)");
  EXPECT_EQ(DescribeQuery(client, "SELECT * FROM T_ANEW").at(0).precision, 9);
  MustExec(*other, "DROP TABLE T_ANEW");
  MustExec(*other, "CREATE TABLE T_ANEW (A NUMBER(7,-2))");  // stored in the same way
  const Column column = DescribeQuery(client, "SELECT * FROM T_ANEW").at(0);
  EXPECT_EQ(column.precision, 7);
  EXPECT_EQ(column.scale, -2);
}

TEST_P(Describing, LeavesNoLockBehind) {
  Table("T_LOCK", "A NUMBER");
  Statement statement(client, "SELECT * FROM T_LOCK");
  ASSERT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_SUCCESS);
  EXPECT_EQ(Exec(*Another(), "DROP TABLE T_LOCK"), OCI_SUCCESS);
}

TEST_P(Describing, ExecutesNothing) {
  Drop("SEQUENCE S_DESCRIBE");
  MustExec(client, "CREATE SEQUENCE S_DESCRIBE START WITH 5");
  Statement statement(client, "SELECT S_DESCRIBE.NEXTVAL FROM DUAL");
  ASSERT_EQ(statement.Execute(1, OCI_DESCRIBE_ONLY), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT S_DESCRIBE.NEXTVAL FROM DUAL"), "5");
}

TEST_P(Describing, AMissingTableIsTold) {
  Statement statement(client, "SELECT * FROM T_NOT_THERE");
  EXPECT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_ERROR);
  EXPECT_EQ(client.Code(), 942);
}

TEST_P(Describing, WhatIsNoQueryHasNoColumns) {
  Statement statement(client, "DELETE FROM T_NOT_THERE");
  EXPECT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_SUCCESS);
  EXPECT_EQ(statement.Attribute<ub4>(OCI_ATTR_PARAM_COUNT), 0u);
}

TEST_P(Describing, ThereAreNoColumnsBeforeItAndNoneOutsideOfIt) {
  Statement statement(client, "SELECT 1 FROM DUAL");
  void* parameter = nullptr;
  EXPECT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, 1), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24334);
  ASSERT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_SUCCESS);
  EXPECT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, 0), OCI_ERROR);
  EXPECT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, 2), OCI_ERROR);
  EXPECT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, 1), OCI_SUCCESS);
}

TEST_P(Describing, AnExecutedQueryIsDescribedToo) {
  Statement statement(client, "SELECT 1 AS ONE, 2 AS TWO FROM DUAL");
  ASSERT_EQ(statement.Execute(0), OCI_SUCCESS);
  EXPECT_EQ(statement.Attribute<ub4>(OCI_ATTR_PARAM_COUNT), 2u);
}

TEST_P(Describing, AParameterMayBeNamedADescribeHandle) {
  Statement statement(client, "SELECT 1 FROM DUAL");
  ASSERT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_SUCCESS);
  void* parameter = nullptr;
  ASSERT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, 1), OCI_SUCCESS);
  ub2 type = 0;
  EXPECT_EQ(OCIAttrGet(parameter, OCI_HTYPE_DESCRIBE, &type, nullptr, OCI_ATTR_DATA_TYPE, client.error),
            OCI_SUCCESS);
  EXPECT_EQ(type, SQLT_NUM);
}

TEST_P(Describing, ASizeThatIsNoPointerIsNotTouched) {
  Statement statement(client, "SELECT 1 FROM DUAL");
  ub4 count = 7;
  EXPECT_EQ(OCIAttrGet(statement.handle, OCI_HTYPE_STMT, &count, reinterpret_cast<ub4*>(4),
                       OCI_ATTR_ROW_COUNT, client.error),
            OCI_SUCCESS);
  EXPECT_EQ(count, 0u);
}

}  // namespace
}  // namespace oci_test

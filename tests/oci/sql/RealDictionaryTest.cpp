// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "RealServerTest.h"

namespace ocimaria::sql {
namespace {

using testing::Contains;
using testing::ElementsAre;

class RealDictionary : public RealServer {
 protected:
  void SetUp() override {
    Db().Run("CREATE TABLE P (ID NUMBER PRIMARY KEY, N VARCHAR2(30) CONSTRAINT P_U UNIQUE)");
    Db().Run(
        "CREATE TABLE C (B NUMBER, A NUMBER, X VARCHAR2(20 CHAR) CHECK (X > 'a'), PRIMARY KEY (A, B), "
        "CONSTRAINT C_FK FOREIGN KEY (B) REFERENCES P (ID))");
    Db().Run("CREATE INDEX C_I ON C (X)");
    Db().Run("CREATE SEQUENCE S");
  }
  void TearDown() override {
    Db().Run("DROP TABLE C");
    RealServer::TearDown();
  }
};

TEST_F(RealDictionary, ListsTablesAndSequencesByUpperCaseNames) {
  EXPECT_THAT(Db().Run("SELECT TABLE_NAME FROM USER_TABLES ORDER BY TABLE_NAME"),
              ElementsAre(Row{"C"}, Row{"P"}));
  EXPECT_THAT(Db().Run("SELECT TABLE_NAME FROM USER_TABLES WHERE TABLE_NAME LIKE 'P%' AND STATUS = 'VALID'"),
              ElementsAre(Row{"P"}));
  EXPECT_THAT(Db().Run("SELECT TABLE_NAME FROM USER_TABLES WHERE TABLE_NAME = 'p'"), ElementsAre());
  EXPECT_THAT(Db().Run("SELECT SEQUENCE_NAME FROM USER_SEQUENCES"), ElementsAre(Row{"S"}));
  EXPECT_THAT(Db().Run("SELECT OBJECT_NAME, OBJECT_TYPE FROM USER_OBJECTS ORDER BY OBJECT_NAME"),
              ElementsAre(Row{"C", "TABLE"}, Row{"P", "TABLE"}, Row{"S", "SEQUENCE"}));
}

TEST_F(RealDictionary, ListsConstraintsUnderNamesThatAreUnique) {
  EXPECT_THAT(
      Db().Run(
          "SELECT CONSTRAINT_NAME, CONSTRAINT_TYPE, TABLE_NAME, STATUS FROM USER_CONSTRAINTS WHERE OWNER = "
          "USER ORDER BY TABLE_NAME, CONSTRAINT_NAME"),
      ElementsAre(Row{"C_FK", "R", "C", "ENABLED"}, Row{"PK_C", "P", "C", "ENABLED"},
                  Row{"X", "C", "C", "ENABLED"}, Row{"PK_P", "P", "P", "ENABLED"},
                  Row{"P_U", "U", "P", "ENABLED"}));
}

TEST_F(RealDictionary, FindsTheKeyColumnsOfATableInTheirOrder) {
  EXPECT_THAT(
      Db().Run(
          "SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE = 'P' "
          "AND K.TABLE_NAME = 'C' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME ORDER BY C.POSITION"),
      ElementsAre(Row{"A"}, Row{"B"}));
}

TEST_F(RealDictionary, ListsIndexesAndTheirColumns) {
  EXPECT_THAT(
      Db().Run("SELECT INDEX_NAME, UNIQUENESS FROM USER_INDEXES WHERE TABLE_NAME = 'P' ORDER BY INDEX_NAME"),
      ElementsAre(Row{"PK_P", "UNIQUE"}, Row{"P_U", "UNIQUE"}));
  EXPECT_THAT(
      Db().Run("SELECT COLUMN_NAME, COLUMN_POSITION FROM USER_IND_COLUMNS WHERE INDEX_NAME = 'PK_C' ORDER BY "
               "COLUMN_POSITION"),
      ElementsAre(Row{"A", "1"}, Row{"B", "2"}));
}

TEST_F(RealDictionary, ListsOtherSchemasUnderTheirOwner) {
  EXPECT_THAT(Db().Run("SELECT OWNER, TABLE_NAME FROM ALL_TABLES WHERE OWNER = USER"),
              Contains(Row{"LKBENCH", "P"}));
  EXPECT_THAT(Db().Run("SELECT SEQUENCE_OWNER FROM ALL_SEQUENCES"), Contains(Row{"LKBENCH"}));
}

TEST_F(RealDictionary, NamesTheVersion) {
  EXPECT_THAT(Db().Value("SELECT BANNER FROM V$VERSION"), testing::StartsWith("MariaDB "));
}

struct ColumnType {
  std::string declared;
  Row row;  // DATA_TYPE, DATA_LENGTH, DATA_PRECISION, DATA_SCALE, CHAR_LENGTH, CHAR_USED
};

const ColumnType kColumnTypes[] = {
    {"NUMBER", {"NUMBER", "22", "NULL", "NULL", "0", "NULL"}},
    {"NUMBER(10)", {"NUMBER", "22", "10", "0", "0", "NULL"}},
    {"NUMBER(7,-2)", {"NUMBER", "22", "7", "-2", "0", "NULL"}},
    {"INTEGER", {"NUMBER", "22", "NULL", "0", "0", "NULL"}},
    {"FLOAT(20)", {"FLOAT", "22", "20", "NULL", "0", "NULL"}},
    {"BINARY_DOUBLE", {"BINARY_DOUBLE", "8", "NULL", "NULL", "0", "NULL"}},
    {"VARCHAR2(20)", {"VARCHAR2", "20", "NULL", "NULL", "20", "B"}},
    {"VARCHAR2(20 CHAR)", {"VARCHAR2", "80", "NULL", "NULL", "20", "C"}},
    {"NVARCHAR2(20)", {"NVARCHAR2", "80", "NULL", "NULL", "20", "C"}},
    {"CHAR(300)", {"CHAR", "300", "NULL", "NULL", "300", "B"}},
    {"DATE", {"DATE", "7", "NULL", "NULL", "0", "NULL"}},
    {"TIMESTAMP(3)", {"TIMESTAMP(3)", "11", "NULL", "3", "0", "NULL"}},
    {"TIMESTAMP WITH TIME ZONE", {"TIMESTAMP(6) WITH TIME ZONE", "13", "NULL", "6", "0", "NULL"}},
    {"INTERVAL YEAR TO MONTH", {"INTERVAL YEAR(2) TO MONTH", "5", "2", "0", "0", "NULL"}},
    {"INTERVAL DAY(4) TO SECOND(3)", {"INTERVAL DAY(4) TO SECOND(3)", "11", "4", "3", "0", "NULL"}},
    {"RAW(16)", {"RAW", "16", "NULL", "NULL", "0", "NULL"}},
    {"CLOB", {"CLOB", "4000", "NULL", "NULL", "0", "NULL"}},
};

TEST_F(RealDictionary, DescribesColumnsByTheirDeclaredTypes) {
  std::string sql = "CREATE TABLE T (ID NUMBER NOT NULL";
  for (const ColumnType& type : kColumnTypes) sql += ", \"" + type.declared + "\" " + type.declared;
  Db().Run(sql + ")");
  const auto rows = Db().Run(
      "SELECT COLUMN_NAME, NULLABLE, COLUMN_ID, DATA_TYPE, DATA_LENGTH, DATA_PRECISION, DATA_SCALE, "
      "CHAR_LENGTH, "
      "CHAR_USED FROM USER_TAB_COLUMNS WHERE TABLE_NAME = 'T' ORDER BY COLUMN_ID");
  ASSERT_EQ(rows.size(), std::size(kColumnTypes) + 1);
  EXPECT_THAT(rows[0], ElementsAre("ID", "N", "1", "NUMBER", "22", "NULL", "NULL", "0", "NULL"));
  for (std::size_t i = 0; i < std::size(kColumnTypes); ++i) {
    const Row& row = rows[i + 1];
    EXPECT_EQ(row[1], "Y");
    EXPECT_EQ(Row(row.begin() + 3, row.end()), kColumnTypes[i].row) << kColumnTypes[i].declared;
  }
}

TEST_F(RealDictionary, DescribesForeignColumnsByWhatTheyComeClosestTo) {
  Db().RunAsItIs(
      "CREATE TABLE F (A DECIMAL(9,2), B BIGINT, C DATETIME, D DATETIME(3), E VARCHAR(7), F LONGTEXT, G "
      "VARBINARY(4))");
  EXPECT_THAT(
      Db().Run("SELECT DATA_TYPE, DATA_PRECISION, DATA_SCALE, DATA_LENGTH FROM USER_TAB_COLUMNS WHERE "
               "TABLE_NAME = 'F' ORDER BY COLUMN_ID"),
      ElementsAre(Row{"NUMBER", "9", "2", "22"}, Row{"NUMBER", "19", "0", "22"},
                  Row{"DATE", "NULL", "NULL", "7"}, Row{"TIMESTAMP(3)", "NULL", "3", "11"},
                  Row{"VARCHAR2", "NULL", "NULL", "7"}, Row{"CLOB", "NULL", "NULL", "4000"},
                  Row{"RAW", "NULL", "NULL", "4"}));
}

}  // namespace
}  // namespace ocimaria::sql

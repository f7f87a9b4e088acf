// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "OraErrorOf.h"
#include "oci/mariadb/sql/Rewrite.h"

namespace ocimaria::sql {
namespace {

// Runs of blanks as one, none at the end: what is left out leaves its blanks behind.
std::string Text(std::string_view sql) {
  std::string squeezed;
  for (const char c : Rewrite(sql).text) {
    if (c != ' ' || !squeezed.ends_with(' ')) squeezed += c;
  }
  if (squeezed.ends_with(' ')) squeezed.pop_back();
  return squeezed;
}

int ErrorOf(std::string_view sql) {
  return OraErrorOf([&] { Rewrite(sql); });
}

TEST(CreateTable, ReplacesTypesAndKeepsThemAsComments) {
  EXPECT_EQ(
      Text("CREATE TABLE T (ID NUMBER NOT NULL,A NUMBER(7,-2) ,B VARCHAR2(20 CHAR) DEFAULT 'x', PRIMARY "
           "KEY(ID))"),
      "CREATE TABLE T (ID double COMMENT 'ora:NUMBER' NOT NULL,A decimal(9,0) COMMENT 'ora:NUMBER(7,-2)' ,"
      "B varchar(20) COMMENT 'ora:VARCHAR2(20 CHAR)' DEFAULT 'x', PRIMARY KEY(ID))");
}

TEST(CreateTable, ReplacesTypesOfSeveralWords) {
  EXPECT_EQ(Text("create table t (a TIMESTAMP (3) WITH TIME ZONE, b double precision null, c long raw)"),
            "create table t (a datetime(3) COMMENT 'ora:TIMESTAMP(3) WITH TIME ZONE', b double COMMENT "
            "'ora:FLOAT(126)' null, c longblob COMMENT 'ora:LONG RAW')");
}

TEST(CreateTable, LeavesStorageOptionsOut) {
  EXPECT_EQ(
      Text("CREATE TABLE T (A DATE) TABLESPACE USERS PCTFREE 10 STORAGE (INITIAL 64K) NOLOGGING PARALLEL 4"),
      "CREATE TABLE T (A datetime COMMENT 'ora:DATE')");
  EXPECT_EQ(Text("CREATE TABLE U NOLOGGING AS SELECT * FROM T"), "CREATE TABLE U AS SELECT * FROM T");
}

TEST(CreateTable, RefusesOptionsThatAreNone) {
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE) ENGINE=MyISAM"), 922);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE) TABLESPACE"), 922);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE) STORAGE 5"), 906);
}

TEST(CreateTable, RefusesMalformedDefinitions) {
  EXPECT_EQ(ErrorOf("CREATE TABLE"), 903);
  EXPECT_EQ(ErrorOf("CREATE TABLE (A DATE)"), 903);
  EXPECT_EQ(ErrorOf("CREATE TABLE T ()"), 904);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE,)"), 904);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A)"), 2263);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A FOO)"), 902);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER(39))"), 1727);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A VARCHAR2)"), 906);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE"), 907);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE CONSTRAINT x DEFAULT 5)"), 922);
}

TEST(CreateTable, LeavesStatesOutThatHoldAnyhow) {
  EXPECT_EQ(Text("CREATE TABLE T (A NUMBER NOT NULL ENABLE, CONSTRAINT P PRIMARY KEY (A) USING INDEX PCTFREE "
                 "5 ENABLE "
                 "VALIDATE)"),
            "CREATE TABLE T (A double COMMENT 'ora:NUMBER' NOT NULL , CONSTRAINT P PRIMARY KEY (A) )");
  EXPECT_EQ(Text("CREATE TABLE T (A NUMBER UNIQUE NOT DEFERRABLE INITIALLY IMMEDIATE)"),
            "CREATE TABLE T (A double COMMENT 'ora:NUMBER' UNIQUE )");
}

TEST(CreateTable, RefusesConstraintsThatDoNotHoldAtOnce) {
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER NOT NULL DISABLE)"), 3001);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER, PRIMARY KEY (A) DEFERRABLE)"), 3001);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER UNIQUE INITIALLY DEFERRED)"), 3001);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER, PRIMARY KEY (A) USING INDEX DISABLE)"), 3001);
}

TEST(CreateTable, MovesNamedConstraintsOfAColumnBehindTheColumns) {
  EXPECT_EQ(
      Text("CREATE TABLE T (A NUMBER CONSTRAINT NN NOT NULL, B NUMBER CONSTRAINT U UNIQUE)"),
      "CREATE TABLE T (A double COMMENT 'ora:NUMBER' NOT NULL, B double COMMENT 'ora:NUMBER' , CONSTRAINT U "
      "UNIQUE (B))");
  EXPECT_EQ(
      Text("CREATE TABLE T (A NUMBER CONSTRAINT C CHECK (A > 1), B NUMBER CONSTRAINT F REFERENCES P (ID) ON "
           "DELETE CASCADE)"),
      "CREATE TABLE T (A double COMMENT 'ora:NUMBER' , B double COMMENT 'ora:NUMBER' , CONSTRAINT C CHECK (A "
      "> "
      "1), CONSTRAINT F FOREIGN KEY (B) REFERENCES P (ID) ON DELETE CASCADE)");
  EXPECT_EQ(Text("CREATE TABLE T (A NUMBER CONSTRAINT P PRIMARY KEY)"),
            "CREATE TABLE T (A double COMMENT 'ora:NUMBER' PRIMARY KEY)");
}

TEST(CreateTable, PutsTheCommentOfAGeneratedColumnBehindItsExpression) {
  EXPECT_EQ(
      Text("CREATE TABLE T (A NUMBER, B NUMBER GENERATED ALWAYS AS (A + 1) VIRTUAL)"),
      "CREATE TABLE T (A double COMMENT 'ora:NUMBER', B double GENERATED ALWAYS AS (A + 1) VIRTUAL COMMENT "
      "'ora:NUMBER')");
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER GENERATED ALWAYS AS IDENTITY)"), 3001);
}

std::string WideTable(int texts, const std::string& tail = "") {
  std::string sql = "CREATE TABLE T (ID NUMBER";
  for (int i = 1; i <= texts; ++i) sql += ", C" + std::to_string(i) + " VARCHAR2(4000)";
  return sql + tail + ")";
}

TEST(CreateTable, KeepsTextsInTheRowAsLongAsTheyFit) {
  EXPECT_THAT(Text(WideTable(4)), testing::Not(testing::HasSubstr("text")));
}

TEST(CreateTable, TakesTheTextsOutOfARowThatWouldBeTooLong) {
  const std::string text = Text(WideTable(5));
  EXPECT_THAT(text, testing::HasSubstr("C1 text COMMENT 'ora:VARCHAR2(4000)', C2 varchar(4000) COMMENT"));
  EXPECT_THAT(text, testing::EndsWith(", CONSTRAINT \"ora$len$C1\" CHECK (CHAR_LENGTH(C1) <= 4000))"));
}

TEST(CreateTable, KeepsKeysInTheRow) {
  const std::string text = Text(WideTable(5, ", UNIQUE (C1)"));
  EXPECT_THAT(text, testing::HasSubstr("C1 varchar(4000)"));
  EXPECT_THAT(text, testing::HasSubstr("C2 text"));
}

TEST(CreateTable, KeepsKeysOfAColumnInTheRow) {
  for (const std::string_view key :
       {"UNIQUE", "PRIMARY KEY", "CONSTRAINT U UNIQUE", "CONSTRAINT F REFERENCES P (A)"}) {
    std::string sql = WideTable(4);
    sql.insert(sql.find(", C1"), ", K VARCHAR2(4000) " + std::string(key));
    EXPECT_THAT(Text(sql),
                testing::AllOf(testing::HasSubstr("K varchar(4000)"), testing::HasSubstr("C1 text")))
        << key;
  }
}

TEST(CreateTable, KeepsGeneratedColumnsInTheRow) {
  const std::string text =
      Text("CREATE TABLE T (G VARCHAR2(4000) AS ('x' || ID), " + WideTable(4).substr(16));
  EXPECT_THAT(text, testing::AllOf(testing::HasSubstr("G varchar(4000) AS"), testing::HasSubstr("C1 text")));
}

TEST(CreateTable, LeavesDefaultsAsTheyStand) {
  EXPECT_EQ(Text("CREATE TABLE T (A NUMBER DEFAULT NULL, B NUMBER DEFAULT (1 + 2) CONSTRAINT N NOT NULL)"),
            "CREATE TABLE T (A double COMMENT 'ora:NUMBER' DEFAULT NULL, B double COMMENT 'ora:NUMBER' "
            "DEFAULT (1 + 2) "
            "NOT NULL)");
}

TEST(CreateTable, RefusesMoreThanAThousandColumns) {
  EXPECT_EQ(ErrorOf(WideTable(999)), 0);
  EXPECT_EQ(ErrorOf(WideTable(1000)), 1792);
}

TEST(CreateTable, RefusesWhatTheServerHasNot) {
  EXPECT_EQ(ErrorOf("CREATE GLOBAL TEMPORARY TABLE T (A DATE)"), 3001);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A, B) AS SELECT 1, 2 FROM DUAL"), 3001);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A NUMBER DEFAULT ON NULL 5)"), 3001);
}

TEST(AlterTable, ReplacesTheTypesOfAddedColumns) {
  EXPECT_EQ(Text("ALTER TABLE T ADD (A INTEGER, B DATE NOT NULL)"),
            "ALTER TABLE T ADD (A decimal(38,0) COMMENT 'ora:NUMBER(*,0)', B datetime COMMENT 'ora:DATE' NOT "
            "NULL)");
  EXPECT_EQ(Text("ALTER TABLE T ADD A RAW(8) CONSTRAINT U UNIQUE"),
            "ALTER TABLE T ADD A varbinary(8) COMMENT 'ora:RAW(8)' , ADD CONSTRAINT U UNIQUE (A)");
}

TEST(AlterTable, LeavesConstraintsAndNewNamesAsTheyStand) {
  for (const std::string_view sql : {"ALTER TABLE LK_REP_TABLE1 ADD PRIMARY KEY (\"ID\")",
                                     "ALTER TABLE T ADD CONSTRAINT P PRIMARY KEY (A, B)",
                                     "ALTER TABLE T_BAK RENAME TO T", "ALTER TABLE T RENAME COLUMN A TO B",
                                     "ALTER TABLE T DROP PRIMARY KEY", "ALTER TABLE T DROP COLUMN A"}) {
    EXPECT_EQ(Text(sql), sql);
  }
  EXPECT_EQ(Text("ALTER TABLE T ADD PRIMARY KEY (A) USING INDEX TABLESPACE X"),
            "ALTER TABLE T ADD PRIMARY KEY (A)");
}

TEST(AlterTable, DropsColumnsOfAList) {
  EXPECT_EQ(Text("ALTER TABLE T DROP (A, B)"), "ALTER TABLE T DROP A, DROP B");
  EXPECT_EQ(Text("ALTER TABLE T DROP COLUMN A CASCADE CONSTRAINTS"), "ALTER TABLE T DROP COLUMN A");
}

TEST(AlterTable, DropsThePrimaryKeyByTheNameThatTheViewsGiveIt) {
  EXPECT_EQ(Text("ALTER TABLE s.T DROP CONSTRAINT pk_t"), "ALTER TABLE s.T DROP PRIMARY KEY");
  EXPECT_EQ(Text("ALTER TABLE T DROP CONSTRAINT U CASCADE"), "ALTER TABLE T DROP CONSTRAINT U");
}

TEST(AlterTable, RefusesWhatTheServerHasNot) {
  EXPECT_EQ(ErrorOf("ALTER TABLE T MODIFY (A NOT NULL)"), 3001);
  EXPECT_EQ(ErrorOf("ALTER TABLE T DROP UNIQUE (A)"), 3001);
  EXPECT_EQ(ErrorOf("ALTER TABLE"), 903);
  EXPECT_EQ(ErrorOf("ALTER SESSION SET NLS_DATE_FORMAT = 'YYYY'"), 3001);
}

TEST(Ddl, DropsTablesWithTheirConstraintsAndForGood) {
  EXPECT_EQ(Text("DROP TABLE LK_REP_TABLE1"), "DROP TABLE LK_REP_TABLE1");
  EXPECT_EQ(Text("drop table s.t cascade constraints purge"), "drop table s.t");
}

TEST(Ddl, RenamesTables) { EXPECT_EQ(Text("RENAME A TO B"), "RENAME TABLE A TO B"); }

TEST(Ddl, LeavesBoundsOutThatSixtyFourBitsCannotHold) {
  EXPECT_EQ(Text("CREATE SEQUENCE LK_REP_ID_SEQ START WITH 1001 CACHE 100"),
            "CREATE SEQUENCE LK_REP_ID_SEQ INCREMENT BY 0 START WITH 1001 CACHE 100");
  EXPECT_EQ(Text("CREATE SEQUENCE S MINVALUE 1 MAXVALUE 9999999999999999999999999999 NOORDER CACHE 20"),
            "CREATE SEQUENCE S INCREMENT BY 0 MINVALUE 1 NOMAXVALUE CACHE 20");
  EXPECT_EQ(Text("CREATE SEQUENCE S MINVALUE -9999999999999999999999999999 MAXVALUE 100"),
            "CREATE SEQUENCE S INCREMENT BY 0 NOMINVALUE MAXVALUE 100");
}

TEST(Ddl, LeavesTheIncrementOfASequenceToTheServerWhereTheStatementDoes) {
  EXPECT_EQ(Text("CREATE SEQUENCE S"), "CREATE SEQUENCE S INCREMENT BY 0");
  EXPECT_EQ(Text("create sequence \"A\".s start with 5"),
            "create sequence \"A\".s INCREMENT BY 0 start with 5");
  EXPECT_EQ(Text("CREATE SEQUENCE S START WITH 1 INCREMENT BY 5"),
            "CREATE SEQUENCE S START WITH 1 INCREMENT BY 5");
  EXPECT_EQ(Text("ALTER SEQUENCE S CACHE 10"), "ALTER SEQUENCE S CACHE 10");
}

TEST(Ddl, LeavesTheStorageOfAnIndexOut) {
  EXPECT_EQ(Text("CREATE UNIQUE INDEX I ON S.T (A DESC, B) TABLESPACE X COMPUTE STATISTICS"),
            "CREATE UNIQUE INDEX I ON S.T (A DESC, B)");
  EXPECT_EQ(ErrorOf("CREATE INDEX I ON T (A) FOO"), 922);
  EXPECT_EQ(ErrorOf("CREATE BITMAP INDEX I ON T (A)"), 3001);
  EXPECT_EQ(ErrorOf("DROP INDEX I"), 3001);
  EXPECT_EQ(Text("DROP INDEX I ON T"), "DROP INDEX I ON T");
}

TEST(Ddl, CommentsOnTables) {
  EXPECT_EQ(Text("COMMENT ON TABLE T IS 'what it holds'"), "ALTER TABLE T COMMENT = 'what it holds'");
  EXPECT_EQ(ErrorOf("COMMENT ON COLUMN T.A IS 'x'"), 3001);
}

TEST(Ddl, RefusesStatementsThatTheServerHasNot) {
  EXPECT_EQ(ErrorOf("LOCK TABLE T IN EXCLUSIVE MODE"), 3001);
  EXPECT_EQ(ErrorOf("EXPLAIN PLAN FOR SELECT 1 FROM DUAL"), 3001);
  EXPECT_EQ(ErrorOf("MERGE INTO T USING U ON (T.A = U.A) WHEN MATCHED THEN UPDATE SET B = 1"), 3001);
}

}  // namespace
}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
#include "RealServerTest.h"

#include <gmock/gmock.h>

#include <string>

#include "BenchmarkTexts.h"
#include "oci/mariadb/sql/OracleType.h"

namespace ocimaria::sql {
namespace {

using testing::ElementsAre;

TEST_F(RealServer, RunsEveryTextOfTheBenchmark) {
  const std::vector<std::string> row{"7", "1.25", "1987/03/09 04:05:06", "abc", "2011/12/31 23:59:58", "x"};
  for (const BenchmarkText& text : kBenchmarkTexts) {
    const bool binds = Rewrite(text.oracle).placeholders.size() == row.size();
    EXPECT_NO_THROW(Db().Run(text.oracle, binds ? row : std::vector<std::string>())) << text.oracle;
  }
}

TEST_F(RealServer, LoadsARowWithDatesByTheirMask) {
  Db().Run("CREATE TABLE T (ID NUMBER, D DATE, S TIMESTAMP)");
  Db().Run(
      "INSERT INTO T VALUES (:1, TO_DATE(:2, 'YYYY/MM/DD HH24:MI:SS'), TO_TIMESTAMP(:3, 'YYYY-MM-DD SS.FF'))",
      {"1", "2499/12/31 23:59:58", "1950-01-01 07.25"});
  EXPECT_EQ(Db().Value("SELECT TO_CHAR(D, 'YYYY-MM-DD HH24:MI:SS') FROM T"), "2499-12-31 23:59:58");
  EXPECT_EQ(Db().Value("SELECT S FROM T"), "1950-01-01 00:00:07.250000");
}

TEST_F(RealServer, RecreatesTheSequenceFromItsFirstNumber) {
  Db().Run("CREATE SEQUENCE S START WITH 1001 CACHE 100");
  EXPECT_EQ(Db().Value("SELECT S.NEXTVAL FROM DUAL"), "1001");
  const std::string refresh =
      "DECLARE v_count number; BEGIN SELECT COUNT(*) INTO v_count FROM USER_SEQUENCES WHERE SEQUENCE_NAME = "
      "'S';  IF "
      "v_count > 0 THEN \t\tEXECUTE IMMEDIATE 'DROP SEQUENCE S';  END IF;  EXECUTE IMMEDIATE 'CREATE "
      "SEQUENCE S START "
      "WITH 2001 CACHE 100'; END;";
  Db().Run(refresh);
  EXPECT_EQ(Db().Value("SELECT S.NEXTVAL FROM DUAL"), "2001");
  Db().Run("DROP SEQUENCE S");
  Db().Run(refresh);
  EXPECT_EQ(Db().Value("SELECT S.NEXTVAL FROM DUAL"), "2001");
}

TEST_F(RealServer, DeletesRowsInBatches) {
  Db().Run("CREATE TABLE T (ID NUMBER, PRIMARY KEY(ID))");
  Db().Run("BEGIN FOR i IN 1..10 LOOP INSERT INTO T VALUES (i); END LOOP; END;");
  Db().Run("DELETE FROM T WHERE ID IN (SELECT ID FROM T WHERE ID > 3 AND ROWNUM <=5)");
  EXPECT_EQ(Db().ChangedRows(), 5u);
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE ID <= 3"), "3");
}

TEST_F(RealServer, MakesTheListOfABatchDeleteOnceAndNotOnceARow) {
  const std::string reads =
      "SELECT SUM(VARIABLE_VALUE) FROM information_schema.SESSION_STATUS WHERE VARIABLE_NAME LIKE "
      "'HANDLER_READ%'";
  Db().Run("CREATE TABLE T (ID NUMBER, PRIMARY KEY(ID))");
  Db().Run("BEGIN FOR i IN 1..400 LOOP INSERT INTO T VALUES (i); END LOOP; END;");
  const double before = std::stod(Db().Value(reads));
  Db().Run("DELETE FROM T WHERE ID IN (SELECT ID FROM T WHERE ID > 200 AND ROWNUM <=100)");
  EXPECT_EQ(Db().ChangedRows(), 100u);
  EXPECT_LT(std::stod(Db().Value(reads)) - before, 4000) << "rows read grow with the square of the table";
}

constexpr std::string_view kAllTypes[] = {"NUMBER",
                                          "NUMBER(10)",
                                          "NUMBER(12,4)",
                                          "NUMBER(7,-2)",
                                          "NUMBER(3,5)",
                                          "NUMBER(38,-84)",
                                          "NUMBER(3,127)",
                                          "NUMBER(*,3)",
                                          "INTEGER",
                                          "DECIMAL(8)",
                                          "FLOAT",
                                          "FLOAT(20)",
                                          "REAL",
                                          "DOUBLE PRECISION",
                                          "BINARY_FLOAT",
                                          "BINARY_DOUBLE",
                                          "VARCHAR2(4000)",
                                          "VARCHAR2(20 CHAR)",
                                          "NVARCHAR2(20)",
                                          "CHAR(10)",
                                          "CHAR(2000)",
                                          "NCHAR(5)",
                                          "DATE",
                                          "TIMESTAMP",
                                          "TIMESTAMP(0)",
                                          "TIMESTAMP(9)",
                                          "TIMESTAMP(3) WITH TIME ZONE",
                                          "TIMESTAMP WITH LOCAL TIME ZONE",
                                          "INTERVAL YEAR TO MONTH",
                                          "INTERVAL DAY TO SECOND",
                                          "RAW(16)",
                                          "LONG",
                                          "LONG RAW",
                                          "CLOB",
                                          "NCLOB",
                                          "BLOB",
                                          "BFILE",
                                          "ROWID"};

std::string AllTypesTable() {
  std::string sql = "CREATE TABLE T (ID NUMBER PRIMARY KEY";
  for (std::size_t i = 0; i < std::size(kAllTypes); ++i) {
    sql.append(", C").append(std::to_string(i)).append(" ").append(kAllTypes[i]);
  }
  return sql + ")";
}

std::vector<std::string> CommentsOf(ServerSession& session, const std::string& table) {
  std::vector<std::string> comments;
  for (const Row& row : session.RunAsItIs("SELECT column_comment FROM information_schema.columns WHERE "
                                          "table_schema = DATABASE() AND table_name = '" +
                                          table + "' AND ordinal_position > 1 ORDER BY ordinal_position")) {
    comments.push_back(row[0]);
  }
  return comments;
}

TEST_F(RealServer, KeepsEveryDeclaredTypeWithItsColumn) {
  Db().Run(AllTypesTable());
  const auto comments = CommentsOf(Db(), "t");
  ASSERT_EQ(comments.size(), std::size(kAllTypes));
  for (std::size_t i = 0; i < comments.size(); ++i) {
    EXPECT_EQ(FromColumnComment(comments[i]), ParseOracleType(kAllTypes[i])) << kAllTypes[i];
  }
}

TEST_F(RealServer, CarriesDeclaredTypesOverToACopy) {
  Db().Run(AllTypesTable());
  Db().Run("CREATE TABLE T_BAK NOLOGGING AS SELECT * FROM T WHERE 1=0");
  EXPECT_EQ(CommentsOf(Db(), "t_bak"), CommentsOf(Db(), "t"));
}

TEST_F(RealServer, AddsAndDropsColumns) {
  Db().Run("CREATE TABLE T (ID NUMBER)");
  Db().Run("ALTER TABLE T ADD (A INTEGER CONSTRAINT U UNIQUE, B VARCHAR2(5) DEFAULT 'x' NOT NULL ENABLE)");
  Db().Run("ALTER TABLE T ADD C DATE");
  EXPECT_THAT(CommentsOf(Db(), "t"), ElementsAre("ora:NUMBER(*,0)", "ora:VARCHAR2(5)", "ora:DATE"));
  Db().Run("ALTER TABLE T DROP (B, C)");
  EXPECT_THAT(CommentsOf(Db(), "t"), ElementsAre("ora:NUMBER(*,0)"));
}

TEST_F(RealServer, TakesDefinitionsWithEveryPartThatIsRewritten) {
  Db().Run(
      "CREATE TABLE P (ID NUMBER CONSTRAINT P_PK PRIMARY KEY USING INDEX TABLESPACE X, N VARCHAR2(5) DEFAULT "
      "'a' "
      "CONSTRAINT P_NN NOT NULL ENABLE) TABLESPACE USERS PCTFREE 10");
  Db().Run(
      "CREATE TABLE C (ID NUMBER, P_ID NUMBER CONSTRAINT C_FK REFERENCES P (ID) ON DELETE CASCADE, "
      "Q NUMBER(3) DEFAULT 1 CONSTRAINT C_CK CHECK (Q > 0), D DATE DEFAULT SYSDATE, "
      "V NUMBER GENERATED ALWAYS AS (Q + 1) VIRTUAL, CONSTRAINT C_PK PRIMARY KEY (ID) USING INDEX ENABLE)");
  Db().Run("CREATE UNIQUE INDEX C_I ON C (Q, P_ID) TABLESPACE X");
  Db().Run("COMMENT ON TABLE C IS 'children'");
  EXPECT_EQ(ErrorTextOf("INSERT INTO C (ID, P_ID) VALUES (1, 5)"),
            "ORA-2291: integrity constraint (LKBENCH.C_FK) violated - parent key not found");
  EXPECT_EQ(ErrorTextOf("INSERT INTO C (ID, Q) VALUES (1, 0)"),
            "ORA-2290: check constraint (LKBENCH.C_CK) violated");
  Db().Run("ALTER TABLE C DROP CONSTRAINT PK_C");
  Db().Run("DROP INDEX C_I ON C");
  Db().Run("DROP TABLE C CASCADE CONSTRAINTS PURGE");
  Db().Run("RENAME P TO P2");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM P2"), "0");
}

std::string WideTable(int texts) {
  std::string sql = "CREATE TABLE T (ID NUMBER PRIMARY KEY";
  for (int i = 1; i <= texts; ++i) sql += ", C" + std::to_string(i) + " VARCHAR2(4000)";
  return sql + ")";
}

TEST_F(RealServer, HoldsARowOfManyLongTexts) {
  Db().Run(WideTable(40));
  const std::string longest(4000, 'x');
  Db().Run("INSERT INTO T (ID, C1, C40) VALUES (1, :1, :2)", {longest, longest});
  EXPECT_EQ(Db().Value("SELECT LENGTH(C1) + LENGTH(C40) FROM T"), "8000");
  EXPECT_EQ(OraErrorOf([&] { Db().Run("INSERT INTO T (ID, C1) VALUES (2, :1)", {longest + "x"}); }), 12899);
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM USER_CONSTRAINTS WHERE CONSTRAINT_TYPE = 'C'"), "0");
}

TEST_F(RealServer, ComparesTextsAsOracleDoes) {
  Db().Run("CREATE TABLE T (V VARCHAR2(10), C CHAR(10), L CHAR(300))");
  Db().Run("INSERT INTO T VALUES ('ab', 'ab', 'ab')");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE V = 'ab'"), "1");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE V = 'ab '"), "0");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE V = 'AB'"), "0");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE C = 'ab' AND C = 'ab  ' AND L = 'ab '"), "1");
  EXPECT_EQ(Db().Value("SELECT LENGTH(C) FROM T"), "10");
  Db().Run("INSERT INTO T (V) VALUES ('')");
  EXPECT_EQ(Db().Value("SELECT COUNT(*) FROM T WHERE V IS NULL"), "1");
  Db().Run("UPDATE T SET V = 'a\\b' WHERE V IS NULL");
  EXPECT_EQ(Db().Value("SELECT V FROM T WHERE LENGTH(V) = 3"), "a\\b");
}

TEST_F(RealServer, EvaluatesRewrittenFunctions) {
  EXPECT_EQ(Db().Value("SELECT TO_NUMBER('12.5') + 1 FROM DUAL"), "13.5");
  EXPECT_EQ(Db().Value("SELECT TO_NUMBER(CONCAT('1', '2')) FROM DUAL"), "12");
  EXPECT_EQ(Db().Value("SELECT TRUNC(-1.7) FROM DUAL"), "-1");
  EXPECT_EQ(Db().Value("SELECT TRUNC(TO_DATE('2024-05-06 07:08', 'YYYY-MM-DD HH24:MI'), 'MM') FROM DUAL"),
            "2024-05-01 00:00:00");
  EXPECT_EQ(Db().Value("SELECT TRUNC(TO_DATE('2024-05-06 07:08', 'YYYY-MM-DD HH24:MI'), 'HH24') FROM DUAL"),
            "2024-05-06 07:00:00");
  EXPECT_EQ(
      Db().Value("SELECT COUNT(*) FROM DUAL WHERE TRUNC(SYSDATE) <= SYSDATE AND SYSDATE - 1 < SYSDATE AND "
                 "SYSTIMESTAMP > SYSDATE - 1"),
      "1");
  EXPECT_EQ(Db().Value("SELECT TO_DATE(CONCAT('02-JAN-', '2024'), 'DD-MON-YYYY') FROM DUAL"), "2024-01-02");
  EXPECT_EQ(Db().Value("SELECT CAST(12.345 AS NUMBER(5,1)) FROM DUAL"), "12.3");
  EXPECT_EQ(Db().Value("SELECT CAST('abc' AS VARCHAR2(2)) FROM DUAL"), "ab");
  EXPECT_EQ(Db().Value("SELECT USER FROM DUAL"), "LKBENCH");
  EXPECT_EQ(Db().Value("SELECT * FROM DUAL"), "X");
  EXPECT_EQ(Db().Value("SELECT q'[it's]' FROM DUAL d WHERE 1 ^= 2 --x"), "it's");
}

TEST_F(RealServer, RunsBlocksWithVariablesOfOraclesTypes) {
  Db().Run("CREATE TABLE T (A NUMBER)");
  Db().Run(
      "DECLARE a NVARCHAR2(10) := 'x'; b PLS_INTEGER := 2; c NUMBER(*,0) := 3; BEGIN EXECUTE IMMEDIATE "
      "'INSERT INTO "
      "T VALUES (:1)' USING b; INSERT INTO T VALUES (c); END;");
  EXPECT_EQ(Db().Value("SELECT SUM(A) FROM T"), "5");
}

TEST_F(RealServer, ReportsOraclesErrors) {
  Db().Run("CREATE TABLE T (ID NUMBER(3) NOT NULL, N VARCHAR2(3), D DATE, PRIMARY KEY (ID))");
  Db().Run("INSERT INTO T (ID) VALUES (1)");
  EXPECT_EQ(ErrorTextOf("INSERT INTO T (ID) VALUES (1)"), "ORA-1: unique constraint (LKBENCH.PK_T) violated");
  EXPECT_EQ(ErrorTextOf("INSERT INTO T (ID) VALUES (NULL)"),
            "ORA-1400: cannot insert NULL into (\"LKBENCH\".\"T\".\"ID\")");
  EXPECT_EQ(ErrorTextOf("INSERT INTO T (N) VALUES ('x')"),
            "ORA-1400: cannot insert NULL into (\"LKBENCH\".\"T\".\"ID\")");
  EXPECT_EQ(ErrorTextOf("UPDATE T SET ID = NULL"),
            "ORA-1407: cannot update (\"LKBENCH\".\"T\".\"ID\") to NULL");
  EXPECT_EQ(ErrorOf("INSERT INTO T (ID, N) VALUES (2, 'abcd')"), 12899);
  EXPECT_EQ(ErrorOf("INSERT INTO T (ID) VALUES (1000)"), 1438);
  EXPECT_EQ(ErrorOf("INSERT INTO T (ID) VALUES ('abc')"), 1722);
  EXPECT_EQ(ErrorOf("INSERT INTO T (ID, D) VALUES (2, '2024-13-01')"), 1843);
  EXPECT_EQ(ErrorTextOf("SELECT NOPE FROM T"), "ORA-904: \"NOPE\": invalid identifier");
  EXPECT_EQ(ErrorOf("SELECT 1 FROM NOPE"), 942);
  EXPECT_EQ(ErrorOf("DROP TABLE NOPE"), 942);
  EXPECT_EQ(ErrorOf("DROP SEQUENCE NOPE"), 2289);
  EXPECT_EQ(ErrorOf("SELECT NOPE.NEXTVAL FROM DUAL"), 2289);
  EXPECT_EQ(ErrorOf("CREATE TABLE T (A DATE)"), 955);
  EXPECT_EQ(ErrorOf("ALTER TABLE T ADD PRIMARY KEY (N)"), 2260);
  EXPECT_EQ(ErrorOf("ALTER TABLE T ADD N DATE"), 1430);
  EXPECT_EQ(ErrorOf("SELEC 1 FROM DUAL"), 900);
  EXPECT_EQ(ErrorOf("SELECT 1 FRM DUAL X Y"), 933);
  EXPECT_EQ(ErrorOf("BEGIN SELEC 1; END;"), 6550);
  EXPECT_EQ(ErrorOf("BEGIN UPDATE T SET ID = 1/0; END;"), 1476);
  EXPECT_EQ(ErrorOf("ROLLBACK TO SAVEPOINT NOPE"), 1086);
}

}  // namespace
}  // namespace ocimaria::sql

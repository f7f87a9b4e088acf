// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "OraErrorOf.h"
#include "oci/mariadb/sql/Rewrite.h"

namespace ocimaria::sql {
namespace {

std::string Text(std::string_view sql) { return Rewrite(sql).text; }

// Expressions as values of an INSERT, where they have no names.
std::string Values(const std::string& expressions) {
  const std::string begin = "INSERT INTO T VALUES (";
  const std::string text = Text(begin + expressions + ")");
  return text.substr(begin.size(), text.size() - begin.size() - 1);
}

int ErrorOf(std::string_view sql) {
  return OraErrorOf([&] { Rewrite(sql); });
}

TEST(Spelling, WritesLiteralsWithoutAPrefix) {
  EXPECT_EQ(Values("N'ä', q'[it's]', nq'{a''b}'"), "'ä', 'it''s', 'a''''b'");
}

TEST(Spelling, QuotesNamesThatTheServerWouldCutShort) {
  EXPECT_EQ(Text("SELECT sys#id FROM t#1 -- # stays"), "SELECT \"SYS#ID\" FROM \"T#1\" -- # stays");
}

TEST(Spelling, KeepsQuotedNamesThatTouchApart) {
  EXPECT_EQ(Text("UPDATE T SET A = \"B\"\"C\""), "UPDATE T SET A = \"B\" \"C\"");
  EXPECT_EQ(Text("UPDATE T SET A = \"B\"C#D\"E\""), "UPDATE T SET A = \"B\" \"C#D\" \"E\"");
}

TEST(Spelling, RefusesALiteralBehindALiteral) {
  EXPECT_EQ(ErrorOf("SELECT 'a' 'b' FROM DUAL"), 933);
  EXPECT_EQ(ErrorOf("SELECT 'a'N'b' FROM DUAL"), 933);
  EXPECT_EQ(Values("'a' || N'b', 'c', 'd''e'"), "'a' || 'b', 'c', 'd''e'");
}

TEST(Spelling, WritesNotEqualAsTheServerDoes) {
  EXPECT_EQ(Text("SELECT 1 FROM T WHERE A ^= 1"), "SELECT 1 FROM T WHERE A != 1");
}

TEST(Spelling, RefusesMarksThatOraclesLanguageHasNot) {
  for (const std::string mark : {"?", "`", "\\", "{", "]", "~", "&", "!"}) {
    EXPECT_EQ(ErrorOf("SELECT 1 " + mark + " 2 FROM DUAL"), 911) << mark;
    EXPECT_EQ(ErrorOf("SELECT '" + mark + "' FROM DUAL"), 0) << mark;
  }
  EXPECT_EQ(ErrorOf("SELECT 1 FROM T@LINK"), 3001);
  EXPECT_EQ(ErrorOf("SELECT 1 FROM T WHERE A != 1"), 0);
}

TEST(Spelling, RefusesWhatTheServersGrammarHasNot) {
  EXPECT_EQ(ErrorOf("SELECT 1 FROM T, U WHERE T.A = U.A (+)"), 3001);
  EXPECT_EQ(ErrorOf("SELECT LEVEL FROM DUAL CONNECT BY LEVEL < 3"), 3001);
  EXPECT_EQ(ErrorOf("SELECT A FROM T ORDER BY A NULLS LAST"), 3001);
  EXPECT_EQ(ErrorOf("BEGIN :X := 1; END;"), 3001);
  EXPECT_EQ(ErrorOf("INSERT INTO T VALUES (1) RETURNING A INTO :X"), 3001);
}

TEST(Functions, MakeNumbersOfTexts) {
  EXPECT_EQ(Values("TO_NUMBER('-12.5'), TO_NUMBER(A || '1')"), "(-12.5), CAST(A || '1' AS DOUBLE)");
  EXPECT_EQ(Values("TO_NUMBER('')"), "NULL");
  EXPECT_EQ(ErrorOf("SELECT TO_NUMBER('12a') FROM DUAL"), 1722);
  EXPECT_EQ(ErrorOf("SELECT TO_NUMBER('0x1F') FROM DUAL"), 1722);
  EXPECT_EQ(ErrorOf(std::string_view("SELECT TO_NUMBER('1\0 2') FROM DUAL", 34)), 1722);
  EXPECT_EQ(ErrorOf("SELECT TO_NUMBER('infinity') FROM DUAL"), 1722);
  EXPECT_EQ(Values("TO_NUMBER(' +.5e-3 ')"), "( +.5e-3 )");
  EXPECT_EQ(ErrorOf("SELECT TO_NUMBER(A, '999') FROM T"), 3001);
}

TEST(Functions, TruncateNumbersAndDatesByWhatTheTextTells) {
  EXPECT_EQ(Values("TRUNC(1.7), TRUNC(-1.7), TRUNC(A, 2)"),
            "TRUNCATE(1.7, 0), TRUNCATE(-1.7, 0), TRUNCATE(A, 2)");
  EXPECT_EQ(
      Values("TRUNC(SYSDATE), TRUNC(A, 'MM')"),
      "CAST(DATE_FORMAT(SYSDATE, '%Y-%m-%d') AS DATETIME), CAST(DATE_FORMAT(A, '%Y-%m-01') AS DATETIME)");
  EXPECT_EQ(ErrorOf("SELECT TRUNC(A) FROM T"), 3001);
  EXPECT_EQ(ErrorOf("SELECT TRUNC(A, 'Q') FROM T"), 3001);
}

TEST(Functions, CastToOraclesTypes) {
  EXPECT_EQ(Values("CAST(A AS VARCHAR2(10)), CAST(NVL(B, 0) AS NUMBER(7,2)), CAST(C AS DATE)"),
            "CAST(A AS char(10)), CAST(NVL(B, 0) AS decimal(7,2)), CAST(C AS datetime)");
  EXPECT_EQ(ErrorOf("SELECT CAST(A AS BLOB) FROM T"), 3001);
  EXPECT_EQ(ErrorOf("SELECT CAST(A AS FOO) FROM T"), 902);
}

TEST(Functions, NameTheUserAndTheTime) {
  EXPECT_EQ(Values("USER, SYSTIMESTAMP, SYSTIMESTAMP(3)"), "UPPER(DATABASE()), SYSDATE(6), SYSDATE(3)");
  EXPECT_EQ(Values("T.USER, USER.A"), "T.USER, USER.A");
}

TEST(Functions, CountDaysAddedToTheDate) {
  EXPECT_EQ(Values("SYSDATE - 7, SYSDATE + INTERVAL '1' HOUR"),
            "SYSDATE - INTERVAL 7 DAY, SYSDATE + INTERVAL '1' HOUR");
  EXPECT_EQ(ErrorOf("SELECT SYSDATE + 1/24 FROM DUAL"), 3001);
  EXPECT_EQ(Values("TO_DATE('2024-01-02', 'YYYY-MM-DD') + 3, ADD_MONTHS(A, 1) - 1, TO_DATE(:1, 'YYYY') + 2"),
            "TIMESTAMP'2024-01-02 00:00:00' + INTERVAL 3 DAY, ADD_MONTHS(A, 1) - INTERVAL 1 DAY, ? + "
            "INTERVAL 2 DAY");
}

TEST(Blocks, RewriteTheTextsThatTheyExecute) {
  EXPECT_EQ(Text("BEGIN EXECUTE IMMEDIATE 'CREATE TABLE T (A INTEGER)'; END;"),
            "BEGIN EXECUTE IMMEDIATE 'CREATE TABLE T (A decimal(38,0) COMMENT ''ora:NUMBER(*,0)'')'; END;");
  EXPECT_EQ(Text("BEGIN EXECUTE IMMEDIATE 'INSERT INTO T VALUES (:1)' USING 5; END;"),
            "BEGIN EXECUTE IMMEDIATE 'INSERT INTO T VALUES (?)' USING 5; END;");
  EXPECT_EQ(
      ErrorOf("BEGIN EXECUTE IMMEDIATE 'INSERT INTO T VALUES (TO_DATE(:1, ''YYYY''))' USING '1999'; END;"),
      3001);
}

// Each level doubles the quotes of the text within it once more.
TEST(Blocks, ExecuteTextsWithinTextsToFourLevels) {
  const auto nested = [](std::string_view brackets) {
    std::string sql = "BEGIN x := ''''; END;";
    for (std::size_t i = 0; i < brackets.size(); i += 2) {
      sql = "BEGIN EXECUTE IMMEDIATE q'" + std::string(1, brackets[i]) + sql + brackets[i + 1] + "'; END;";
    }
    return sql;
  };
  EXPECT_EQ(ErrorOf(nested("[]{}()<>")), 0);
  EXPECT_EQ(ErrorOf(nested("[]{}()<>||")), 3001);
}

TEST(Blocks, ReplaceTheTypesThatTheServersLanguageHasNot) {
  EXPECT_EQ(Text("DECLARE a NUMBER; b VARCHAR2(20 CHAR) := 'x'; c CONSTANT PLS_INTEGER := 3; d NUMBER(5,-2); "
                 "e t%ROWTYPE; "
                 "BEGIN NULL; END;"),
            "DECLARE a NUMBER; b varchar(20) := 'x'; c CONSTANT INT := 3; d decimal(7,0); e t%ROWTYPE; BEGIN "
            "NULL; END;");
}

TEST(DictionaryViews, TakeThePlaceOfATable) {
  EXPECT_EQ(Text("SELECT SEQUENCE_NAME FROM USER_SEQUENCES WHERE SEQUENCE_NAME = 'S'"),
            "SELECT SEQUENCE_NAME FROM (SELECT CAST(UPPER(t.table_name) AS CHAR(64)) SEQUENCE_NAME FROM "
            "information_schema.tables t WHERE t.table_schema = DATABASE() AND t.table_type = 'SEQUENCE') "
            "\"USER_SEQUENCES\" WHERE SEQUENCE_NAME = 'S'");
}

TEST(DictionaryViews, KeepAnAliasAndTakeTheOwnerAway) {
  EXPECT_THAT(
      Text("select k.table_name from sys.user_tables k, user_views"),
      testing::AllOf(testing::StartsWith("select k.table_name from (SELECT "),
                     testing::HasSubstr("'BASE TABLE') k, (SELECT "), testing::EndsWith(") \"USER_VIEWS\"")));
  EXPECT_THAT(Text("SELECT 1 FROM V$VERSION"), testing::EndsWith(" FROM DUAL) \"V$VERSION\""));
}

TEST(DictionaryViews, AreTablesOnlyWhereATableMayStand) {
  for (const std::string_view sql : {"SELECT USER_TABLES.TABLE_NAME, USER_TABLES FROM T",
                                     "SELECT 1 FROM T ORDER BY A, USER_TABLES", "SELECT 1 FROM X.USER_TABLES",
                                     "SELECT 'FROM USER_TABLES' FROM T", "SELECT F(A, USER_TABLES) FROM T"}) {
    EXPECT_EQ(Text(sql), sql);
  }
}

TEST(DictionaryViews, AreFoundInSubqueriesJoinsAndBlocks) {
  for (const std::string_view sql :
       {"SELECT 1 FROM T WHERE A IN (SELECT TABLE_NAME FROM USER_TABLES)",
        "SELECT 1 FROM T JOIN USER_TABLES ON 1 = 1", "SELECT 1 FROM (T JOIN U ON 1 = 1), USER_TABLES",
        "SELECT 1 FROM (USER_TABLES JOIN T ON 1 = 1)", "BEGIN SELECT COUNT(*) INTO v FROM USER_TABLES; END;",
        "SELECT 1 FROM (SELECT A, B FROM T) X, USER_TABLES WHERE 1 = 1"}) {
    EXPECT_THAT(Text(sql), testing::HasSubstr("information_schema.tables")) << sql;
  }
}

TEST(DictionaryViews, NameTheOwnerInThoseOfAllSchemas) {
  EXPECT_THAT(Text("SELECT OWNER FROM ALL_TABLES"),
              testing::AllOf(testing::HasSubstr("AS CHAR(64)) OWNER, "),
                             testing::HasSubstr("table_schema NOT IN (")));
}

TEST(DictionaryViews, GiveDualItsColumn) {
  EXPECT_EQ(Text("SELECT * FROM DUAL"), "SELECT * FROM (SELECT 'X' DUMMY FROM DUAL) \"DUAL\"");
  EXPECT_EQ(Text("SELECT DUMMY FROM DUAL"), "SELECT DUMMY FROM (SELECT 'X' DUMMY FROM DUAL) \"DUAL\"");
  EXPECT_EQ(Text("SELECT 1 FROM DUAL d"), "SELECT 1 FROM (SELECT 'X' DUMMY FROM DUAL) d");
  EXPECT_EQ(Text("SELECT 1 FROM DUAL"), "SELECT 1 FROM DUAL");
}

}  // namespace
}  // namespace ocimaria::sql

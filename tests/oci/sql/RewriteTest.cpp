// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/Rewrite.h"

#include <gmock/gmock.h>

#include "OraErrorOf.h"

namespace ocimaria::sql {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Text(std::string_view sql) { return Rewrite(sql).text; }

std::vector<std::string> Names(std::string_view sql) {
  std::vector<std::string> names;
  for (const Placeholder& placeholder : Rewrite(sql).placeholders) names.push_back(placeholder.name);
  return names;
}

std::vector<std::string> Masks(std::string_view sql) {
  std::vector<std::string> masks;
  for (const Placeholder& placeholder : Rewrite(sql).placeholders) masks.push_back(placeholder.date_mask);
  return masks;
}

TEST(Rewrite, LeavesTextWithoutPeculiaritiesAsItStands) {
  for (const std::string_view sql :
       {"", "  \n ", "SELECT 1 FROM DUAL", "select  a ,b\tfrom t where c = 'x''y' and d<>1.5e3 -- end",
        "UPDATE t SET a = NVL(b, 0) || 'HH24:MI' WHERE \"Mixed\" IN (SELECT x FROM y MINUS SELECT z FROM w)",
        "DELETE FROM t WHERE ROWNUM <= 5 /* all: of them */", "COMMIT", "SAVEPOINT a", "TRUNCATE TABLE t",
        "BEGIN FOR i IN 1..3 LOOP INSERT INTO t VALUES (i); END LOOP; END;"}) {
    EXPECT_EQ(Text(sql), sql);
  }
}

TEST(Rewrite, KeepsTwoNamesThatTouchApart) {
  EXPECT_EQ(Text("SELECT \"a\"\"b\",'c'\"d\" FROM t"), "SELECT \"a\" \"b\",'c'\"d\" FROM t");
  EXPECT_EQ(Text("SELECT q'[a]'\"b\"\"c\" FROM t"), "SELECT 'a'\"b\" \"c\" FROM t");
}

TEST(Rewrite, TellsATextWithoutAWord) {
  for (const std::string_view sql : {"", "  \n ", "-- a", "/* a */ /* b */"})
    EXPECT_TRUE(Rewrite(sql).is_empty);
  EXPECT_FALSE(Rewrite("COMMIT -- a").is_empty);
}

TEST(Rewrite, TurnsPlaceholdersIntoQuestionMarksInTheirOrder) {
  const Rewritten rewritten = Rewrite("INSERT INTO T (A, B, C) VALUES (:a,:B1 , :2)");
  EXPECT_EQ(rewritten.text, "INSERT INTO T (A, B, C) VALUES (?,? , ?)");
  EXPECT_THAT(Names("INSERT INTO T (A, B, C) VALUES (:a,:B1 , :2)"), ElementsAre("A", "B1", "2"));
}

// They are refused when the definition is executed: ORA-01027.
TEST(Rewrite, ListsThePlaceholdersThatADefinitionLoses) {
  EXPECT_THAT(Names("CREATE TABLE T (A NUMBER CONSTRAINT C CHECK (A > :x)) TABLESPACE :y"),
              ElementsAre("X", "Y"));
}

TEST(Rewrite, ListsARepeatedPlaceholderEachTime) {
  EXPECT_THAT(Names("select :x, :y, :x from dual"), ElementsAre("X", "Y", "X"));
}

TEST(Rewrite, SeesNoPlaceholderInTextsCommentsAndAssignments) {
  EXPECT_THAT(Names("select ':a', \":b\" /* :c */ from dual -- :d"), IsEmpty());
  EXPECT_THAT(Names("DECLARE v NUMBER; BEGIN v:=1; v := 2; END;"), IsEmpty());
}

TEST(Rewrite, TakesADateCallAwayFromAPlaceholder) {
  const std::string sql =
      "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2) VALUES (:ID, TO_DATE(:COLUMN1, 'YYYY/MM/DD "
      "HH24:MI:SS'), "
      ":COLUMN2)";
  EXPECT_EQ(Text(sql), "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2) VALUES (?, ?, ?)");
  EXPECT_THAT(Names(sql), ElementsAre("ID", "COLUMN1", "COLUMN2"));
  EXPECT_THAT(Masks(sql), ElementsAre("", "YYYY/MM/DD HH24:MI:SS", ""));
}

TEST(Rewrite, ReadsAPlaceholderWithoutAMaskByTheSessionsOwn) {
  EXPECT_THAT(Masks("select to_date(:a), to_timestamp(:b) from dual"),
              ElementsAre("DD-MON-RR", "DD-MON-RR HH.MI.SSXFF AM"));
}

TEST(Rewrite, ConvertsADateLiteral) {
  EXPECT_EQ(
      Text("update LK_REP_TABLE3 set ID=42,COLUMN1=TO_DATE('1987/03/09 04:05:06', 'YYYY-MM-DD HH24:MI:SS') "
           "where id = 42"),
      "update LK_REP_TABLE3 set ID=42,COLUMN1=TIMESTAMP'1987-03-09 04:05:06' where id = 42");
  EXPECT_EQ(Text("call p(TO_TIMESTAMP('1987-03-09 04.5', 'YYYY-MM-DD SS.FF'))"),
            "call p(TIMESTAMP'1987-03-09 00:00:04.500000')");
  EXPECT_EQ(Text("call p(to_date(20240102, 'YYYYMMDD'))"), "call p(TIMESTAMP'2024-01-02 00:00:00')");
  EXPECT_EQ(Text("call p(to_date('', 'YYYYMMDD'))"), "call p(NULL)");
}

TEST(Rewrite, ReportsADateLiteralThatDoesNotFit) {
  EXPECT_EQ(OraErrorOf([] { Rewrite("select to_date('2024-13-01', 'YYYY-MM-DD') from dual"); }), 1843);
  EXPECT_EQ(OraErrorOf([] { Rewrite("select to_date('2024-01-01', 'YYYY-MM-DD FF') from dual"); }), 1821);
  EXPECT_EQ(OraErrorOf([] { Rewrite("select to_date() from dual"); }), 938);
  EXPECT_EQ(OraErrorOf([] { Rewrite("select to_date('a', 'b', 'c', 'd') from dual"); }), 939);
  EXPECT_EQ(OraErrorOf([] { Rewrite("select to_date('a', mask) from t"); }), 3001);
}

TEST(Rewrite, LeavesADateOfOtherArgumentsToTheServer) {
  EXPECT_EQ(Text("call p(to_date(a || b, 'YYYY-MM-DD'))"), "call p(STR_TO_DATE(a || b, '%Y-%m-%d'))");
  EXPECT_EQ(Text("call p(NVL(to_date(TRIM(a), 'DD-MON-YYYY'), TO_DATE('01-JAN-1970', 'DD-MON-YYYY')))"),
            "call p(NVL(STR_TO_DATE(TRIM(a), '%d-%b-%Y'), TIMESTAMP'1970-01-01 00:00:00'))");
}

TEST(Rewrite, RepairsCommentsThatTheServerReadsOtherwise) {
  EXPECT_EQ(Text("select 1--x\n from dual--"), "select 1-- x\n from dual--");
  EXPECT_EQ(Text("select 1 /*!40000 +1 */ from dual /*M!1*/"), "select 1 /* !40000 +1 */ from dual /* M!1*/");
}

TEST(Rewrite, RefusesASemicolonOutsideABlock) {
  EXPECT_EQ(OraErrorOf([] { Rewrite("SELECT 1 FROM DUAL;"); }), 911);
  EXPECT_EQ(OraErrorOf([] { Rewrite("COMMIT ; "); }), 911);
  EXPECT_EQ(OraErrorOf([] { Rewrite("SELECT ';' FROM DUAL"); }), 0);
  EXPECT_EQ(OraErrorOf([] { Rewrite("BEGIN NULL; END;"); }), 0);
}

TEST(Rewrite, RefusesAnOpenQuote) {
  EXPECT_EQ(OraErrorOf([] { Rewrite("SELECT 'a FROM DUAL"); }), 1756);
}

struct TypeOfText {
  std::string_view sql;
  ub2 type;
  bool is_ddl, is_block, is_query;
};

TEST(Rewrite, TellsTheKindOfAStatement) {
  for (const TypeOfText& expected : std::vector<TypeOfText>{
           {"select 1 from dual", OCI_STMT_SELECT, false, false, true},
           {" /* c */ ( SELECT 1 from dual)", OCI_STMT_SELECT, false, false, true},
           {"with a as (select 1 from dual) select * from a", OCI_STMT_SELECT, false, false, true},
           {"update t set a=1", OCI_STMT_UPDATE, false, false, false},
           {"delete from t", OCI_STMT_DELETE, false, false, false},
           {"Insert into t values (1)", OCI_STMT_INSERT, false, false, false},
           {"drop view v", OCI_STMT_DROP, true, false, false},
           {"BEGIN NULL; END;", OCI_STMT_BEGIN, false, true, false},
           {"<<l>> BEGIN NULL; END;", OCI_STMT_BEGIN, false, true, false},
           {"declare a number; begin null; end;", OCI_STMT_DECLARE, false, true, false},
           {"call p(1)", OCI_STMT_CALL, false, false, false},
           {"commit", OCI_STMT_COMMIT, false, false, false},
           {"rollback to a", OCI_STMT_ROLLBACK, false, false, false},
           {"truncate table t", OCI_STMT_UNKNOWN, true, false, false},
           {"savepoint a", OCI_STMT_UNKNOWN, false, false, false},
           {"", OCI_STMT_UNKNOWN, false, false, false}}) {
    const Rewritten rewritten = Rewrite(expected.sql);
    EXPECT_EQ(rewritten.type, expected.type) << expected.sql;
    EXPECT_EQ(rewritten.is_ddl, expected.is_ddl) << expected.sql;
    EXPECT_EQ(rewritten.is_block, expected.is_block) << expected.sql;
    EXPECT_EQ(rewritten.is_query, expected.is_query) << expected.sql;
    EXPECT_EQ(StatementType(expected.sql), expected.type) << expected.sql;
  }
}

TEST(Rewrite, TellsTheTypeOfATextThatItRefuses) {
  EXPECT_EQ(StatementType("select 1 from dual;"), OCI_STMT_SELECT);
  EXPECT_EQ(StatementType("select 'a"), OCI_STMT_UNKNOWN);
}

TEST(Rewrite, SeesThatASequenceIsDrawn) {
  EXPECT_TRUE(Rewrite("SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL").draws_sequence);
  EXPECT_TRUE(Rewrite("insert into t values (s.nextval, 1)").draws_sequence);
  EXPECT_FALSE(Rewrite("SELECT LK_REP_ID_SEQ.CURRVAL FROM DUAL").draws_sequence);
  EXPECT_FALSE(Rewrite("SELECT 'a.NEXTVAL' FROM DUAL").draws_sequence);
}

TEST(Rewrite, SeesThatAQueryLocksRows) {
  EXPECT_TRUE(Rewrite("select a from t for update nowait").locks_rows);
  EXPECT_FALSE(Rewrite("select a from t").locks_rows);
}

std::string Repeated(std::string_view text, std::size_t bytes) {
  std::string repeated;
  while (repeated.size() < bytes) repeated += text;
  return repeated;
}

constexpr std::size_t kMegabyte = 1 << 20;

// A step that looked over the whole text for each token would take minutes here.
TEST(Rewrite, CopesWithAMegabyteOfText) {
  EXPECT_EQ(Rewrite("INSERT INTO T VALUES (" + Repeated(":a,", kMegabyte) + "1)").placeholders.size(),
            kMegabyte / 3 + 1);
  EXPECT_EQ(Text("SELECT 'a' || '" + Repeated("''", kMegabyte) + "'").size(), 16 + kMegabyte);
}

TEST(Rewrite, CopesWithLongTextsOfAnyToken) {
  constexpr std::size_t kLength = kMegabyte / 16;
  for (const std::string_view piece :
       {"TO_DATE(A || ", "CAST(", "TRUNC(", "(", "DECLARE ", "-- x\n", "/* */", "FROM USER_TABLES, ", "A(+ ",
        "<<x>>", "A NUMBER, ", "EXECUTE IMMEDIATE 'x' ", "q'[x]', ", ":\"x\" "}) {
    for (const std::string_view begin : {"SELECT ", "BEGIN ", "CREATE TABLE T ("}) {
      const int error = OraErrorOf([&] { Rewrite(std::string(begin) + Repeated(piece, kLength)); });
      EXPECT_TRUE(error == 0 || error == 907) << error << " for " << begin << piece;
    }
  }
}

TEST(Rewrite, CopesWithLongDefinitions) {
  const auto column = [](std::string_view parts) {
    return Rewrite("CREATE TABLE T (A NUMBER " + Repeated(parts, kMegabyte / 4) + ")").text.size();
  };
  EXPECT_LT(column("USING INDEX "), kMegabyte / 4);
  EXPECT_GT(column("CONSTRAINT X UNIQUE "), kMegabyte / 4);
  EXPECT_GT(column("CONSTRAINT X CHECK (A > 0) "), kMegabyte / 4);
}

TEST(Rewrite, RewritesCallsWithinCallsToAnyDepth) {
  constexpr int kDepth = 20000;
  std::string sql = "SELECT ";
  for (int i = 0; i < kDepth; ++i) sql += "CAST(TO_DATE(";
  sql += "A || B";
  for (int i = 0; i < kDepth; ++i) sql += ",'YYYY') AS DATE)";
  const std::string text = Text(sql + " FROM T");
  EXPECT_THAT(text, testing::StartsWith("SELECT CAST(STR_TO_DATE(CAST(STR_TO_DATE("));
  EXPECT_THAT(text, testing::EndsWith(", '%Y') AS datetime), '%Y') AS datetime) FROM T"));
}

TEST(Rewrite, LeavesTheColonsAndSemicolonsOfStoredProgramsToTheServer) {
  const std::string_view sql =
      "CREATE OR REPLACE TRIGGER R BEFORE INSERT ON T FOR EACH ROW BEGIN :NEW.A := 1; SELECT MAX(A) INTO "
      ":NEW.B FROM U; END;";
  EXPECT_EQ(OraErrorOf([&] { Rewrite(sql); }), 0);
  EXPECT_EQ(Text(sql), sql);
  EXPECT_THAT(Names(sql), IsEmpty());
}

TEST(Rewrite, GivesNoNameThatIsLongerThanTheServersNames) {
  const std::string sum = Repeated("A + ", 130);
  EXPECT_EQ(Text("SELECT " + sum + "TRUNC(1.5) FROM T"), "SELECT " + sum + "TRUNCATE(1.5, 0) FROM T");
}

TEST(Rewrite, KeepsTheNameOfAColumnThatItRewrites) {
  EXPECT_EQ(Text("SELECT DISTINCT USER, TO_DATE(:1, 'YYYY') , A, B c, USER AS d, USER e FROM T"),
            "SELECT DISTINCT UPPER(DATABASE()) \"USER\", ? \"TO_DATE(:1,'YYYY')\" , A, B c, "
            "UPPER(DATABASE()) AS d, "
            "UPPER(DATABASE()) e FROM T");
  EXPECT_EQ(Text("select s.nextval, x from dual"), "select s.nextval \"NEXTVAL\", x from dual");
  EXPECT_EQ(Text("SELECT T.A#B, CASE WHEN 1 ^= 2 THEN 1 END FROM T"),
            "SELECT T.\"A#B\", CASE WHEN 1 != 2 THEN 1 END \"CASEWHEN1^=2THEN1END\" FROM T");
}

TEST(Rewrite, SeesThatAStatementDoesNotWait) {
  EXPECT_TRUE(Rewrite("select a from t for update nowait").no_wait);
  EXPECT_FALSE(Rewrite("select 'nowait' from t for update").no_wait);
}

TEST(Rewrite, NamesTheTableThatAStatementChanges) {
  EXPECT_EQ(Rewrite("insert into lk_rep_table1 values (1)").target_table, "LK_REP_TABLE1");
  EXPECT_EQ(Rewrite("update s.t set a=1").target_table, "T");
  EXPECT_EQ(Rewrite("delete t where a=1").target_table, "T");
  EXPECT_EQ(Rewrite("delete from \"Mixed\"").target_table, "Mixed");
  EXPECT_EQ(Rewrite("drop table t").target_table, "T");
  EXPECT_EQ(Rewrite("select a from t").target_table, "");
  EXPECT_EQ(Rewrite("drop index i on t").target_table, "");
}

}  // namespace
}  // namespace ocimaria::sql

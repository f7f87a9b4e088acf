// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/ErrorMap.h"

#include <gtest/gtest.h>

namespace ocimaria::sql {
namespace {

struct Case {
  unsigned number;
  std::string_view message;
  int code;
  std::string_view text;
};

constexpr ErrorContext kInsert{.statement_type = OCI_STMT_INSERT, .schema = "bench", .table = "T"};
constexpr ErrorContext kUpdate{.statement_type = OCI_STMT_UPDATE, .schema = "bench", .table = "T"};
constexpr ErrorContext kSelect{.statement_type = OCI_STMT_SELECT, .schema = "bench"};
constexpr ErrorContext kAlter{
    .statement_type = OCI_STMT_ALTER, .is_ddl = true, .schema = "bench", .table = "T"};
constexpr ErrorContext kBlock{.statement_type = OCI_STMT_BEGIN, .is_block = true, .schema = "bench"};

void Check(const ErrorContext& context, std::initializer_list<Case> cases) {
  for (const Case& expected : cases) {
    const OraError error = MapServerError(expected.number, expected.message, context);
    EXPECT_EQ(error.Code(), expected.code) << expected.message;
    EXPECT_EQ(error.Text(), expected.text) << expected.message;
  }
}

TEST(ErrorMap, NamesTheConstraintThatARowViolates) {
  Check(kInsert,
        {{1062, "Duplicate entry '1' for key 'PRIMARY'", 1, "unique constraint (BENCH.PK_T) violated"},
         {1062, "Duplicate entry 'it's' for key 'uq_name'", 1, "unique constraint (BENCH.UQ_NAME) violated"},
         {4025, "CONSTRAINT `positive` failed for `bench`.`t`", 2290,
          "check constraint (BENCH.POSITIVE) violated"},
         {4025, "CONSTRAINT `t.a` failed for `bench`.`t`", 2290, "check constraint (BENCH.A) violated"},
         {1452,
          "Cannot add or update a child row: a foreign key constraint fails (\"bench\".\"t\", CONSTRAINT "
          "\"fk_1\" "
          "FOREIGN KEY (\"b\") REFERENCES \"p\" (\"id\"))",
          2291, "integrity constraint (BENCH.FK_1) violated - parent key not found"},
         {1451, "Cannot delete or update a parent row: a foreign key constraint fails", 2292,
          "integrity constraint violated - child record found"}});
}

TEST(ErrorMap, NamesTheColumnThatRefusesAValue) {
  Check(kInsert,
        {{1048, "Column 'id' cannot be null", 1400, "cannot insert NULL into (\"BENCH\".\"T\".\"ID\")"},
         {1364, "Field 'id' doesn't have a default value", 1400,
          "cannot insert NULL into (\"BENCH\".\"T\".\"ID\")"},
         {1406, "Data too long for column 'c' at row 1", 12899,
          "value too large for column \"BENCH\".\"T\".\"C\""},
         {4025, "CONSTRAINT `ora$len$C` failed for `bench`.`t`", 12899,
          "value too large for column \"BENCH\".\"T\".\"C\""}});
  Check(kUpdate,
        {{1048, "Column 'id' cannot be null", 1407, "cannot update (\"BENCH\".\"T\".\"ID\") to NULL"}});
  Check(kBlock, {{1048, "Column 'id' cannot be null", 1400, "cannot insert NULL into (\"ID\")"}});
}

TEST(ErrorMap, NamesAnUnknownColumnAsOracleDoes) {
  Check(kSelect, {{1054, "Unknown column 'nope' in 'SELECT'", 904, "\"NOPE\": invalid identifier"},
                  {1054, "Unknown column 't.nope' in 'WHERE'", 904, "\"T\".\"NOPE\": invalid identifier"},
                  {1305, "FUNCTION bench.nofunc does not exist", 904, "\"NOFUNC\": invalid identifier"}});
  Check(kAlter,
        {{1091, "Can't DROP COLUMN `nope`; check that it exists", 904, "\"NOPE\": invalid identifier"}});
}

int CodeOf(unsigned number, std::string_view message, const ErrorContext& context = {}) {
  return MapServerError(number, message, context).Code();
}

TEST(ErrorMap, TellsABadNumberFromABadDate) {
  EXPECT_EQ(CodeOf(1366, "Incorrect decimal value: 'abc' for column `ora`.`n1`.`a` at row 1"), 1722);
  EXPECT_EQ(CodeOf(1366, "Incorrect string value: '\\xE9' for column `ora`.`n1`.`a` at row 1"), 12703);
  EXPECT_EQ(CodeOf(1265, "Data truncated for column 'c' at row 1"), 1722);
  EXPECT_EQ(CodeOf(1292, "Truncated incorrect DOUBLE value: 'abc'"), 1722);
  EXPECT_EQ(CodeOf(1292, "Incorrect datetime value: 'abc' for column `o`.`n`.`d` at row 1"), 1861);
  EXPECT_EQ(CodeOf(1292, "Incorrect datetime value: '2024-13-01' for column `o`.`n`.`d` at row 1"), 1843);
  EXPECT_EQ(CodeOf(1292, "Incorrect datetime value: '2024-12-32 00:00:00' for column `o`.`n`.`d`"), 1847);
  EXPECT_EQ(CodeOf(1292, "Incorrect datetime value: '2024-02-31' for column `o`.`n`.`d` at row 1"), 1839);
  EXPECT_EQ(CodeOf(1411, "Incorrect datetime value: 'x' for function str_to_date"), 1861);
}

TEST(ErrorMap, ChoosesTheSyntaxErrorByTheStatement) {
  constexpr std::string_view kMessage =
      "You have an error in your SQL syntax; check the manual that corresponds to your MariaDB server "
      "version for the "
      "right syntax to use near 'foo (1)' at line 1";
  EXPECT_EQ(CodeOf(1064, kMessage, kSelect), 933);
  EXPECT_EQ(CodeOf(1064, kMessage, kAlter), 922);
  EXPECT_EQ(CodeOf(1064, kMessage), 900);
  EXPECT_EQ(CodeOf(1064, "… right syntax to use near '' at line 1", kSelect), 936);
  EXPECT_EQ(MapServerError(1064, kMessage, kSelect).Text(),
            "SQL command not properly ended (near 'foo (1)' at line 1)");
}

TEST(ErrorMap, ReportsTheLineOfAnErrorInABlock) {
  EXPECT_EQ(MapServerError(1064, "… right syntax to use near 'END' at line 3", kBlock).Text(),
            "line 3, column 1:\nPLS-00103: Encountered a symbol that was not expected, near 'END' at line 3");
  EXPECT_EQ(CodeOf(1064, "", kBlock), 6550);
  EXPECT_EQ(MapServerError(1193, "Unknown system variable 'x'", kBlock).Text(),
            "line 1, column 1:\nPLS-00201: identifier 'X' must be declared");
  EXPECT_EQ(MapServerError(1305, "PROCEDURE bench.nope does not exist", kBlock).Text(),
            "line 1, column 1:\nPLS-00201: identifier 'NOPE' must be declared");
}

TEST(ErrorMap, TellsMissingTablesSequencesAndSavepointsApart) {
  EXPECT_EQ(CodeOf(1051, "Unknown table 'ora.nope'"), 942);
  EXPECT_EQ(CodeOf(1146, "Table 'ora.nope' doesn't exist"), 942);
  EXPECT_EQ(CodeOf(4092, "Unknown VIEW: 'ora.nope'"), 942);
  EXPECT_EQ(CodeOf(4091, "Unknown SEQUENCE: 'ora.nope'"), 2289);
  EXPECT_EQ(CodeOf(4090, "'ora.n1' is not a SEQUENCE"), 2289);
  EXPECT_EQ(CodeOf(1050, "Table 'n1' already exists"), 955);
  EXPECT_EQ(MapServerError(1305, "SAVEPOINT nope does not exist").Text(),
            "savepoint 'NOPE' never established in this session or is invalid");
  EXPECT_EQ(CodeOf(1305, "PROCEDURE ora.nope does not exist"), 6576);
  EXPECT_EQ(MapServerError(4084, "Sequence 'ora.s2' has run out").Text(),
            "sequence S2.NEXTVAL exceeds MAXVALUE and cannot be instantiated");
}

TEST(ErrorMap, TellsWhatCannotBeDropped) {
  EXPECT_EQ(CodeOf(1091, "Can't DROP INDEX `nope`; check that it exists"), 1418);
  EXPECT_EQ(CodeOf(1091, "Can't DROP CONSTRAINT `nope`; check that it exists"), 2443);
  EXPECT_EQ(CodeOf(1091, "Can't DROP INDEX `PRIMARY`; check that it exists"), 2441);
  EXPECT_EQ(CodeOf(1451, "Cannot delete or update a parent row: a foreign key constraint fails", kAlter),
            2449);
}

TEST(ErrorMap, DistinguishesALockThatWasNotWaitedFor) {
  constexpr std::string_view kMessage = "Lock wait timeout exceeded; try restarting transaction";
  EXPECT_EQ(CodeOf(1205, kMessage), 30006);
  EXPECT_EQ(CodeOf(1205, kMessage, kAlter), 54);
  EXPECT_EQ(CodeOf(1205, kMessage, {.no_wait = true}), 54);
  EXPECT_EQ(CodeOf(1213, "Deadlock found when trying to get lock; try restarting transaction"), 60);
}

TEST(ErrorMap, KnowsTheErrorsOfAConnection) {
  EXPECT_EQ(CodeOf(1045, "Access denied for user 'a'@'b'"), 1017);
  EXPECT_EQ(CodeOf(1049, "Unknown database 'x'", {.connecting = true}), 12514);
  EXPECT_EQ(CodeOf(1049, "Unknown database 'x'"), 1435);
  EXPECT_EQ(CodeOf(2002, "Can't connect to server on 'h' (111)"), 12541);
  EXPECT_EQ(CodeOf(2005, "Unknown server host 'h' (-2)"), 12545);
  EXPECT_EQ(CodeOf(2006, "Server has gone away"), 3114);
  EXPECT_EQ(CodeOf(2013, "Lost connection to server during query"), 3113);
  EXPECT_EQ(CodeOf(2026, "TLS/SSL error"), 29024);
  EXPECT_EQ(CodeOf(1317, "Query execution was interrupted"), 1013);
}

TEST(ErrorMap, TellsAConnectionThatTakesTooLongFromOneThatIsRefused) {
  constexpr ErrorContext kConnecting{.connecting = true};
  EXPECT_EQ(CodeOf(2002, "Can't connect to server on 'h' (110)", kConnecting), 12170);
  EXPECT_EQ(CodeOf(2013,
                   "Lost connection to server at 'handshake: reading initial communication packet', system "
                   "error: 110",
                   kConnecting),
            12170);
  EXPECT_EQ(CodeOf(2013, "Lost connection to server during query, system error: 110"), 3113);
}

TEST(ErrorMap, SaysHowMuchMemoryWasWanted) {
  EXPECT_EQ(MapServerError(1037, "Out of memory; restart server and try again (needed 64 bytes)").Text(),
            "unable to allocate 64 bytes of shared memory");
  EXPECT_EQ(MapServerError(1041, "Out of memory.").Text(), "unable to allocate shared memory");
}

TEST(ErrorMap, KeepsNumberAndTextOfWhatItDoesNotKnow) {
  const OraError error = MapServerError(1999, "Something new");
  EXPECT_EQ(error.Code(), 28500);
  EXPECT_EQ(error.Text(),
            "connection from ORACLE to a non-Oracle system returned this message:\n(1999) Something new");
}

TEST(ErrorMap, LeavesNoEmptyArgumentInAText) {
  EXPECT_EQ(MapServerError(1071, "Specified key was too long; max key length is 3072 bytes").Text(),
            "maximum key length exceeded");
  for (const unsigned number : {1048U, 1054U, 1062U, 1091U, 1305U, 1406U, 1451U, 4025U, 4084U}) {
    EXPECT_EQ(MapServerError(number, "").Text().find("{}"), std::string::npos) << number;
  }
}

}  // namespace
}  // namespace ocimaria::sql

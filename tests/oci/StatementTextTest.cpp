// SPDX-License-Identifier: Apache-2.0
// Statements as people write them: comments, quotes, colons, semicolons, placeholders, size.
#include <cstring>

#include "Contract.h"

namespace oci_test {
namespace {

class StatementText : public Contract {
 protected:
  // The error number of preparing and executing, 0 for a success.
  int ErrorOf(std::string_view text) {
    const sword status = Exec(client, text);
    return status == OCI_SUCCESS ? 0 : client.Code();
  }
  ub2 OffsetOf(std::string_view text) {
    Statement statement(client);
    if (statement.Prepare(text) == OCI_SUCCESS) statement.Execute();
    return statement.Attribute<ub2>(OCI_ATTR_PARSE_ERROR_OFFSET);
  }
  // The one value of a query with this text bound to each place.
  std::string Bound(std::string_view query, ub4 places, const char* text) {
    Statement statement(client, query);
    EXPECT_EQ(statement.Attribute<ub4>(OCI_ATTR_BIND_COUNT), places) << query;
    for (ub4 i = 1; i <= places; ++i)
      statement.Bind(i, const_cast<char*>(text), static_cast<sb4>(std::strlen(text) + 1), SQLT_STR);
    char value[100] = {};
    statement.Define(1, value, sizeof value, SQLT_STR);
    EXPECT_EQ(statement.Execute(), OCI_SUCCESS) << query << client.LastReport().text;
    return value;
  }
};
INSTANTIATE_TEST_SUITE_P(Over, StatementText, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

TEST_P(StatementText, CommentsStandAnywhere) {
  EXPECT_EQ(Value(client, "SELECT 1 -- one\nFROM DUAL"), "1");
  EXPECT_EQ(Value(client, "-- first\n/* then */ SELECT /* here */ 1/**/FROM DUAL -- last"), "1");
  EXPECT_EQ(Value(client, "SELECT 5 --3\n+ 1 FROM DUAL"), "6");
  EXPECT_EQ(Value(client, "SELECT 3/* a\nb */-1 FROM DUAL /* end */"), "2");
}

TEST_P(StatementText, AHintIsAComment) {
  Table("T_TEXT", "ID NUMBER");
  EXPECT_EQ(Value(client, "SELECT /*+ FULL(T_TEXT) PARALLEL(4) */ COUNT(*) FROM T_TEXT"), "0");
  EXPECT_EQ(ErrorOf("INSERT /*+ APPEND */ INTO T_TEXT VALUES (1)"), 0);
  EXPECT_EQ(ErrorOf("UPDATE --+ INDEX(T)\n T_TEXT SET ID = 2"), 0);
}

TEST_P(StatementText, TheServersOwnCommentsAreNotRun) {
  EXPECT_EQ(Value(client, "SELECT 1 /*! + 1 */ FROM DUAL"), "1");
  EXPECT_EQ(Value(client, "SELECT 1 /*M! + 1 */ FROM DUAL"), "1");
  EXPECT_EQ(Value(client, "SELECT 1 /*!50000 + 1 */ FROM DUAL"), "1");
}

TEST_P(StatementText, WhatLooksLikeAPlaceholderInACommentOrTextIsNone) {
  EXPECT_EQ(Bound("SELECT ':A' || /* :B */ :C -- :D\n FROM DUAL", 1, "x"), ":Ax");
  EXPECT_EQ(Bound("SELECT :C || q'[:A]' || N':B' FROM DUAL", 1, "x"), "x:A:B");
  EXPECT_EQ(Bound("SELECT :A AS \"a:B\" FROM DUAL", 1, "x"), "x");
}

TEST_P(StatementText, WhatLooksLikeACommentInATextIsNone) {
  EXPECT_EQ(Value(client, "SELECT '-- /* ' || ' */' FROM DUAL"), "-- /*  */");
  EXPECT_EQ(Value(client, "SELECT 'it''s # `x` \"y\"' FROM DUAL"), "it's # `x` \"y\"");
}

TEST_P(StatementText, QuotesAreDoubledOrBracketed) {
  EXPECT_EQ(Value(client, "SELECT '''' FROM DUAL"), "'");
  EXPECT_EQ(Value(client, "SELECT 'a''''b' FROM DUAL"), "a''b");
  EXPECT_EQ(Value(client, "SELECT q'[it's]' FROM DUAL"), "it's");
  EXPECT_EQ(Value(client, "SELECT Q'{it's}' || q'<it's>' || q'(it's)' || q'!it's!' FROM DUAL"),
            "it'sit'sit'sit's");
  EXPECT_EQ(Value(client, "SELECT nq'[a]b]' || N'c' FROM DUAL"), "a]bc");
  EXPECT_EQ(Value(client, "SELECT q'[two\nlines]' FROM DUAL"), "two\nlines");
  EXPECT_EQ(Value(client, "SELECT 'back\\slash' || q'[\\'\\]' FROM DUAL"), "back\\slash\\'\\");
}

TEST_P(StatementText, OpenOnesAreRefusedWhenPreparing) {
  Statement statement(client);
  const auto refused = [&](std::string_view text) {
    EXPECT_EQ(statement.Prepare(text), OCI_ERROR) << text;
    return client.Code();
  };
  EXPECT_EQ(refused("SELECT 'x FROM DUAL"), 1756);
  EXPECT_EQ(refused("SELECT q'[x]  FROM DUAL"), 1756);
  EXPECT_EQ(refused("SELECT q'"), 1756);
  EXPECT_EQ(refused("SELECT \"x FROM DUAL"), 1740);
  EXPECT_EQ(refused("SELECT 1 FROM DUAL /* x"), 1742);
  EXPECT_EQ(refused("SELECT : FROM DUAL"), 1745);
}

TEST_P(StatementText, ASemicolonIsForBlocksOnly) {
  EXPECT_EQ(ErrorOf("SELECT 1 FROM DUAL;"), 911);
  EXPECT_EQ(ErrorOf("DELETE FROM T_TEXT ; "), 911);
  EXPECT_EQ(ErrorOf("BEGIN NULL; END;"), 0);
  EXPECT_EQ(ErrorOf("BEGIN NULL; END; -- done"), 0);
  EXPECT_EQ(ErrorOf("BEGIN NULL; END"), 6550);
  EXPECT_EQ(Value(client, "SELECT 'a;b' /* ; */ FROM DUAL -- ;"), "a;b");
}

TEST_P(StatementText, APlaceholderMayComeAgain) {
  EXPECT_EQ(Bound("SELECT :A || :B || :A FROM DUAL", 3, "x"), "xxx");
  Statement statement(client, "SELECT :A || :b || :\"A\" || :B FROM DUAL");
  char a[] = "1", b[] = "2", value[10] = {};
  OCIBind* bind = nullptr;
  const auto name = [&](const char* placeholder, char* text) {
    return OCIBindByName(statement.handle, &bind, client.error, reinterpret_cast<const OraText*>(placeholder),
                         static_cast<sb4>(std::strlen(placeholder)), text, 2, SQLT_STR, nullptr, nullptr,
                         nullptr, 0, nullptr, OCI_DEFAULT);
  };
  ASSERT_EQ(name(":A", a), OCI_SUCCESS);
  ASSERT_EQ(name("b", b), OCI_SUCCESS);
  statement.Define(1, value, sizeof value, SQLT_STR);
  ASSERT_EQ(statement.Execute(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_STREQ(value, "1212");
}

TEST_P(StatementText, PlaceholdersAreNamesOrNumbers) {
  EXPECT_EQ(Bound("SELECT :1 || :2 || :long_Name$1# FROM DUAL", 3, "x"), "xxx");
  EXPECT_EQ(Bound("SELECT :A||:B FROM DUAL", 2, "x"), "xx");
  EXPECT_EQ(Bound("SELECT 1 FROM DUAL WHERE :A=:B AND :C>='a'", 3, "x"), "1");
}

TEST_P(StatementText, OfAMegabyteRunsWhole) {
  const std::string text(1 << 20, 'x');
  EXPECT_EQ(Value(client, "SELECT LENGTH('" + text + "') FROM DUAL"), "1048576");
  EXPECT_EQ(Value(client, "SELECT 1 /* " + text + " */ FROM DUAL"), "1");
  Table("T_TEXT", "C CLOB");
  EXPECT_EQ(ErrorOf("INSERT INTO T_TEXT VALUES ('" + text + "')"), 0);
  EXPECT_EQ(Value(client, "SELECT LENGTH(C) FROM T_TEXT"), "1048576");
}

// Each operator of a row takes a piece of the stack of the server's thread.
TEST_P(StatementText, OfThousandsOfTermsIsRefusedAndTheSessionGoesOn) {
  const auto sum = [](int terms) {
    std::string text = "SELECT 0";
    for (int i = 0; i < terms; ++i) text += " + 1";
    return text + " FROM DUAL";
  };
  EXPECT_EQ(Value(client, sum(300)), "300");
  EXPECT_EQ(Exec(client, sum(5000)), OCI_ERROR);
  EXPECT_EQ(client.Code(), 28500);
  EXPECT_EQ(Value(client, "SELECT 1 FROM DUAL"), "1");
}

TEST_P(StatementText, OfThousandsOfListElementsRunsWhole) {
  std::string list = "SELECT COUNT(*) FROM DUAL WHERE 4999 IN (0";
  for (int i = 1; i < 5000; ++i) list += ", " + std::to_string(i);
  EXPECT_EQ(Value(client, list + ")"), "1") << "Oracle takes a thousand (ORA-01795)";
}

TEST_P(StatementText, WithoutAStatementIsRefused) {
  for (const char* text : {" ", "\n\t", "-- nothing", "/* nothing */"}) EXPECT_EQ(ErrorOf(text), 900) << text;
  EXPECT_EQ(ErrorOf("FROBNICATE THE TABLE"), 900);
  EXPECT_EQ(ErrorOf("12"), 900);
}

TEST_P(StatementText, OfZeroLengthIsRefused) {
  Statement statement(client);
  EXPECT_EQ(OCIStmtPrepare(statement.handle, client.error, reinterpret_cast<const OraText*>("SELECT"), 0,
                           OCI_NTV_SYNTAX, OCI_DEFAULT),
            OCI_SUCCESS);
  EXPECT_EQ(statement.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 900);
  EXPECT_EQ(OCIStmtPrepare(statement.handle, client.error, nullptr, 0, OCI_NTV_SYNTAX, OCI_DEFAULT),
            OCI_ERROR);
}

TEST_P(StatementText, BytesOutsideOfTextsAreRefusedOrFoundWrong) {
  EXPECT_EQ(ErrorOf("SELECT 1 ? FROM DUAL"), 911);
  EXPECT_EQ(ErrorOf("SELECT `a` FROM DUAL"), 911);
  EXPECT_EQ(ErrorOf(std::string_view("SELECT 1 \0 FROM DUAL", 20)), 911);
}

TEST_P(StatementText, AnErrorTellsItsPlaceInTheTextAsWritten) {
  Table("T_TEXT", "ID NUMBER");
  EXPECT_EQ(OffsetOf("DELETE FROM /* no such */ T_NO_SUCH"), 26);
  EXPECT_EQ(OffsetOf("DELETE FROM T_TEXT WHERE NO_SUCH = 1"), 25);
  EXPECT_EQ(OffsetOf("DELETE FROM T_TEXT WHERE ID = TO_DATE('2001', 'YYYY') AND NO_SUCH = 1"), 58);
  EXPECT_EQ(OffsetOf("DELETE FROM T_TEXT"), 0);
}

TEST_P(StatementText, MayBeLostOnceItIsPrepared) {
  Statement statement(client);
  std::string text = "SELECT 'kept' FROM DUAL";
  ASSERT_EQ(statement.Prepare(text), OCI_SUCCESS);
  text.assign(text.size(), '!');
  char value[10] = {};
  statement.Define(1, value, sizeof value, SQLT_STR);
  EXPECT_EQ(statement.Execute(), OCI_SUCCESS);
  EXPECT_STREQ(value, "kept");
}

}  // namespace
}  // namespace oci_test

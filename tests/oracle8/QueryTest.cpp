// SPDX-License-Identifier: Apache-2.0
// Queries: every column as text, in blocks.
#include <gmock/gmock.h>

#include <map>

#include "ConnectedDriver.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class DriverQuery : public scripted::ConnectedDriver<> {
 protected:
  std::vector<std::vector<std::string>> Rows() const {
    std::vector<std::vector<std::string>> rows;
    for (const auto& row : m_rows) {
      rows.emplace_back();
      for (const LKString& cell : row) rows.back().push_back(cell.ToChar());
    }
    return rows;
  }
  int Query(const wchar_t* sql = L"SELECT A, B FROM T") { return m_driver.Query(sql, m_rows); }

  std::vector<std::vector<LKString>> m_rows;
};

TEST_F(DriverQuery, GivesEveryRowsColumnsAsTextAndNullAsTheEmptyString) {
  Oci().Answer("SELECT A, B FROM T", {{{"1", "one"}, {"2", std::nullopt}}});
  EXPECT_EQ(Query(), 1);
  EXPECT_THAT(Rows(), ElementsAre(ElementsAre("1", "one"), ElementsAre("2", "")));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DriverQuery, DefinesTextsByTheDescribedSizes) {
  Oci().Describe("SELECT A, B FROM T", {{"A", SQLT_NUM, 22}, {"B", SQLT_CHR, 500}});
  Oci().Answer("SELECT A, B FROM T", {{{"1", "one"}}});
  EXPECT_EQ(Query(), 1);
  EXPECT_THAT(Oci().Calls(),
              ElementsAre("OCIHandleAlloc(env#1, 4, 0, null)",
                          "OCIStmtPrepare(stmt#1, err#1, \"SELECT A, B FROM T\", 18, 1, 0)",
                          "OCIStmtExecute(svc#1, stmt#1, err#1, 0, 0, null, null, 0)",
                          "OCIAttrGet(stmt#1, 4, null, 18, err#1)", "OCIParamGet(stmt#1, 4, err#1, 1)",
                          "OCIAttrGet(par#1, 53, null, 2, err#1)", "OCIAttrGet(par#1, 53, null, 1, err#1)",
                          "OCIDescriptorFree(par#1, 53)", "OCIParamGet(stmt#1, 4, err#1, 2)",
                          "OCIAttrGet(par#2, 53, null, 2, err#1)", "OCIAttrGet(par#2, 53, null, 1, err#1)",
                          "OCIDescriptorFree(par#2, 53)",
                          "OCIDefineByPos(stmt#1, err#1, 1, &, 128, 5, &, null, null, 0)",
                          "OCIDefineByPos(stmt#1, err#1, 2, &, 2001, 5, &, null, null, 0)",
                          "OCIStmtFetch2(stmt#1, err#1, 100, 2, 0, 0)",
                          "OCIAttrGet(stmt#1, 4, null, 197, err#1)", "OCIHandleFree(stmt#1, 4)"));
}

TEST_F(DriverQuery, ReadsPastTheFirstBlockAndStopsAfterAnIncompleteOne) {
  scripted::ResultSet result;
  for (int i = 0; i < 250; ++i) result.push_back({std::to_string(i), "x"});
  Oci().Answer("SELECT A, B FROM T", {result});
  EXPECT_EQ(Query(), 1);
  ASSERT_EQ(m_rows.size(), 250u);
  EXPECT_EQ(m_rows[0][0].ToChar(), "0");
  EXPECT_EQ(m_rows[100][0].ToChar(), "100");
  EXPECT_EQ(m_rows[249][0].ToChar(), "249");
  EXPECT_EQ(Oci().CountCalls("OCIStmtFetch2"), 3);
}

TEST_F(DriverQuery, OfExactlyOneBlockAsksOnceMoreAndGetsNothing) {
  scripted::ResultSet result(100, {"1", "x"});
  Oci().Answer("SELECT A, B FROM T", {result});
  EXPECT_EQ(Query(), 1);
  EXPECT_EQ(m_rows.size(), 100u);
  EXPECT_EQ(Oci().CountCalls("OCIStmtFetch2"), 2);
}

TEST_F(DriverQuery, OfLongTextsFetchesFewerRowsAtATime) {
  Oci().Describe("SELECT A, B FROM T", {{"A", SQLT_CLOB, 4000}, {"B", SQLT_BIN, 2000}});
  Oci().Answer("SELECT A, B FROM T", {{{std::string(60000, 'a'), "FF"}}});
  EXPECT_EQ(Query(), 1);
  EXPECT_EQ(m_rows.at(0).at(0).GetLength(), 60000);
  const auto calls = Oci().Calls();
  EXPECT_THAT(calls, testing::Contains("OCIDefineByPos(stmt#1, err#1, 1, &, 65536, 5, &, null, null, 0)"));
  EXPECT_THAT(calls, testing::Contains("OCIDefineByPos(stmt#1, err#1, 2, &, 4001, 5, &, null, null, 0)"));
  EXPECT_THAT(calls, testing::Contains("OCIStmtFetch2(stmt#1, err#1, 15, 2, 0, 0)"));
}

TEST_F(DriverQuery, AppendsToWhatIsThere) {
  Oci().Answer("SELECT A, B FROM T", {{{"1", "x"}}});
  Query();
  Query();
  EXPECT_THAT(Rows(), ElementsAre(ElementsAre("1", "x"), ElementsAre("1", "x")));
}

TEST_F(DriverQuery, WithoutRowsSucceeds) {
  EXPECT_EQ(Query(), 1);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DriverQuery, NeverGivesAValueThatWasCut) {
  Oci().Describe("SELECT A, B FROM T", {{"A", SQLT_NUM, 22}, {"B", SQLT_CHR, 10}});
  Oci().Answer("SELECT A, B FROM T", {{{"1", "whole"}, {"2", std::string(200, 'b')}}});
  EXPECT_EQ(Query(), 0);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR -1: Cannot query: SELECT A, B FROM T (read column 2: a value is longer than "
                          "the 127 bytes that a query returns of this type.)"));
  EXPECT_EQ(ExtraHandles(), 0);
}

TEST_F(DriverQuery, ReportsTheTextOfTheQueryThatFailed) {
  Oci().FailSql("SELECT", 1, OraFault(942, "table or view does not exist"));
  EXPECT_EQ(Query(), 0);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre(AllOf(StartsWith("ERROR 942: Cannot query: SELECT A, B FROM T"),
                                HasSubstr("\nORA-00942: table or view does not exist"))));
}

TEST_F(DriverQuery, AddsNoRowAndLeavesNoHandleWhicheverCallFails) {
  scripted::ResultSet result(150, {"1", "x"});
  Oci().Answer("SELECT A, B FROM T", {result});
  Query();
  std::map<std::string, int> seen;
  for (const std::string& call : Oci().CallNames()) {
    if (call == "OCIDescriptorFree" || call == "OCIHandleFree") continue;
    const int nth = ++seen[call];
    m_rows.clear();
    m_reports.Clear();
    Oci().FailCall(call, nth, OraFault(600));
    EXPECT_EQ(Query(), 0) << call << " " << nth;
    EXPECT_THAT(Rows(), IsEmpty()) << call << " " << nth;
    EXPECT_EQ(ExtraHandles(), 0) << call << " " << nth;
    EXPECT_EQ(m_reports.Reports().size(), 1u) << call << " " << nth;
  }
  EXPECT_THAT(Oci().Violations(), IsEmpty());
}

}  // namespace

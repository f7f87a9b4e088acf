// SPDX-License-Identifier: Apache-2.0
// The generated tables: the texts that create and drop them.
#include <stdexcept>

#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

size_t Count(const std::string& text, const std::string& part) {
  size_t nCount = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++nCount;
  return nCount;
}

class CreateTables : public plugin_test::SchemaTest {
 protected:
  CreateTables() {
    SetTables(1);
    SetColumnNumbers(2, 2);
    SetColumns({Column(L"NUMBER", 1, false)});
  }

  int Run() {
    Bind(m_xact);
    return m_xact.Execute();
  }
  std::string Build(int nTableIndex) {
    Bind(m_xact);
    m_xact.BuildCreationSQL(nTableIndex);
    return m_xact.GetExecuteSQL().ToChar();
  }
  // A table of two columns of the one type above.
  static std::string TwoNumbers(int nTableIndex) {
    return "CREATE TABLE LK_REP_TABLE" + std::to_string(nTableIndex) +
           " (ID NUMBER NOT NULL,Column1 NUMBER NOT NULL,Column2 NUMBER NOT NULL, PRIMARY KEY(ID))";
  }

  CXact_Create_RepTables m_xact;
};

TEST_F(CreateTables, StartsAtTheFirstTableOfTheRun) {
  SetTables(8);
  m_properties.SetIntAttribute1(5);
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(TwoNumbers(5), TwoNumbers(6), TwoNumbers(7), TwoNumbers(8)));
}

TEST_F(CreateTables, AFirstTableBelowOneMeansTableOne) {
  m_properties.SetIntAttribute1(-3);
  EXPECT_EQ(Run(), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(TwoNumbers(1)));
}

TEST_F(CreateTables, EqualBoundsGiveEveryTableThatManyColumns) {
  SetColumnNumbers(7, 7);
  for (int nTable = 1; nTable <= 20; ++nTable) EXPECT_EQ(Count(Build(nTable), "Column"), 7u) << nTable;
}

TEST_F(CreateTables, TheColumnCountIsDrawnWithinItsBoundsFromTheRunningStream) {
  SetColumnNumbers(2, 5);
  std::set<size_t> counts;
  for (int nDraw = 0; nDraw < 100; ++nDraw) counts.insert(Count(Build(1), "Column"));
  EXPECT_THAT(counts, ElementsAre(2, 3, 4, 5));
  EXPECT_THAT(m_asserts.Texts(), IsEmpty());
}

TEST_F(CreateTables, EachTableTakesOneDrawFromTheRunningStreamAndItsTypesNone) {
  SetTables(20);
  SetColumns({Column(L"NUMBER", 2, false), Column(L"DATE", 3, true)});
  SetColumnNumbers(2, 50);
  m_xact.GetRandomGenerator().Seed(11);
  CRandom twin;
  twin.Seed(11);
  EXPECT_EQ(Run(), 1);
  std::vector<size_t> counts;
  std::vector<size_t> draws;
  for (const std::string& sql : Oci().ExecutedSql()) {
    counts.push_back(Count(sql, "Column"));
    draws.push_back(static_cast<size_t>(twin.GetRandom(2, 50)));
  }
  EXPECT_EQ(counts.size(), 20u);
  EXPECT_EQ(counts, draws);
  EXPECT_EQ(m_xact.GetRandomGenerator().GetRandom(1, 1000000000), twin.GetRandom(1, 1000000000));
}

TEST_F(CreateTables, ASingleTypeIsEveryColumnsTypeWhateverTheSeed) {
  SetColumns({Column(L"CHAR(3)", 9, true)});
  SetColumnNumbers(4, 4);
  for (int nTable = 1; nTable <= 20; ++nTable) EXPECT_EQ(Count(Build(nTable), " CHAR(3) "), 4u) << nTable;
}

TEST_F(CreateTables, TheTypesDependOnTheTableNumberAlone) {
  SetColumns({Column(L"NUMBER", 2, false), Column(L"DATE", 3, true), Column(L"CHAR(9)", 1, false)});
  SetColumnNumbers(30, 30);
  const std::string first = Build(3);
  EXPECT_NE(Build(4).substr(30), first.substr(30));
  EXPECT_EQ(Build(3), first);
}

TEST_F(CreateTables, AWeightOfZeroIsNeverChosenAndWeightsAreFrequencies) {
  SetColumns({Column(L"NUMBER", 1, false), Column(L"DATE", 0, false), Column(L"CHAR(9)", 3, false)});
  SetColumnNumbers(4000, 4000);
  const std::string sql = Build(1);
  EXPECT_EQ(Count(sql, " DATE "), 0u);
  EXPECT_EQ(Count(sql, " NUMBER NOT NULL") - 1 + Count(sql, " CHAR(9) "), 4000u);  // less that of ID
  EXPECT_NEAR(static_cast<double>(Count(sql, " CHAR(9) ")), 3000, 150);
}

TEST_F(CreateTables, EachColumnIsDrawnFromConsecutiveSlotsInTheOrderOfTheDefinitions) {
  SetColumns({Column(L"NUMBER", 2, false), nullptr, Column(L"DATE", 1, false), Column(L"CHAR(9)", 3, false)});
  SetColumnNumbers(50, 50);
  const char* const slots[] = {"NUMBER", "NUMBER", "DATE", "CHAR(9)", "CHAR(9)", "CHAR(9)"};
  CUniqueRandom twin;
  twin.Seed(7);
  std::string sql = "CREATE TABLE LK_REP_TABLE7 (ID NUMBER NOT NULL,";
  for (int nColumn = 1; nColumn <= 50; ++nColumn)
    sql += "Column" + std::to_string(nColumn) + " " + slots[twin.GetRandom(6) - 1] +
           (nColumn == 50 ? " NOT NULL, PRIMARY KEY(ID))" : " NOT NULL,");
  EXPECT_EQ(Build(7), sql);
}

TEST_F(CreateTables, AMissingEntryTakesNoSlot) {
  SetColumns({nullptr, Column(L"NUMBER", 1, false)});
  EXPECT_EQ(Build(1), TwoNumbers(1));
}

TEST_F(CreateTables, ANullableColumnHasNoConstraintAndABlankBeforeItsComma) {
  SetColumns({Column(L"DATE", 1, true)});
  EXPECT_EQ(Build(1),
            "CREATE TABLE LK_REP_TABLE1 (ID NUMBER NOT NULL,Column1 DATE ,Column2 DATE , PRIMARY KEY(ID))");
}

TEST_F(CreateTables, MixedColumnsAreSpacedAsEachTypeAsksFor) {
  SetColumns({Column(L"NUMBER", 1, false), Column(L"DATE", 1, true)});
  SetColumnNumbers(3, 3);
  const std::string head = "CREATE TABLE LK_REP_TABLE3 (ID NUMBER NOT NULL,";
  const std::string sql = Build(3);
  ASSERT_THAT(sql, StartsWith(head));
  std::string rest = sql.substr(head.size());
  for (int nColumn = 1; nColumn <= 3; ++nColumn) {
    const std::string name = "Column" + std::to_string(nColumn);
    const std::string end = nColumn == 3 ? ", PRIMARY KEY(ID))" : ",";
    const std::string number = name + " NUMBER NOT NULL" + end;
    const std::string date = name + " DATE " + end;
    ASSERT_TRUE(rest.starts_with(number) || rest.starts_with(date)) << rest;
    rest.erase(0, rest.starts_with(number) ? number.size() : date.size());
  }
  EXPECT_EQ(rest, "");
}

TEST_F(CreateTables, NoColumnsLeaveATextThatTheDatabaseRejects) {
  SetColumnNumbers(0, 0);
  const std::string sql = "CREATE TABLE LK_REP_TABLE1 (ID NUMBER NOT NULL,";
  Oci().FailSql(sql, 1, OraFault(904, "invalid identifier"));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(sql));
  EXPECT_THAT(m_reports.Reports(), ElementsAre(HasSubstr("ORA-00904")));
}

TEST_F(CreateTables, ANegativeNumberOfColumnsIsNoneAndDrawsNoType) {
  SetColumnNumbers(-1, -1);
  SetColumns({Column(L"NUMBER", 0, false)});  // a draw would throw
  EXPECT_EQ(Build(1), "CREATE TABLE LK_REP_TABLE1 (ID NUMBER NOT NULL,");
}

TEST_F(CreateTables, NegativeWeightsEndInTheExceptionOfTheArray) {
  SetColumns({Column(L"NUMBER", -1, false)});
  EXPECT_THROW(Build(1), std::out_of_range);
  SetColumns({Column(L"NUMBER", -1, false), Column(L"DATE", 3, true)});
  EXPECT_THROW(Build(1), std::out_of_range);
}

TEST_F(CreateTables, WithoutDefinitionsTheTextIsEmptyAndAnAssertionReports) {
  m_properties.GetRepBenchmarkProperties().ClearColumnInfo();
  m_xact.m_szSQL = L"an earlier text";
  EXPECT_EQ(Build(1), "");
  EXPECT_THAT(
      m_asserts.Texts(),
      ElementsAre(
          "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:110 BuildCreationSQL: pColumnInforArray"));
}

TEST_F(CreateTables, ReversedColumnBoundsAreExchangedByTheDrawAndReportedOnly) {
  SetColumnNumbers(3, 2);
  EXPECT_THAT(Count(Build(1), "Column"), testing::AnyOf(2u, 3u));
  EXPECT_THAT(
      m_asserts.Texts(),
      ElementsAre("Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:128 BuildCreationSQL: "
                  "nTotalColumnNumber >= nMinColumnNumber && nTotalColumnNumber <= nMaxColumnNumber"));
}

TEST_F(CreateTables, AFailedTableEndsTheRunAndItsTextIsShown) {
  SetTables(3);
  Oci().FailSql("CREATE TABLE LK_REP_TABLE2", 1, OraFault(955));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(TwoNumbers(1), TwoNumbers(2)));
  EXPECT_EQ(m_xact.GetExecuteSQL().ToChar(), TwoNumbers(2));
  EXPECT_TRUE(m_xact.GetTimer().IsEnded());
}

class DropTables : public plugin_test::SchemaTest {
 protected:
  int Run() {
    Bind(m_xact);
    return m_xact.Execute();
  }
  static std::string Drop(int nTable) { return "DROP TABLE LK_REP_TABLE" + std::to_string(nTable); }

  CXact_Drop_RepTables m_xact;
};

TEST_F(DropTables, StartsAtTheFirstTableOfTheRunAndGoesBeyondTheNumberOfTables) {
  SetTables(8);
  m_properties.SetIntAttribute1(5);
  Oci().FailSql(Drop(10), 1, OraFault(942));
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(Drop(5), Drop(6), Drop(7), Drop(8), Drop(9), Drop(10)));
}

TEST_F(DropTables, TheTemplateIsSetAnewInEveryRunAndTheCountersStayZero) {
  m_xact.m_szSQL = L"something else";
  m_xact.m_nRows = 7;
  Oci().FailSql(Drop(1), 1, OraFault(942));
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(m_xact.m_szSQL.ToChar(), "DROP TABLE LK_REP_TABLE%d");
  EXPECT_EQ(m_xact.GetTimer().GetRows(), 0);
}

}  // namespace

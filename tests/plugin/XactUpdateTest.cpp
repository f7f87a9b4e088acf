// SPDX-License-Identifier: Apache-2.0
#include "Benchmarks/CREP_ORA8/Xact_Update.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>

#include "Benchmarks/CREP_ORA8/DataGenerator.h"
#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "Recorders.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

// A bind that has no generator to offer.
class NoGeneratorBind : public IBind {
 public:
  using IBind::IBind;
  int Initialize() override { return 1; }
  int BindColumn(OCIStmt*, OCIError*) override { return 1; }
  int SetData(long, void*, int) override { return 1; }
  IDataGenerator* GetDataGenerator() override { return nullptr; }
};

class XactUpdate : public WorkloadTest<CXact_Update> {
 protected:
  std::string Sql() const { return m_xact.m_szSQL.ToChar(); }
  // The SET list for row 42 of table 1, whose record is made and then changed.
  template <class Change>
  std::string SetListAfter(Change change) {
    Start();
    CRepTable table(&m_driver, L"LK_REP_TABLE1");
    EXPECT_EQ(table.Initialize(), 1);
    const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(1));
    pLoader->MakeRecord(42);
    change(table, *pLoader);
    m_xact.m_nRowID = 42;
    return m_xact.BuildSetList(table, *pLoader).ToChar();
  }
  // A twin of the stream of a run that has just started draws the same rows.
  void ExpectDrawnRows(int nTables, int nLastRow) {
    CRandom random;
    random.Seed(kUser + 2);
    for (int i = 0; i < 200; ++i) {
      random.GetRandomInt(1, 100);  // the percentage, also where nothing can be chosen by it
      const int nTable = random.GetRandomInt(1, nTables);
      const int nRow = random.GetRandomInt(1, nLastRow);
      m_xact.BuildSQL();
      ASSERT_EQ(m_xact.m_nTableID, nTable);
      ASSERT_EQ(m_xact.m_nRowID, nRow);
    }
  }
  static void ReplaceBind(CTableLoader& loader, long nIndex, IBind* pBind) {
    IBind*& pPlace = loader.GetBindArray()[nIndex];
    delete pPlace;
    pPlace = pBind;
  }
};

TEST_F(XactUpdate, WithoutAnOracleDriverTheTextIsEmpty) {
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    m_xact.m_szSQL = L"of the iteration before";
    m_xact.SetDriver(pDriver);
    m_xact.BuildSQL();
    EXPECT_EQ(Sql(), "");
  }
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(XactUpdate, WithAnEmptyMapTableAndRowAreDrawnFromTheTruncatedScale) {
  SetSettings(5, 2.7);
  Start();
  ExpectDrawnRows(5, 2000);
}

TEST_F(XactUpdate, WithoutABenchmarkOfItsKindTheRowIsAlwaysDrawn) {
  m_benchmark.RecordRow(3, 1200);
  SetSettings(5, 1.0);
  CSSBenchmark other;
  for (CSSBenchmark* pBenchmark : {static_cast<CSSBenchmark*>(nullptr), &other}) {
    m_xact.SetBenchmark(pBenchmark);
    Start();
    ExpectDrawnRows(5, 1000);
  }
}

// The last row is row 0 then, and exchanged bounds are no error.
TEST_F(XactUpdate, OfAScaleBelowOneDrawsTheRows0And1) {
  SetSettings(1, 0.9);
  Start();
  EXPECT_THAT(RowsOfExecutions(50), ElementsAre(0, 1));
}

TEST_F(XactUpdate, AbovePercent50TheSmallestKeyIsUpdatedAndStaysInTheMap) {
  m_benchmark.RecordRow(4, 1234);
  m_benchmark.RecordRow(3, 1200);
  SetSettings(5, 1.0);
  Start();
  CRandom random;
  random.Seed(kUser + 2);
  std::set<int> percents;
  for (int i = 0; i < 1000; ++i) {
    const int nPercent = random.GetRandomInt(1, 100);
    const bool bRandom = nPercent <= 50;
    const int nTable = bRandom ? random.GetRandomInt(1, 5) : 3;
    const int nRow = bRandom ? random.GetRandomInt(1, 1000) : 1200;
    m_xact.BuildSQL();
    ASSERT_EQ(m_xact.m_nTableID, nTable);
    ASSERT_EQ(m_xact.m_nRowID, nRow);
    percents.insert(nPercent);
  }
  EXPECT_EQ(percents.size(), 100U) << "both sides of the limit are drawn";
  EXPECT_THAT(MapEntries(), SizeIs(2));
}

TEST_F(XactUpdate, OnceADeleteTookTheRowTheNextSmallestKeyIsUpdated) {
  m_benchmark.RecordRow(3, 1200);
  m_benchmark.RecordRow(4, 1234);
  SetSettings(5, 1.0);
  Start();
  DeleteOneRow();
  bool bSeen = false;
  for (int i = 0; i < 50; ++i) {
    m_xact.BuildSQL();
    ASSERT_NE(m_xact.m_nRowID, 1200);
    bSeen = bSeen || (m_xact.m_nTableID == 4 && m_xact.m_nRowID == 1234);
  }
  EXPECT_TRUE(bSeen);
}

TEST_F(XactUpdate, ATableWithOnlyAnIdSetsTheIdToItself) {
  DescribeTable(1, {{"ID"}});
  Start();
  m_xact.BuildSQL();
  const std::string id = std::to_string(m_xact.m_nRowID);
  EXPECT_EQ(Sql(), "update LK_REP_TABLE1 set ID=" + id + " where id = " + id);
}

TEST_F(XactUpdate, EveryColumnIsSetByItsIndexWithASlashedDateUnderADashedMask) {
  DescribeTable(1, {{"ID"},
                    {"FIRST", SQLT_NUM, 22, 5, 2, 0},
                    {"SECOND", SQLT_AFC, 4, 0, 0, 0},
                    {"D", SQLT_DAT, 7, 0, 0, 0}});
  Start();
  m_xact.BuildSQL();
  EXPECT_THAT(
      Sql(),
      MatchesRegex("update LK_REP_TABLE1 set ID=[0-9]+,COLUMN1=[0-9]+\\.[0-9]{6},COLUMN2='[A-Za-z]{1,4}',"
                   "COLUMN3=TO_DATE\\('[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}', "
                   "'YYYY-MM-DD HH24:MI:SS'\\) where id = [0-9]+"));
}

TEST_F(XactUpdate, ALongColumnCountsAsANumber) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_LNG, 0, 0, 0, 0}});
  Start();
  m_xact.BuildSQL();
  EXPECT_THAT(Sql(),
              MatchesRegex("update LK_REP_TABLE1 set ID=[0-9]+,COLUMN1=[0-9]+\\.[0-9]{6} where id = [0-9]+"));
}

TEST_F(XactUpdate, EveryTypeOfCharactersIsATextAndEveryOtherNumberANumber) {
  DescribeTable(1, {{"id"},
                    {"A", SQLT_CHR, 4, 0, 0, 0},
                    {"B", SQLT_AFC, 4, 0, 0, 0},
                    {"C", SQLT_AVC, 4, 0, 0, 0},
                    {"D", SQLT_INT, 4, 0, 0, 0}});
  Start();
  m_xact.BuildSQL();
  EXPECT_THAT(Sql(), MatchesRegex(
                         "update LK_REP_TABLE1 set ID=[0-9]+,COLUMN1='[A-Za-z]{1,4}',COLUMN2='[A-Za-z]{1,4}',"
                         "COLUMN3='[A-Za-z]{1,4}',COLUMN4=[0-9]+\\.[0-9]{6} where id = [0-9]+"));
}

TEST_F(XactUpdate, ATableWithoutColumnsHasAnEmptySetList) {
  DescribeTable(1, {});
  Start();
  m_xact.BuildSQL();
  EXPECT_EQ(Sql(), "update LK_REP_TABLE1 set  where id = " + std::to_string(m_xact.m_nRowID));
}

// A generator that made NULL of a nullable column: its storage is what is written.
class NullOfColumn : public XactUpdate {
 protected:
  // The SET list for a record whose only value column came out NULL.
  std::string SetListWithNull(const ColumnSpec& column) {
    DescribeTable(1, {{"ID"}, column});
    return SetListAfter([](CRepTable&, CTableLoader& loader) {
      while (Indicator(*loader.GetBindArray()[1]) != -1) {
        loader.m_nNumberOfRows = 0;
        loader.MakeRecord(42);
      }
    });
  }
  static sb2 Indicator(IBind& bind) {
    if (const auto* pNumber = dynamic_cast<CBind<double, SQLT_FLT>*>(&bind)) return *pNumber->m_pIndicator;
    return *dynamic_cast<CStrBind<char>&>(bind).m_pIndicator;
  }
};

TEST_F(NullOfColumn, IsWrittenAsAnEmptyText) {
  EXPECT_EQ(SetListWithNull({"COLUMN1", SQLT_CHR, 4, 0, 0, 1}), "ID=42,COLUMN1=''");
}

TEST_F(NullOfColumn, IsWrittenAsAnEmptyDate) {
  EXPECT_EQ(SetListWithNull({"COLUMN1", SQLT_DAT, 7, 0, 0, 1}),
            "ID=42,COLUMN1=TO_DATE('', 'YYYY-MM-DD HH24:MI:SS')");
}

TEST_F(NullOfColumn, IsWrittenAsTheNumberBefore) {
  // NUMBER(12,12) is always 0, so the number before is known.
  EXPECT_EQ(SetListWithNull({"COLUMN1", SQLT_NUM, 22, 12, 12, 1}), "ID=42,COLUMN1=0.000000");
}

TEST_F(XactUpdate, ATimestampIsWrittenAsADate) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_TIMESTAMP, 11, 0, 6, 0}});
  Start();
  m_xact.BuildSQL();
  EXPECT_THAT(Sql(), MatchesRegex("update LK_REP_TABLE1 set ID=[0-9]+,COLUMN1=TO_DATE\\('.{19}', "
                                  "'YYYY-MM-DD HH24:MI:SS'\\) where id = [0-9]+"));
}

TEST_F(XactUpdate, AColumnOfAnUnknownTypeHasNoBindAndTheListEndsWithTheRangeError) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_BLOB, 4000, 0, 0, 0}});
  Start();
  EXPECT_THROW(m_xact.BuildSQL(), std::out_of_range);
}

TEST_F(XactUpdate, TheRangeErrorLeavesExecuteWithTheTimerStartedAndNothingOfTheTable) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_BLOB, 4000, 0, 0, 0}});
  Start();
  EXPECT_THROW(m_xact.Execute(), std::out_of_range);
  EXPECT_TRUE(m_xact.GetTimer().IsStarted());
  EXPECT_FALSE(m_xact.GetTimer().IsEnded());
  EXPECT_EQ(ExtraHandles(), 1);  // its own statement
}

TEST_F(XactUpdate, AQuoteOrASpecifierInAValueIsWrittenAsItStands) {
  DescribeTable(1, {{"ID"}, {"COLUMN1", SQLT_CHR, 20, 0, 0, 0}});
  const std::string setList = SetListAfter([](CRepTable&, CTableLoader& loader) {
    auto& generator = dynamic_cast<CStrGenerator&>(*loader.GetBindArray()[1]->GetDataGenerator());
    std::strcpy(generator.m_lpValue, "O'Hara %d");
  });
  EXPECT_EQ(setList, "ID=42,COLUMN1='O'Hara %d'");
}

TEST_F(XactUpdate, AColumnWithoutAGeneratorIsAbsentFromTheSetList) {
  const std::string setList = SetListAfter([](CRepTable& table, CTableLoader& loader) {
    ReplaceBind(loader, 2, new NoGeneratorBind(table.GetColumns()[2]));
  });
  EXPECT_THAT(setList, MatchesRegex("ID=42,COLUMN1=[0-9.]+,COLUMN3=TO_DATE.*\\)"));
  EXPECT_THAT(m_asserts.Texts(), IsEmpty());
}

TEST_F(XactUpdate, ABindWithoutAColumnAndAColumnWithoutABindAreAbsentFromTheSetList) {
  const std::string setList = SetListAfter([](CRepTable& table, CTableLoader& loader) {
    ReplaceBind(loader, 2, nullptr);
    loader.GetBindArray().Add(new NoGeneratorBind(nullptr));
    table.GetColumns().m_nColumns = 5;  // the fifth is null
  });
  EXPECT_THAT(setList, MatchesRegex("ID=42,COLUMN1=[0-9.]+,COLUMN3=TO_DATE.*\\)"));
}

const char* const kUnknownType = "Benchmarks/CREP_ORA8/Xact_Update.cpp:216 BuildSQL: 0";

TEST_F(XactUpdate, AColumnOfAnUnknownTypeIsAbsentFromTheSetListAfterAnAssertion) {
  const std::string setList =
      SetListAfter([](CRepTable& table, CTableLoader&) { table.GetColumns()[1]->m_nDataType = SQLT_BLOB; });
  EXPECT_THAT(setList, MatchesRegex("ID=42,COLUMN2='[A-Za-z]+',COLUMN3=TO_DATE.*\\)"));
  EXPECT_THAT(m_asserts.Texts(), ElementsAre(kUnknownType));
}

TEST_F(XactUpdate, AColumnOfAnUnknownTypeIsReportedWithoutAGeneratorToo) {
  SetListAfter([](CRepTable& table, CTableLoader& loader) {
    table.GetColumns()[1]->m_nDataType = SQLT_BLOB;
    ReplaceBind(loader, 1, new NoGeneratorBind(table.GetColumns()[1]));
  });
  EXPECT_THAT(m_asserts.Texts(), ElementsAre(kUnknownType));
}

}  // namespace
}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
// The array-insert loader: its text, its binds, its batches.
#include "Benchmarks/CREP_ORA8/TableLoader.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <memory>

#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace {

using scripted::ColumnSpec;
using scripted::DateColumn;
using scripted::DescribeTable;
using scripted::IdColumn;
using scripted::NumberColumn;
using scripted::Oci;
using scripted::TextColumn;
using testing::ElementsAre;
using testing::IsEmpty;

class TableLoader : public scripted::ConnectedDriver<> {
 protected:
  // A loader of that table; calls from here on are the test's own.
  CTableLoader& Loader(const std::vector<ColumnSpec>& columns, unsigned int nRowsPerCommit) {
    DescribeTable("LK_REP_TABLE1", columns);
    m_pTable = std::make_unique<CRepTable>(&m_driver, L"LK_REP_TABLE1");
    EXPECT_EQ(m_pTable->Initialize(), 1);
    m_pLoader.reset(m_pTable->CreateLoader(nRowsPerCommit));
    Oci().ClearCalls();
    return *m_pLoader;
  }
  CTableLoader& BoundLoader(const std::vector<ColumnSpec>& columns, unsigned int nRowsPerCommit) {
    CTableLoader& loader = Loader(columns, nRowsPerCommit);
    loader.SetStartingRows(1);
    EXPECT_EQ(loader.BindColumns(), 1);
    Oci().ClearCalls();
    return loader;
  }
  void Fill(CTableLoader& loader, long nFirst, long nLast) {
    for (long nRow = nFirst; nRow <= nLast; ++nRow) EXPECT_EQ(loader.MakeRecord(nRow), 1);
  }

  std::unique_ptr<CRepTable> m_pTable;
  std::unique_ptr<CTableLoader> m_pLoader;  // goes before the table
};

TEST_F(TableLoader, StartsEmptyAndCommitting) {
  const CTableLoader loader(&m_driver, L"T");
  EXPECT_EQ(loader.m_nRowsPerCommit, 50);
  EXPECT_EQ(loader.m_nCommitMode, 32U);
  EXPECT_TRUE(loader.IsAutoCommit());
  EXPECT_EQ(loader.m_nTotalRows, 0);
  EXPECT_EQ(loader.m_nStartingRows, 0);
  EXPECT_EQ(loader.m_nRowIndex, 0);
  EXPECT_EQ(loader.m_nNumberOfRows, 0);
  EXPECT_EQ(loader.m_pColumns, nullptr);
  EXPECT_EQ(loader.m_pInsertStmt, nullptr);
}

TEST_F(TableLoader, InitializeNeedsColumns) {
  CTableLoader loader(&m_driver, L"T");
  EXPECT_EQ(loader.Initialize(nullptr, 10), 0);
  EXPECT_EQ(loader.m_nRowsPerCommit, 50);
}

TEST_F(TableLoader, InitializeFailsWhenAColumnGetsNoBind) {
  DescribeTable("T", {IdColumn(), {"DOC", SQLT_CLOB, 4000, 0, 0, 1}, TextColumn("NAME", 4)});
  CRepTable table(&m_driver, L"T");
  ASSERT_EQ(table.Initialize(), 1);
  CTableLoader loader(&m_driver, L"T");
  EXPECT_EQ(loader.Initialize(&table.GetColumns(), 10), 0);
  EXPECT_EQ(loader.m_nRowsPerCommit, 10);
  EXPECT_EQ(loader.GetBindArray().GetCount(), 2);
  EXPECT_EQ(loader.GetBindArray()[1]->GetColumn(), table.GetColumns().GetAt(2));
}

TEST_F(TableLoader, InitializeGivesEveryColumnABindInColumnOrder) {
  DescribeTable("T", {IdColumn(), DateColumn("BORN")});
  CRepTable table(&m_driver, L"T");
  ASSERT_EQ(table.Initialize(), 1);
  CTableLoader loader(&m_driver, L"T");
  EXPECT_EQ(loader.Initialize(&table.GetColumns(), 10), 1);
  ASSERT_EQ(loader.GetBindArray().GetCount(), 2);
  EXPECT_EQ(loader.GetBindArray()[0]->GetColumn(), table.GetColumns().GetAt(0));
  EXPECT_EQ(loader.GetBindArray()[1]->GetColumn(), table.GetColumns().GetAt(1));
}

TEST_F(TableLoader, InitializeBeginsAtTheFirstRowOfTheArrays) {
  DescribeTable("T", {IdColumn()});
  CRepTable table(&m_driver, L"T");
  ASSERT_EQ(table.Initialize(), 1);
  CTableLoader loader(&m_driver, L"T");
  loader.m_nRowIndex = 7;
  EXPECT_EQ(loader.Initialize(&table.GetColumns(), 10), 1);
  EXPECT_EQ(loader.m_nRowIndex, 0);
}

TEST_F(TableLoader, IsSeededByTheNextRandomNumberAfterTheClocksSecond) {
  const time_t nBefore = time(nullptr);
  CTableLoader loader(&m_driver, L"T");
  loader.Initialize(nullptr, 10);  // seeds also without columns
  const time_t nAfter = time(nullptr);
  const long nDraw = loader.m_RandGen.UnifInt(1, 1000000000);
  bool bFound = false;
  for (time_t nSecond = nBefore; nSecond <= nAfter; ++nSecond) {
    srand(static_cast<unsigned int>(nSecond));
    CRandGen twin;
    twin.SetSeed(rand());
    bFound = bFound || twin.UnifInt(1, 1000000000) == nDraw;
  }
  EXPECT_TRUE(bFound);
}

TEST_F(TableLoader, TheStartingRowReachesEveryGeneratorButTheKeys) {
  CTableLoader& loader = Loader({IdColumn(), NumberColumn("COLUMN1", 5, 0), DateColumn("COLUMN2")}, 5);
  loader.SetStartingRows(751);
  EXPECT_EQ(loader.m_nStartingRows, 751);
  for (const long i : {1, 2}) {
    const IDataGenerator* pGenerator = loader.GetBindArray()[i]->GetDataGenerator();
    EXPECT_EQ(pGenerator->m_nStartingRow, 751);
    EXPECT_EQ(pGenerator->m_pRandGen, &loader.m_RandGen);
  }
  const IDataGenerator* pKey = loader.GetBindArray()[0]->GetDataGenerator();
  EXPECT_EQ(pKey->m_nStartingRow, 0);
  EXPECT_EQ(pKey->m_pRandGen, nullptr);
}

TEST_F(TableLoader, AScaleOfMinus127IsDescribedAsAnIntegerARealOrAFloat) {
  CTableLoader& loader = Loader({IdColumn(), NumberColumn("COLUMN1", 0, -127),
                                 NumberColumn("COLUMN2", 63, -127), NumberColumn("COLUMN3", 126, -127)},
                                5);
  const auto typeOf = [&](long nBind) {
    return dynamic_cast<CNumberGenerator*>(loader.GetBindArray()[nBind]->GetDataGenerator())->GetTypeCode();
  };
  EXPECT_EQ(typeOf(1), CNumberGenerator::eInt);
  EXPECT_EQ(typeOf(2), CNumberGenerator::eReal);
  EXPECT_EQ(typeOf(3), CNumberGenerator::eFloat);
}

TEST_F(TableLoader, TheTotalIsNotedOnly) {
  CTableLoader& loader = Loader({IdColumn()}, 5);
  loader.SetTotalRows(1500);
  EXPECT_EQ(loader.m_nTotalRows, 1500);
}

TEST_F(TableLoader, TheInsertConvertsExactlyTheDateColumns) {
  CTableLoader& loader = Loader({IdColumn(),
                                 TextColumn("COLUMN1", 20),
                                 DateColumn("COLUMN2"),
                                 {"COLUMN3", SQLT_TIMESTAMP, 11, 0, 6, 1},
                                 NumberColumn("COLUMN4", 5, 0)},
                                5);
  EXPECT_EQ(
      loader.BuildSQL().ToChar(),
      "INSERT INTO LK_REP_TABLE1 (ID, COLUMN1, COLUMN2, COLUMN3, COLUMN4) VALUES (:ID, :COLUMN1, "
      "TO_DATE(:COLUMN2, 'YYYY/MM/DD HH24:MI:SS'), TO_DATE(:COLUMN3, 'YYYY/MM/DD HH24:MI:SS'), :COLUMN4)");
}

TEST_F(TableLoader, TheInsertOfASingleColumnHasNoComma) {
  EXPECT_EQ(Loader({IdColumn()}, 5).BuildSQL().ToChar(), "INSERT INTO LK_REP_TABLE1 (ID) VALUES (:ID)");
}

TEST_F(TableLoader, CleanupEmptiesTheBinds) {
  CTableLoader& loader = Loader({IdColumn(), TextColumn("A", 4)}, 5);
  loader.Cleanup();
  EXPECT_TRUE(loader.GetBindArray().IsEmpty());
}

TEST_F(TableLoader, BatchesOfFiveHundredCarryOneThousandTwoHundredAndThirtyFourRows) {
  CTableLoader& loader = BoundLoader({IdColumn(), NumberColumn("COLUMN1", 5, 0)}, 500);
  int nFilled = 0;
  for (long nRow = 1; nRow <= 1234; ++nRow) {
    loader.MakeRecord(nRow);
    if (!loader.NeedSendRows(++nFilled)) continue;
    ASSERT_EQ(loader.SendRows(nFilled), 1);
    nFilled = 0;
  }
  ASSERT_EQ(loader.SendRows(nFilled), 1);
  const auto& batches = Oci().Executions();
  ASSERT_EQ(batches.size(), 3U);
  EXPECT_EQ(batches[0].iters, 500U);
  EXPECT_EQ(batches[1].iters, 500U);
  EXPECT_EQ(batches[2].iters, 234U);
  EXPECT_EQ(batches[0].rows.front()[0], "1");
  EXPECT_EQ(batches[1].rows.front()[0], "501");
  EXPECT_EQ(batches[2].rows.back()[0], "1234");
}

TEST_F(TableLoader, TheCommitModeIsPassedToTheExecute) {
  CTableLoader& loader = BoundLoader({IdColumn()}, 5);
  loader.SetAutoCommit(false);
  EXPECT_FALSE(loader.IsAutoCommit());
  Fill(loader, 1, 1);
  EXPECT_EQ(loader.SendRows(1), 1);
  EXPECT_EQ(Oci().Executions()[0].mode, static_cast<ub4>(OCI_DEFAULT));
  loader.SetAutoCommit(true);
  EXPECT_EQ(loader.m_nCommitMode, static_cast<ub4>(OCI_COMMIT_ON_SUCCESS));
}

TEST_F(TableLoader, TheIdIsTheRowNumberGivenAndNotAGeneratedOne) {
  CTableLoader& loader = BoundLoader({IdColumn(), TextColumn("COLUMN1", 4)}, 5);
  for (const long nRow : {70L, 3L, 9007199254740992L}) loader.MakeRecord(nRow);
  ASSERT_EQ(loader.SendRows(3), 1);
  const auto& rows = Oci().Executions()[0].rows;
  EXPECT_EQ(rows[0][0], "70");
  EXPECT_EQ(rows[1][0], "3");
  EXPECT_EQ(rows[2][0], "9007199254740992");
  EXPECT_EQ(dynamic_cast<CSequenceGenerator*>(loader.GetBindArray()[0]->GetDataGenerator())->m_nNextValue, 1);
}

TEST_F(TableLoader, TheOtherColumnsCarryWhatTheirGeneratorsMake) {
  CTableLoader& loader =
      BoundLoader({IdColumn(), TextColumn("COLUMN1", 30), NumberColumn("COLUMN2", 5, 0)}, 5);
  loader.m_RandGen.SetSeed(11);
  CRandGen twin;
  twin.SetSeed(11);
  std::string first;
  std::string second;
  Fill(loader, 1, 1);
  twin.MakeAlphaString(1, 30, first);
  const double fFirst = twin.UnifReal(0.0, 99999.0);
  EXPECT_STREQ(static_cast<const char*>(loader.GetBindArray()[1]->GetDataGenerator()->GetValue()),
               first.c_str());
  EXPECT_EQ(*static_cast<double*>(loader.GetBindArray()[2]->GetDataGenerator()->GetValue()), fFirst);
  Fill(loader, 2, 2);
  twin.MakeAlphaString(1, 30, second);
  ASSERT_EQ(loader.SendRows(2), 1);
  const auto& rows = Oci().Executions()[0].rows;
  EXPECT_EQ(rows[0][1], first);
  EXPECT_EQ(std::stod(*rows[0][2]), fFirst);
  EXPECT_EQ(rows[1][1], second);
}

TEST_F(TableLoader, GeneratorsGetTheRandomSourceWithEachRecord) {
  CTableLoader& loader = Loader({IdColumn(), TextColumn("COLUMN1", 4)}, 5);
  ASSERT_EQ(loader.BindColumns(), 1);
  EXPECT_EQ(loader.MakeRecord(1), 1);
  EXPECT_EQ(loader.GetBindArray()[1]->GetDataGenerator()->m_pRandGen, &loader.m_RandGen);
}

TEST_F(TableLoader, NullsOfTheFirstRowStandForTheWholeBatch) {
  CTableLoader& loader = BoundLoader({IdColumn(), TextColumn("COLUMN1", 4, 1)}, 3);
  IBind* pBind = loader.GetBindArray()[1];
  char szText[] = "ab";
  Fill(loader, 1, 3);
  pBind->SetData(0, szText, -1);
  pBind->SetData(1, szText, 2);
  pBind->SetData(2, szText, 2);
  ASSERT_EQ(loader.SendRows(3), 1);
  Fill(loader, 4, 6);
  pBind->SetData(0, szText, 2);
  pBind->SetData(1, szText, -1);
  pBind->SetData(2, szText, 2);
  ASSERT_EQ(loader.SendRows(3), 1);
  for (int nRow = 0; nRow < 3; ++nRow) {
    EXPECT_FALSE(Oci().Executions()[0].rows[static_cast<size_t>(nRow)][1].has_value());
    EXPECT_TRUE(Oci().Executions()[1].rows[static_cast<size_t>(nRow)][1].has_value());
  }
}

TEST_F(TableLoader, ALaterBatchSendsTheRestOfLongerTextsBehindShorterOnes) {
  CTableLoader& loader = BoundLoader({IdColumn(), TextColumn("COLUMN1", 30)}, 1);
  loader.m_RandGen.SetSeed(11);
  CRandGen twin;
  twin.SetSeed(11);
  std::string slot;
  int nLongerThanMade = 0;
  for (long nRow = 1; nRow <= 20; ++nRow) {
    Fill(loader, nRow, nRow);
    ASSERT_EQ(loader.SendRows(1), 1);
    std::string made;
    twin.MakeAlphaString(1, 30, made);
    slot = made + (slot.size() > made.size() ? slot.substr(made.size()) : "");
    EXPECT_EQ(Oci().Executions().back().rows[0][1], slot);
    if (slot.size() > made.size()) ++nLongerThanMade;
  }
  EXPECT_GT(nLongerThanMade, 0);
}

TEST_F(TableLoader, RowsFillTheArrayFromItsStartAfterEachBatch) {
  CTableLoader& loader = BoundLoader({IdColumn()}, 3);
  Fill(loader, 1, 3);
  EXPECT_EQ(loader.m_nRowIndex, 2);
  EXPECT_EQ(loader.m_nNumberOfRows, 3);
  EXPECT_EQ(loader.SendRows(3), 1);
  EXPECT_EQ(loader.m_nNumberOfRows, 0);
  Fill(loader, 4, 4);
  EXPECT_EQ(loader.m_nRowIndex, 0);
}

TEST_F(TableLoader, MoreRowsThanTheArraysHoldBeginThemAgainAndCountOn) {
  CTableLoader& loader = BoundLoader({IdColumn(), NumberColumn("COLUMN1", 5, 0)}, 3);
  Fill(loader, 1, 4);
  EXPECT_EQ(loader.m_nRowIndex, 0);
  EXPECT_EQ(loader.m_nNumberOfRows, 4);
  EXPECT_THAT(m_asserts.Conditions(), IsEmpty());
  const auto* pKeys = dynamic_cast<CBind<double, SQLT_FLT>*>(loader.GetBindArray()[0]);
  EXPECT_THAT(std::vector(pKeys->m_pData, pKeys->m_pData + 3), ElementsAre(4, 2, 3));
}

TEST_F(TableLoader, FewerBindsThanColumnsStillNameEveryColumn) {
  CTableLoader& loader = Loader({IdColumn(), {"DOC", SQLT_CLOB, 4000, 0, 0, 1}}, 5);
  EXPECT_EQ(loader.BuildSQL().ToChar(), "INSERT INTO LK_REP_TABLE1 (ID, DOC) VALUES (:ID, :DOC)");
  EXPECT_EQ(loader.BindColumns(), 1);
  EXPECT_EQ(Oci().CountCalls("OCIBindByPos"), 1);
}

TEST_F(TableLoader, WithoutAnyBindARecordIsNothing) {
  CTableLoader& loader = Loader({{"DOC", SQLT_CLOB, 4000, 0, 0, 1}}, 5);
  EXPECT_EQ(loader.MakeRecord(1), 1);
  EXPECT_EQ(loader.m_nNumberOfRows, 1);
}

}  // namespace

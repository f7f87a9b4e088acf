// SPDX-License-Identifier: Apache-2.0
// What the public fields of the plug-in's classes hold before anything was done: other code of a host may
// read them.
#include <gtest/gtest.h>

#include <type_traits>

#include "Benchmarks/CREP_ORA8/Bind.h"
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"

namespace {

// Arrays, statements and generators have one owner.
static_assert(!std::is_copy_constructible_v<CBind<double, SQLT_FLT>>);
static_assert(!std::is_copy_assignable_v<CBind<double, SQLT_FLT>>);
static_assert(!std::is_copy_constructible_v<CStrBind<char>>);
static_assert(!std::is_copy_constructible_v<CColumns>);
static_assert(!std::is_copy_constructible_v<CDateGenerator>);
static_assert(!std::is_copy_constructible_v<CRepTable>);
static_assert(!std::is_copy_constructible_v<CTableLoader>);

TEST(FreshFields, OfTheCreatesAndDropsCountNothing) {
  const CXact_Create_RepTables tables;
  const CXact_Drop_RepTables no_tables;
  EXPECT_EQ(tables.m_nRows, 0);
  EXPECT_EQ(tables.m_nBytes, 0);
  EXPECT_EQ(no_tables.m_nRows, 0);
  EXPECT_EQ(no_tables.m_nBytes, 0);
  EXPECT_EQ(CXact_Create_Sequence().m_nRows, 0);
  EXPECT_EQ(CXact_Create_Replication_Properties_Table().m_nRows, 0);
  EXPECT_EQ(CXact_Drop_Replication_Properties_Table().m_nRows, 0);
}

TEST(FreshFields, OfTheLoadCountNothingAndAskForNoBackup) {
  const CXact_LoadTable_ORA8 load;
  EXPECT_EQ(load.m_nRows, 0);
  EXPECT_EQ(load.m_nBytes, 0);
  EXPECT_FALSE(load.m_bCreateBackup);
  EXPECT_FALSE(load.m_bReloadLastBackup);
}

TEST(FreshFields, OfARefreshHaveNoStatementAndBatchesOf5000) {
  const CREP_RefreshTable_ORA8 refresh;
  EXPECT_EQ(refresh.m_pstmt, nullptr);
  EXPECT_EQ(refresh.m_iRowsPerBatch, 5000);
}

TEST(FreshFields, OfAColumnDescribeNothing) {
  const CColumn column(nullptr, nullptr, 7);
  EXPECT_EQ(column.m_nNumber, 7);
  EXPECT_EQ(column.m_nDataType, 0);
  EXPECT_EQ(column.m_nSize, 0);
  EXPECT_EQ(column.m_nPrecision, 0);
  EXPECT_EQ(column.m_nScale, 0);
  EXPECT_EQ(column.m_nNullable, 0);
  EXPECT_EQ(CColumns().m_nColumns, 0U);
}

TEST(FreshFields, OfTheGenerators) {
  const CSequenceGenerator sequence{};
  EXPECT_EQ(sequence.m_nStartingRow, 0);
  EXPECT_EQ(sequence.m_pRandGen, nullptr);
  EXPECT_EQ(sequence.m_fSequence, 0.0);
  EXPECT_EQ(sequence.m_nNextValue, 1);
  EXPECT_EQ(sequence.m_nStep, 1);
  EXPECT_EQ(CNumberGenerator(5, 2).m_fValue, 0.0);
  EXPECT_EQ(CDateGenerator().m_szDate[0], '\0');
}

TEST(FreshFields, OfATableAndItsLoader) {
  const CTableLoader loader(nullptr, L"T");
  EXPECT_EQ(CRepTable(nullptr, L"T").m_pStmt, nullptr);
  EXPECT_EQ(loader.m_nTotalRows, 0);
  EXPECT_EQ(loader.m_nStartingRows, 0);
  EXPECT_EQ(loader.m_nRowsPerCommit, 50);
  EXPECT_EQ(loader.m_nRowIndex, 0);
  EXPECT_EQ(loader.m_nNumberOfRows, 0);
  EXPECT_EQ(loader.m_nCommitMode, static_cast<ub4>(OCI_COMMIT_ON_SUCCESS));
  EXPECT_EQ(loader.m_pColumns, nullptr);
  EXPECT_EQ(loader.m_pInsertStmt, nullptr);
}

TEST(FreshFields, OfTheWorkload) {
  const CXact_Insert insert;
  const CXact_Update update;
  const CXact_Delete remove;
  EXPECT_EQ(insert.m_nNumberOfTables, 0);
  EXPECT_EQ(insert.m_fNextID, 0.0);
  EXPECT_EQ(insert.m_nIndicator, 0);
  EXPECT_EQ(insert.m_pStmt, nullptr);
  EXPECT_EQ(update.m_pUpdateStmt, nullptr);
  EXPECT_EQ(update.m_nNumberOfTables, 0);
  EXPECT_EQ(update.m_nTableID, 0);
  EXPECT_EQ(update.m_nRowID, 0);
  EXPECT_EQ(remove.m_pDeleteStmt, nullptr);
  EXPECT_EQ(remove.m_nNumberOfTables, 0);
  EXPECT_FALSE(remove.m_bInsertedRow);
  EXPECT_EQ(remove.m_nTableID, 0);
  EXPECT_EQ(remove.m_nRowID, 0);
}

}  // namespace

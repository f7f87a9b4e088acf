// SPDX-License-Identifier: Apache-2.0
// The order of the fields of the plug-in's classes, behind those of their bases.
#include <gtest/gtest.h>

#include "Benchmarks/CREP_ORA8/Bind.h"
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "FieldOrder.h"

namespace {

constexpr size_t kTable = sizeof(void*);  // the pointer to the virtual table

// Where the fields of a transaction may begin: the first may lie in what pads the host's at their end.
constexpr size_t kXact = sizeof(CXact) - alignof(CXact);

TEST(PluginLayout, OfEveryTransactionBeginsWithTheHosts) {
  const CXact_LoadTable_ORA8 load;
  const CREP_RefreshTable_ORA8 refresh;
  EXPECT_EQ(static_cast<const void*>(static_cast<const CXact*>(&load)), &load);
  EXPECT_EQ(static_cast<const void*>(static_cast<const CXact_LoadTableBase_ORA8*>(&load)), &load);
  EXPECT_EQ(static_cast<const void*>(static_cast<const CREP_Refresh_Base*>(&refresh)), &refresh);
  EXPECT_EQ(Offsets(load, {static_cast<const CRestObject*>(&load)}).front(),
            static_cast<std::ptrdiff_t>(sizeof(wxObject)));
}

TEST(PluginLayout, OfTheBenchmarkBeginsWithTheHostsAndHasTheMapFirst) {
  const CREP_ORA8 benchmark;
  EXPECT_EQ(static_cast<const void*>(static_cast<const CSSBenchmark*>(&benchmark)), &benchmark);
  EXPECT_EQ(Offsets(benchmark, {&benchmark.m_MapTableNumToRowID}).front(),
            static_cast<std::ptrdiff_t>(sizeof(CSSBenchmark)));
}

TEST(PluginLayout, OfTheCreatesAndDrops) {
  const CXact_Create_RepTables tables;
  const CXact_Create_Sequence sequence;
  const CXact_Create_Replication_Properties_Table properties;
  const CXact_Drop_RepTables no_tables;
  const CXact_Drop_Replication_Properties_Table no_properties;
  EXPECT_TRUE(AreInOrder(tables, kXact, {&tables.m_szSQL, &tables.m_nRows, &tables.m_nBytes}));
  EXPECT_TRUE(AreInOrder(sequence, kXact, {&sequence.m_szSQL, &sequence.m_nRows}));
  EXPECT_TRUE(AreInOrder(properties, kXact, {&properties.m_szSQL, &properties.m_nRows}));
  EXPECT_TRUE(AreInOrder(no_tables, kXact, {&no_tables.m_szSQL, &no_tables.m_nRows, &no_tables.m_nBytes}));
  EXPECT_TRUE(AreInOrder(no_properties, kXact, {&no_properties.m_szSQL, &no_properties.m_nRows}));
  EXPECT_EQ(sizeof(CXact_Drop_Sequence), sizeof(CXact));
}

TEST(PluginLayout, OfTheLoad) {
  const CXact_LoadTable_ORA8 load;
  EXPECT_TRUE(
      AreInOrder(load, kXact,
                 {&load.m_szSQL, &load.m_szTableName, &load.m_nRows, &load.m_nBytes, &load.m_bCreateBackup,
                  &load.m_bReloadLastBackup, &load.m_TableArray, &load.m_BackupTableMap}));
}

TEST(PluginLayout, OfTheRefreshes) {
  const CREP_RefreshTable_ORA8 refresh;
  EXPECT_TRUE(AreInOrder(refresh, kXact,
                         {&refresh.m_strSQL, &refresh.m_strTableName, &refresh.m_pstmt,
                          &refresh.m_iRowsPerBatch, &refresh.m_TableArray}));
  EXPECT_EQ(sizeof(CREP_Refresh_Properties_Table), sizeof(CREP_Refresh_Base));
  EXPECT_EQ(sizeof(CREP_Refresh_Sequence), sizeof(CREP_Refresh_Base));
}

TEST(PluginLayout, OfTheWorkload) {
  const CXact_Insert insert;
  const CXact_Update update;
  const CXact_Delete remove;
  EXPECT_TRUE(AreInOrder(
      insert, kXact, {&insert.m_nNumberOfTables, &insert.m_fNextID, &insert.m_nIndicator, &insert.m_pStmt}));
  EXPECT_TRUE(AreInOrder(update, kXact,
                         {&update.m_pUpdateStmt, &update.m_szSQL, &update.m_nNumberOfTables,
                          &update.m_nTableID, &update.m_nRowID}));
  EXPECT_TRUE(AreInOrder(remove, kXact,
                         {&remove.m_pDeleteStmt, &remove.m_szSQL, &remove.m_nNumberOfTables,
                          &remove.m_bInsertedRow, &remove.m_nTableID, &remove.m_nRowID}));
}

TEST(PluginLayout, OfColumns) {
  const CColumn column(nullptr, nullptr, 1);
  const CColumns columns;
  EXPECT_TRUE(AreInOrder(
      column, 0,
      {&column.m_nNumber, &column.m_strName, &column.m_nDataType, &column.m_nSize, &column.m_nPrecision,
       &column.m_nScale, &column.m_nNullable, &column.m_pStmt, &column.m_pError}));
  EXPECT_TRUE(AreInOrder(columns, 0, {&columns.m_ColArray, &columns.m_nColumns}));
}

TEST(PluginLayout, OfBinds) {
  CColumn column(nullptr, nullptr, 1);
  const CBind<double, SQLT_FLT> number(&column, 1);
  const CStrBind<char> text(&column, 1, 5);
  EXPECT_EQ(Offsets(number, {&number.m_pColumn, &number.m_pData}), (std::vector<std::ptrdiff_t>{8, 16}));
  EXPECT_TRUE(AreInOrder(number, sizeof(IBind),
                         {&number.m_pData, &number.m_pIndicator, &number.m_pBind, &number.m_pDataGenerator,
                          &number.m_nSeed, &number.m_nMaxRows}));
  EXPECT_TRUE(AreInOrder(text, sizeof(IBind), {&text.m_pData, &text.m_nMaxRows, &text.m_nMaxChar}));
}

TEST(PluginLayout, OfGenerators) {
  const CSequenceGenerator sequence{};
  const CNumberGenerator number(5, 2);
  const CStrGenerator text(4);
  const CDateGenerator date{};
  EXPECT_TRUE(AreInOrder(sequence, kTable,
                         {&sequence.m_bAllowNull, &sequence.m_nStartingRow, &sequence.m_pRandGen,
                          &sequence.m_fSequence, &sequence.m_nNextValue, &sequence.m_nStep}));
  EXPECT_TRUE(AreInOrder(number, kTable,
                         {&number.m_pRandGen, &number.m_fValue, &number.m_nPercision, &number.m_nScale}));
  EXPECT_TRUE(AreInOrder(text, kTable, {&text.m_pRandGen, &text.m_nMaxLength, &text.m_lpValue}));
  EXPECT_TRUE(AreInOrder(date, kTable, {&date.m_pRandGen, &date.m_szDate}));
  EXPECT_EQ(sizeof date.m_szDate, 35u);
}

TEST(PluginLayout, OfATableAndItsLoader) {
  const CRepTable table(nullptr, L"T");
  const CTableLoader loader(nullptr, L"T");
  EXPECT_TRUE(AreInOrder(table, 0, {&table.m_strName, &table.m_Columns, &table.m_pStmt, &table.m_pDriver}));
  EXPECT_TRUE(
      AreInOrder(loader, 0,
                 {&loader.m_strName, &loader.m_nTotalRows, &loader.m_nStartingRows, &loader.m_nRowsPerCommit,
                  &loader.m_nRowIndex, &loader.m_nNumberOfRows, &loader.m_nCommitMode, &loader.m_pColumns,
                  &loader.m_pInsertStmt, &loader.m_RandGen, &loader.m_BindArray, &loader.m_pDriver}));
}

}  // namespace

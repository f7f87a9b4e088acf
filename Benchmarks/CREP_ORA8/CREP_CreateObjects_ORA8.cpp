// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "CREP_CreateObjects_ORA8.h"

#include <algorithm>

#include "OciCall.h"
#include "SchemaRules.h"

wxIMPLEMENT_DYNAMIC_CLASS(CXact_Create_RepTables, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CXact_Create_Sequence, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CXact_Create_Replication_Properties_Table, CXact);

namespace {

ColumnInfo* GetColumn(const ColumnInfoArray& columns, long nIndex) {
  return dynamic_cast<ColumnInfo*>(columns.GetAt(nIndex));
}

int GetTotalWeight(const ColumnInfoArray& columns) {
  int nTotalWeight = 0;
  for (long nIndex = 0; nIndex < columns.GetCount(); ++nIndex)
    if (const ColumnInfo* pColumn = GetColumn(columns, nIndex)) nTotalWeight += pColumn->GetWeight();
  return nTotalWeight;
}

// Every definition in as many consecutive slots as its weight.
void SpreadByWeight(const ColumnInfoArray& columns, ColumnInfoArray& TotalDistributionArray) {
  long nPreWeight = 0;
  for (long nColumnInfoIndex = 0; nColumnInfoIndex < columns.GetCount(); ++nColumnInfoIndex) {
    ColumnInfo* pColumn = GetColumn(columns, nColumnInfoIndex);
    if (pColumn == nullptr) continue;
    const int nWeight = pColumn->GetWeight();
    for (int nSlot = 0; nSlot < nWeight; ++nSlot) TotalDistributionArray.SetAt(nPreWeight + nSlot, pColumn);
    nPreWeight += nWeight;
  }
}

// Fills every entry of ColumnDistributionArray from a stream that the table number alone seeds.
void DrawColumns(const ColumnInfoArray& columns, int nTableIndex, ColumnInfoArray& ColumnDistributionArray) {
  CUniqueRandom r;
  r.Seed(static_cast<unsigned int>(nTableIndex));
  const int nTotalWeight = GetTotalWeight(columns);
  ColumnInfoArray TotalDistributionArray;
  TotalDistributionArray.SetSize(std::max(0, nTotalWeight));
  SpreadByWeight(columns, TotalDistributionArray);
  for (long nColumnNumber = 0; nColumnNumber < ColumnDistributionArray.GetCount(); ++nColumnNumber) {
    const int nRandomIndex = static_cast<int>(r.GetRandom(static_cast<unsigned int>(nTotalWeight)));
    // kept: the assertion lets 0 pass, which weights of 0 give; the exception of the array ends the run then.
    REP_ASSERT_AT(nRandomIndex > -1 && nRandomIndex < nTotalWeight + 1,
                  "nRandomIndex >-1 && nRandomIndex <nTotalWeight+1", "CREP_CreateObjects_ORA8", 157,
                  "BuildCreationSQL");
    ColumnDistributionArray.SetAt(nColumnNumber, TotalDistributionArray.GetAt(nRandomIndex - 1));
  }
}

// kept: a nullable column has a blank before its comma; hosts show the text as it is.
const char* GetColumnSuffix(bool bNullable, bool bLast) {
  if (bNullable) return bLast ? ", PRIMARY KEY(ID))" : ",";
  return bLast ? "NOT NULL, PRIMARY KEY(ID))" : "NOT NULL,";
}

LKString MakeColumnPiece(const ColumnInfo& column, int nColumnNumber, bool bLast) {
  LKString szColumnName;
  szColumnName.Format(L"Column%d", nColumnNumber);
  LKString szPiece;
  szPiece.Format(L"%s %s %s", szColumnName, column.GetTypeName(), GetColumnSuffix(column.GetIsNull(), bLast));
  return szPiece;
}

// Appends the row of one number to the block.
void AppendNumberRow(LKString& szBlock, const wchar_t* szFormat, int nValue) {
  LKString szRow;
  szRow.Format(szFormat, nValue);
  szBlock += szRow;
}

}  // namespace

CXact_Create_RepTables::CXact_Create_RepTables() {
  SetName(L"Create Replication Tables");
  SetDescription(L"");
  SetXactID(100);
  SetTransactionType(CREATE_TABLE);
}

CXact_Create_RepTables::~CXact_Create_RepTables() = default;

// kept: alone among all transactions this one shows its text, that of the last table.
LKString CXact_Create_RepTables::GetExecuteSQL() { return m_szSQL; }

void CXact_Create_RepTables::BuildCreationSQL(int nTableIndex) {
  const CRepBenchmarkProperties& properties = m_BenchmarkProperties.GetRepBenchmarkProperties();
  const ColumnInfoArray* pColumnInforArray = properties.GetColumnInfo();
  REP_ASSERT_AT(pColumnInforArray, "pColumnInforArray", "CREP_CreateObjects_ORA8", 110, "BuildCreationSQL");
  if (pColumnInforArray == nullptr || pColumnInforArray->IsEmpty()) {
    m_szSQL.Empty();
    return;
  }

  // kept: the number of columns comes from the running stream, the types from the table number; a table that
  // is made again may have more or fewer columns, of the same types.
  const int nMinColumnNumber = properties.GetMinColumnNumber();
  const int nMaxColumnNumber = properties.GetMaxColumnNumber();
  const int nTotalColumnNumber = static_cast<int>(m_Random.GetRandom(nMinColumnNumber, nMaxColumnNumber));
  // kept: reported only; bounds that are exchanged give a number between them all the same.
  REP_ASSERT_AT(nTotalColumnNumber >= nMinColumnNumber && nTotalColumnNumber <= nMaxColumnNumber,
                "nTotalColumnNumber >= nMinColumnNumber && nTotalColumnNumber <= nMaxColumnNumber",
                "CREP_CreateObjects_ORA8", 128, "BuildCreationSQL");
  ColumnInfoArray ColumnDistributionArray;
  ColumnDistributionArray.SetSize(std::max(0, nTotalColumnNumber));
  DrawColumns(*pColumnInforArray, nTableIndex, ColumnDistributionArray);

  LKString szTableName;
  szTableName.Format(L"LK_REP_TABLE%d", nTableIndex);
  // kept: written only now, so an exception of the draws leaves the text of the table before; without columns
  // it ends here, and the database refuses it.
  m_szSQL.Format(L"CREATE TABLE %s (ID NUMBER NOT NULL,", szTableName);
  for (int nColumnIndex = 0; nColumnIndex < nTotalColumnNumber; ++nColumnIndex)
    if (const ColumnInfo* pColumn = GetColumn(ColumnDistributionArray, nColumnIndex))
      m_szSQL += MakeColumnPiece(*pColumn, nColumnIndex + 1, nColumnIndex + 1 == nTotalColumnNumber);
}

void CXact_Create_RepTables::BuildCreationSQLOrFree(OCIStmt* pStmt, int nTableIndex) {
  try {
    BuildCreationSQL(nTableIndex);
  } catch (...) {
    OCIHandleFree(pStmt, OCI_HTYPE_STMT);
    throw;
  }
}

int CXact_Create_RepTables::Execute() {
  // kept: neither null nor type check; the host gives this transaction an Oracle driver or does not run it.
  COracle8Driver* pDriver = static_cast<COracle8Driver*>(m_pDriver);
  OCIStmt* pStmt = nullptr;
  const sword nAllocStatus = AllocStatement(pDriver, &pStmt);
  // kept: the handle comes before the start of the timer, so a failure ends one that was not started, with
  // the counters of the execution before. Every status is reported by its low 16 bits in this transaction.
  if (IsFailure(nAllocStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nBytes);
    return pDriver->HandleError(LowBits(nAllocStatus), pDriver->GetOCIError(), 0, 0);
  }
  m_nRows = 0;
  m_nBytes = 0;
  m_Timer.SetStartTime();

  const int nTables = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  // kept: a cancelled run is a success; the host knows that it asked for it.
  for (int nTableIndex = GetFirstTableNumber(m_BenchmarkProperties); nTableIndex <= nTables && !CancelXact();
       ++nTableIndex) {
    BuildCreationSQLOrFree(pStmt, nTableIndex);
    // kept: without column types the timer keeps running and the handle is not freed; the database saw
    // nothing.
    if (m_szSQL.IsEmpty()) return 0;
    const sword nStatus = PrepareAndExecute(pDriver, pStmt, m_szSQL.ToChar(), OCI_COMMIT_ON_SUCCESS);
    if (IsFailure(nStatus)) {
      m_Timer.SetEndTime(m_nRows, m_nBytes);
      return ReportAndFree(pDriver, pStmt, LowBits(nStatus));
    }
  }
  m_Timer.SetEndTime(m_nRows, m_nBytes);
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
  return 1;
}

CXact_Create_Sequence::CXact_Create_Sequence() {
  SetName(L"Create Sequence");
  SetDescription(L"Create Sequence");
  SetXactID(161);
  SetTransactionType(CREATE_SP);
}

CXact_Create_Sequence::~CXact_Create_Sequence() = default;

int CXact_Create_Sequence::Execute() {
  if (m_pBenchmark == nullptr) return 0;
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;

  // kept: the scale of the owning benchmark here, that of the settings in the refresh of the sequence.
  const __int64 iStartRows = RowsOf(m_pBenchmark->GetBenchmarkScale());
  // kept: reported only; with a scale below 1 the sequence starts lower.
  REP_ASSERT_AT(iStartRows >= 1000, "iStartRows >= 1000", "CREP_CreateObjects_ORA8", 214, "Execute");
  m_szSQL.Format(L"CREATE SEQUENCE LK_REP_ID_SEQ START WITH %I64d CACHE 100", iStartRows + 1);

  m_nRows = 0;
  m_nXactBytes = 0;
  m_Timer.SetStartTime();
  OCIStmt* pStmt = nullptr;
  sword nStatus = AllocStatement(pDriver, &pStmt);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return pDriver->HandleError(nStatus, pDriver->GetOCIError(), 0, 0);
  }
  const std::string szText = m_szSQL.ToChar();
  nStatus = PrepareText(pStmt, pDriver->GetOCIError(), szText);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return ReportAndFree(pDriver, pStmt, nStatus);
  }
  nStatus = ExecuteOnce(pDriver, pStmt, OCI_COMMIT_ON_SUCCESS);
  m_Timer.SetEndTime(m_nRows, m_nXactBytes);
  // kept: only the status of the execute is reported by its low 16 bits. A sequence that is there is a
  // failure like any other: nothing is on the list of ignored errors.
  if (IsFailure(nStatus)) return ReportAndFree(pDriver, pStmt, LowBits(nStatus));
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
  return 1;
}

CXact_Create_Replication_Properties_Table::CXact_Create_Replication_Properties_Table() {
  // kept: "table" in the name, "Table" in the description; hosts find the transaction by its name.
  SetName(L"Create Replication Properties table");
  SetDescription(L"Create Replication Properties Table");
  SetXactID(101);
  SetTransactionType(CREATE_TABLE);
  m_szSQL =
      "CREATE TABLE LK_REP_PROPERTIES ( "
      "PROP_NAME VARCHAR2(50) NOT NULL, "
      "PROP_VALUE VARCHAR2(255) NOT NULL)";
}

CXact_Create_Replication_Properties_Table::~CXact_Create_Replication_Properties_Table() = default;

LKString CXact_Create_Replication_Properties_Table::BuildInsertBlock() {
  const CRepBenchmarkProperties& properties = m_BenchmarkProperties.GetRepBenchmarkProperties();
  LKString szBlock(L"BEGIN ");
  AppendNumberRow(szBlock,
                  L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Number Of Tables', '%d'); ",
                  properties.GetTableNumber());
  AppendNumberRow(szBlock,
                  L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Minimum Column', '%d'); ",
                  properties.GetMinColumnNumber());
  AppendNumberRow(szBlock,
                  L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Maximum Column', '%d'); ",
                  properties.GetMaxColumnNumber());
  AppendNumberRow(
      szBlock, L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Distribution Mode', '%d'); ",
      properties.GetColumnDistribution());
  AppendNumberRow(szBlock, L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Scale', '%d'); ",
                  static_cast<int>(m_BenchmarkProperties.GetScale()));
  AppendColumnStructures(szBlock);
  szBlock += L" END;";
  return szBlock;
}

void CXact_Create_Replication_Properties_Table::AppendColumnStructures(LKString& szBlock) {
  const ColumnInfoArray* pColumns = m_BenchmarkProperties.GetRepBenchmarkProperties().GetColumnInfo();
  if (pColumns == nullptr) return;
  for (long i = 0; i < pColumns->GetCount(); ++i) {
    const ColumnInfo* pColumn = GetColumn(*pColumns, i);
    // kept: a missing definition ends the rows of the structures; those before it are written.
    REP_ASSERT_AT(pColumn != nullptr, "pColumn != __null", "CREP_CreateObjects_ORA8", 345, "Execute");
    if (pColumn == nullptr) return;
    const std::string szTypeName = pColumn->GetTypeName().ToChar();
    LKString szStructure;
    szStructure.Format(L"%s@%d@%d", szTypeName.c_str(), pColumn->GetWeight(), pColumn->GetIsNull());
    LKString szRow;
    szRow.Format(L"INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('Column Structure', '%s'); ",
                 szStructure);
    szBlock += szRow;
  }
}

int CXact_Create_Replication_Properties_Table::Execute() {
  // kept: before the driver is looked at; a run that adds tables leaves the properties as they are.
  if (m_BenchmarkProperties.GetIntAttribute1() > 0) return 1;
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;

  OCIStmt* pStmt = nullptr;
  sword nStatus = AllocStatement(pDriver, &pStmt);
  // kept: as in the create of the tables the timer was not started yet; but statuses are reported whole here.
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return pDriver->HandleError(nStatus, pDriver->GetOCIError(), 0, 0);
  }
  m_nRows = 0;
  m_nXactBytes = 0;
  m_Timer.SetStartTime();
  nStatus = PrepareAndExecute(pDriver, pStmt, m_szSQL.ToChar(), OCI_DEFAULT);
  if (!IsFailure(nStatus))
    nStatus = PrepareAndExecute(pDriver, pStmt, BuildInsertBlock().ToChar(), OCI_DEFAULT);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return ReportAndFree(pDriver, pStmt, nStatus);
  }
  // kept: on success the timer is not ended and the statement handle not freed; nor is a commit asked for.
  return 1;
}

// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "TableLoader.h"

#include <cstdlib>
#include <ctime>

#include "OciCall.h"
#include "core/LKStringFormat.h"

CTableLoader::CTableLoader(COracle8Driver* pDriver, LKString strName)
    : m_strName(strName), m_pDriver(pDriver) {}

CTableLoader::~CTableLoader() {
  if (m_pInsertStmt != nullptr) OCIHandleFree(m_pInsertStmt, OCI_HTYPE_STMT);
  Cleanup();
}

void CTableLoader::Cleanup() {
  for (IBind* pBind : m_BindArray) delete pBind;
  m_BindArray.RemoveAll();
}

int CTableLoader::Initialize(CColumns* pColumns, unsigned int nRowsPerCommit) {
  m_pColumns = pColumns;
  // kept: the seed follows the clock's second, so loaders made in the same second make the same values
  srand(static_cast<unsigned int>(time(nullptr)));  // NOLINT(cert-msc51-cpp): the line above
  m_RandGen.SetSeed(rand());                        // NOLINT(cert-msc50-cpp): the line above
  if (m_pColumns == nullptr) return 0;

  m_nRowsPerCommit = static_cast<int>(nRowsPerCommit);
  for (CColumn* pColumn : m_pColumns->m_ColArray)
    if (IBind* pBind = pColumn->CreateBind(nRowsPerCommit)) m_BindArray.Add(pBind);
  m_nRowIndex = 0;
  return m_BindArray.GetCount() == static_cast<long>(m_pColumns->GetCount()) ? 1 : 0;
}

void CTableLoader::SetStartingRows(long nStartingRows) {
  m_nStartingRows = nStartingRows;
  for (long i = 1; i < m_BindArray.GetCount(); ++i) {
    IDataGenerator* pGenerator = m_BindArray[i]->GetDataGenerator();
    if (pGenerator == nullptr) continue;
    pGenerator->SetStartingRow(nStartingRows);
    pGenerator->SetRandGen(&m_RandGen);
  }
}

LKString CTableLoader::BuildSQL() {
  LKString strColumns;
  strColumns.Format(L"INSERT INTO %s (", m_strName);
  LKString strValues(L" VALUES (");
  bool bFirst = true;
  for (const CColumn* pColumn : m_pColumns->m_ColArray) {
    if (!bFirst) {
      strColumns += L", ";
      strValues += L", ";
    }
    bFirst = false;
    strColumns += pColumn->GetName();
    strValues += pColumn->IsDateColumn() ? L"TO_DATE(:" : L":";
    strValues += pColumn->GetName();
    // kept: slashes, as the generator writes them; an update's mask has dashes
    if (pColumn->IsDateColumn()) strValues += L", 'YYYY/MM/DD HH24:MI:SS')";
  }
  strColumns += L")";
  strColumns += strValues;
  strColumns += L")";
  return strColumns;
}

OCIStmt* CTableLoader::CreateStatment() {
  OCIStmt* pStmt = nullptr;
  const sword nStatus = AllocStatement(m_pDriver, &pStmt);
  if (!IsFailure(nStatus)) return pStmt;
  m_pDriver->HandleError(nStatus, m_pDriver->GetOCIError(),
                         L"Unable create statement handle for TableLoader!", 0, 0);
  return nullptr;
}

int CTableLoader::BindColumns() {
  m_szInsertSQL = BuildSQL().ToChar();
  m_pInsertStmt = CreateStatment();
  if (m_pInsertStmt == nullptr) return 0;
  // kept: no report from here on, the caller gives the table up
  OCIError* pError = m_pDriver->GetOCIError();
  if (IsFailure(PrepareText(m_pInsertStmt, pError, m_szInsertSQL))) return 0;
  for (IBind* pBind : m_BindArray)
    if (!pBind->BindColumn(m_pInsertStmt, pError)) return 0;
  return 1;
}

int CTableLoader::MakeRecord(long nRow) {
  m_nRowIndex = m_nNumberOfRows % m_nRowsPerCommit;
  ++m_nNumberOfRows;
  for (long i = 1; i < m_BindArray.GetCount(); ++i) {
    IBind* pBind = m_BindArray[i];
    IDataGenerator* pGenerator = pBind->GetDataGenerator();
    pGenerator->SetRandGen(&m_RandGen);
    int nLen = 0;
    void* pValue = pGenerator->GenerateData(&nLen);
    pBind->SetData(m_nRowIndex, pValue, nLen);
  }
  // kept: the first column is the key and takes the row number; its generator is not asked
  double fID = static_cast<double>(nRow);
  if (!m_BindArray.IsEmpty()) m_BindArray[0]->SetData(m_nRowIndex, &fID, sizeof fID);
  return 1;
}

int CTableLoader::SendRows(int nRows) {
  REP_ASSERT(m_pInsertStmt != nullptr, "m_pInsertStmt != __null");
  REP_ASSERT(nRows >= 1 && nRows <= m_nRowsPerCommit, "nRows >= 1 && nRows <= m_nRowsPerCommit");
  REP_ASSERT(nRows == m_nNumberOfRows, "nRows == m_nNumberOfRows");
  if (nRows < 1 || nRows > m_nRowsPerCommit || nRows != m_nNumberOfRows) return 0;
  OCIError* pError = m_pDriver->GetOCIError();
  const sword nStatus = OCIStmtExecute(m_pDriver->GetOCIServerContext(), m_pInsertStmt, pError,
                                       static_cast<ub4>(nRows), 0, nullptr, nullptr, m_nCommitMode);
  if (IsFailure(nStatus)) {
    m_pDriver->HandleError(nStatus, pError, 0, 0);
    return 0;  // kept: the rows stay counted; a load gives its loader up here
  }
  m_nNumberOfRows = 0;
  return 1;
}

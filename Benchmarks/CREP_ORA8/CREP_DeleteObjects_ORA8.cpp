// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "CREP_DeleteObjects_ORA8.h"

#include <array>

#include "OciCall.h"
#include "SchemaRules.h"

wxIMPLEMENT_DYNAMIC_CLASS(CXact_Drop_RepTables, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CXact_Drop_Sequence, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CXact_Drop_Replication_Properties_Table, CXact);

namespace {

constexpr int kMissingTable = 942;
constexpr int kMissingObject = 4043;
constexpr int kMissingSequence = 2289;

sb4 ReadErrorCode(OCIError* pError) {
  sb4 nErrorCode = 0;
  std::array<OraText, 1024> szMessage{};
  OCIErrorGet(pError, 1, nullptr, &nErrorCode, szMessage.data(), szMessage.size(), OCI_HTYPE_ERROR);
  return nErrorCode;
}

}  // namespace

CXact_Drop_RepTables::CXact_Drop_RepTables() {
  SetName(L"Drop Replication Tables");
  SetDescription(L"");
  SetXactID(120);
  SetTransactionType(DROP_TABLE);
}

CXact_Drop_RepTables::~CXact_Drop_RepTables() = default;

int CXact_Drop_RepTables::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;

  m_szSQL = L"DROP TABLE LK_REP_TABLE%d";
  m_nRows = 0;
  m_nBytes = 0;
  m_Timer.SetStartTime();
  OCIStmt* pStmt = nullptr;
  const sword nStatus = AllocStatement(pDriver, &pStmt);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nBytes);
    pDriver->HandleError(LowBits(nStatus), pDriver->GetOCIError(), 0, 0);
    return 0;
  }
  // kept: no upper bound and no look at a cancel; the first missing table ends the run, so that tables of a
  // larger earlier run go too.
  for (int i = GetFirstTableNumber(m_BenchmarkProperties); DropTable(pDriver, pStmt, i);) ++i;
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
  // kept: 0 also after the normal end at a missing table; hosts do not read the result as a failure.
  return 0;
}

bool CXact_Drop_RepTables::DropTable(COracle8Driver* pDriver, OCIStmt* pStmt, int nTableIndex) {
  LKString szTableName;
  szTableName.Format(L"LK_REP_TABLE%d", nTableIndex);
  LKString szSQL;
  szSQL.Format(m_szSQL, nTableIndex);
  const std::string szText = szSQL.ToChar();
  sword nStatus = PrepareText(pStmt, pDriver->GetOCIError(), szText);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nBytes);
    pDriver->HandleError(LowBits(nStatus), pDriver->GetOCIError(), 0, 0);
    return false;
  }
  nStatus = ExecuteOnce(pDriver, pStmt, OCI_COMMIT_ON_SUCCESS);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nBytes);
    // kept: looked up here instead of on the driver's list, where it would hide a failed prepare as well.
    if (ReadErrorCode(pDriver->GetOCIError()) != kMissingTable)
      pDriver->HandleError(LowBits(nStatus), pDriver->GetOCIError(), 0, 0);
    return false;
  }
  pDriver->DropBackupTable(szTableName);  // kept: the result is not looked at; the tables matter
  return true;
}

CXact_Drop_Sequence::CXact_Drop_Sequence() {
  SetName(L"Drop Sequence");
  SetDescription(L"Drop Sequence");
  SetXactID(171);
  SetTransactionType(DROP_SP);
}

CXact_Drop_Sequence::~CXact_Drop_Sequence() = default;

int CXact_Drop_Sequence::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;

  pDriver->AddIgnoreError(kMissingTable);
  pDriver->AddIgnoreError(kMissingObject);
  pDriver->AddIgnoreError(kMissingSequence);
  // kept: alone among the schema transactions this one goes through the driver's own statement, and untimed.
  // The result of the prepare is not looked at: without a statement the execute fails.
  pDriver->PrepareStatement(L"DROP SEQUENCE LK_REP_ID_SEQ", 0);
  const int bDropped = pDriver->ExecuteStatement(0);
  pDriver->CloseStatement();
  pDriver->RemoveIgnoreError(kMissingTable);
  pDriver->RemoveIgnoreError(kMissingObject);
  pDriver->RemoveIgnoreError(kMissingSequence);
  return bDropped;
}

CXact_Drop_Replication_Properties_Table::CXact_Drop_Replication_Properties_Table() {
  SetName(L"Drop Replication Properties Table");
  SetXactID(121);
  SetTransactionType(DROP_TABLE);
  m_szSQL = L"DROP TABLE LK_REP_PROPERTIES";
}

CXact_Drop_Replication_Properties_Table::~CXact_Drop_Replication_Properties_Table() = default;

int CXact_Drop_Replication_Properties_Table::Execute() {
  // kept: neither null nor type check here, unlike the create; the host runs it with an Oracle driver only.
  COracle8Driver* pDriver = static_cast<COracle8Driver*>(m_pDriver);
  OCIError* pError = pDriver->GetOCIError();
  m_nRows = 0;
  m_nXactBytes = 0;
  m_Timer.SetStartTime();
  OCIStmt* pStmt = nullptr;
  sword nStatus = AllocStatement(pDriver, &pStmt);
  // kept: every status is reported by its low 16 bits here, in the create of the table whole.
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return pDriver->HandleError(LowBits(nStatus), pError, 0, 0);
  }
  const std::string szText = m_szSQL.ToChar();
  nStatus = PrepareText(pStmt, pError, szText);
  if (IsFailure(nStatus)) {
    m_Timer.SetEndTime(m_nRows, m_nXactBytes);
    return ReportAndFree(pDriver, pStmt, LowBits(nStatus));
  }
  pDriver->AddIgnoreError(kMissingTable);
  pDriver->AddIgnoreError(kMissingObject);
  nStatus = ExecuteOnce(pDriver, pStmt, OCI_COMMIT_ON_SUCCESS);
  m_Timer.SetEndTime(m_nRows, m_nXactBytes);
  // kept: a missing table is a failure all the same: the driver leaves out the report, nothing more.
  if (IsFailure(nStatus)) pDriver->HandleError(LowBits(nStatus), pError, 0, 0);
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
  pDriver->RemoveIgnoreError(kMissingTable);
  pDriver->RemoveIgnoreError(kMissingObject);
  return IsFailure(nStatus) ? 0 : 1;
}

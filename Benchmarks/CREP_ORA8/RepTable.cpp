// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "RepTable.h"

#include "OciCall.h"
#include "TableLoader.h"
#include "core/LKStringFormat.h"

CRepTable::CRepTable(COracle8Driver* pDriver, LKString strName) : m_strName(strName), m_pDriver(pDriver) {}

CRepTable::~CRepTable() {
  if (m_pStmt != nullptr) OCIHandleFree(m_pStmt, OCI_HTYPE_STMT);
}

int CRepTable::Describe() {
  OCIError* pError = m_pDriver->GetOCIError();
  LKString strSQL;
  strSQL.Format(L"SELECT * FROM %s", m_strName);
  const std::string szText = strSQL.ToChar();
  sword nStatus = PrepareText(m_pStmt, pError, szText);
  // kept: the words of these reports, which logs are searched for
  if (IsFailure(nStatus))
    return m_pDriver->HandleError(nStatus, pError, L"Unable Prepare statement while Initialize.", 0, 0);
  nStatus = OCIStmtExecute(m_pDriver->GetOCIServerContext(), m_pStmt, pError, 0, 0, nullptr, nullptr,
                           OCI_DESCRIBE_ONLY);
  if (IsFailure(nStatus))
    return m_pDriver->HandleError(nStatus, pError, L"Unable Describe table while Initialize!", 0, 0);
  return 1;
}

int CRepTable::Initialize() {
  REP_ASSERT(m_pDriver != nullptr, "m_pDriver != __null");
  if (m_pDriver == nullptr) return 0;
  if (IsFailure(AllocStatement(m_pDriver, &m_pStmt))) {
    // kept: a plain message, without the status that the other failures pass on
    m_pDriver->HandleErrorMsg(L"Unable allocate statement handle!");
    return 0;
  }
  if (!Describe()) {
    OCIHandleFree(m_pStmt, OCI_HTYPE_STMT);
    m_pStmt = nullptr;
    return 0;
  }
  if (m_Columns.Initialize(m_pStmt, m_pDriver->GetOCIError())) return 1;
  // kept: the described statement stays, as it does after a success, and the status is -1 whatever failed
  m_pDriver->HandleError(-1, m_pDriver->GetOCIError(), L"Unable to initialize columns", 0, 0);
  return 0;
}

CTableLoader* CRepTable::CreateLoader(unsigned int nRowsPerCommit) {
  auto* pLoader = new CTableLoader(m_pDriver, m_strName);
  pLoader->Initialize(&m_Columns, nRowsPerCommit);  // kept: the result is not looked at
  return pLoader;
}

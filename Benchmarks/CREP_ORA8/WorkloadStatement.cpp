// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "WorkloadStatement.h"

#include "OciCall.h"

int EnsureStatement(COracle8Driver* pDriver, OCIStmt** ppStmt, const wchar_t* szMessage) {
  if (*ppStmt != nullptr) return 1;
  const sword nStatus = AllocStatement(pDriver, ppStmt);
  if (!IsFailure(nStatus)) return 1;
  pDriver->HandleError(nStatus, pDriver->GetOCIError(), szMessage, 0, 0);
  return 0;
}

void FreeStatement(OCIStmt** ppStmt) {
  if (*ppStmt == nullptr) return;
  OCIHandleFree(*ppStmt, OCI_HTYPE_STMT);
  *ppStmt = nullptr;
}

int RunMeasured(COracle8Driver* pDriver, OCIStmt* pStmt, const LKString& szSQL,
                const wchar_t* szPrepareMessage, ub4& nRows) {
  OCIError* pError = pDriver->GetOCIError();
  const std::string szText = szSQL.ToChar();
  sword nStatus = PrepareText(pStmt, pError, szText);
  if (IsFailure(nStatus)) {
    pDriver->HandleError(nStatus, pError, szPrepareMessage, 0, 0);
    return 0;
  }
  nStatus = ExecuteOnce(pDriver, pStmt, OCI_DEFAULT);
  if (IsFailure(nStatus)) {
    pDriver->HandleError(nStatus, pError, 0, 0);
    return 0;
  }
  // kept: the status is not looked at; a count that cannot be read is 0 rows of a success
  OCIAttrGet(pStmt, OCI_HTYPE_STMT, &nRows, nullptr, OCI_ATTR_ROW_COUNT, pError);
  return 1;
}

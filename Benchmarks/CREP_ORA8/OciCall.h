// SPDX-License-Identifier: Apache-2.0
// The OCI calls that the transactions share, in the form in which all of them make them, and how their
// statuses are read. The handles are the caller's.
#pragma once

#include <oci.h>

#include <string>
#include <string_view>

#include "db/DriverBase.h"
#include "oracle8/Oracle8Driver.h"

// The low 16 bits of a status: what decides whether a call failed, and what some callers pass on.
inline int LowBits(sword nStatus) { return nStatus & 0xFFFF; }
inline bool IsFailure(sword nStatus) { return LowBits(nStatus) != 0; }

// Null when there is no driver, or it is another database's.
inline COracle8Driver* AsOracleDriver(CDriverBase* pDriver) { return dynamic_cast<COracle8Driver*>(pDriver); }

inline sword AllocStatement(COracle8Driver* pDriver, OCIStmt** ppStmt) {
  return OCIHandleAlloc(pDriver->GetOCIEnvironment(), reinterpret_cast<void**>(ppStmt), OCI_HTYPE_STMT, 0,
                        nullptr);
}

// The text must live until the statement's last execute: a client library may read it there and copies
// nothing.
inline sword PrepareText(OCIStmt* pStmt, OCIError* pError, std::string_view szText) {
  return OCIStmtPrepare(pStmt, pError, reinterpret_cast<const OraText*>(szText.data()),
                        static_cast<ub4>(szText.size()), OCI_NTV_SYNTAX, OCI_DEFAULT);
}

sword PrepareText(OCIStmt* pStmt, OCIError* pError,
                  std::string&& szText) = delete;  // it would be gone by then

inline sword ExecuteOnce(COracle8Driver* pDriver, OCIStmt* pStmt, ub4 nMode) {
  return OCIStmtExecute(pDriver->GetOCIServerContext(), pStmt, pDriver->GetOCIError(), 1, 0, nullptr, nullptr,
                        nMode);
}

// Prepares the text and, when that succeeded, executes it once; the status of the last call made.
inline sword PrepareAndExecute(COracle8Driver* pDriver, OCIStmt* pStmt, const std::string& szText,
                               ub4 nMode) {
  const sword nStatus = PrepareText(pStmt, pDriver->GetOCIError(), szText);
  return IsFailure(nStatus) ? nStatus : ExecuteOnce(pDriver, pStmt, nMode);
}

// The end of a failed operation: reports the status as given, frees the statement and returns 0.
inline int ReportAndFree(COracle8Driver* pDriver, OCIStmt* pStmt, int nStatus) {
  pDriver->HandleError(nStatus, pDriver->GetOCIError(), 0, 0);
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
  return 0;
}

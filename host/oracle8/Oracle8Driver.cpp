// SPDX-License-Identifier: Apache-2.0
#include "oracle8/Oracle8Driver.h"

#include <string>
#include <utility>

#include "oracle8/OciQuery.h"
#include "oracle8/OciStatement.h"
#include "oracle8/SessionGuard.h"

using oracle8::OciFailure;
using oracle8::OciSession;
using oracle8::OciStatement;

wxIMPLEMENT_DYNAMIC_CLASS(COracle8Driver, CDriverBase);

namespace {

// The record for the chain: the Oracle number, or "-1" when there is none.
CError MakeError(const LKString& szMessage, const oracle8::ErrorText& oracle) {
  CError error;
  error.m_eErrorLevel = ERROR_LEVEL;
  error.m_szErrorNumber = oracle.code == 0 ? L"-1" : std::to_wstring(oracle.code).c_str();
  error.m_szErrorMessage = szMessage.IsEmpty() ? oracle.text : szMessage + L"\n" + oracle.text;
  return error;
}

LKString Quoted(const LKString& szText) {
  LKString szQuoted = L"\"";
  return szQuoted + szText + L"\"";
}

}  // namespace

COracle8Driver::COracle8Driver() = default;
COracle8Driver::~COracle8Driver() = default;

OCIEnv* COracle8Driver::GetOCIEnvironment() {
  return m_pSession == nullptr ? nullptr : m_pSession->Environment();
}

OCISvcCtx* COracle8Driver::GetOCIServerContext() {
  return m_pSession == nullptr ? nullptr : m_pSession->Service();
}

OCIError* COracle8Driver::GetOCIError() { return m_pSession == nullptr ? nullptr : m_pSession->Error(); }

int COracle8Driver::HandleError(int nStatus, OCIError* pError, LKString szMessage, int, int) {
  if (!oracle8::Failed(nStatus)) return 0;
  const oracle8::ErrorText oracle = oracle8::ReadError(nStatus, pError);
  m_nLastErrorCode = oracle.code;
  if (IsIgnoredError(oracle.code)) return 0;
  CError error = MakeError(szMessage, oracle);
  HandleError(&error);
  return 0;
}

int COracle8Driver::HandleError(int nStatus, OCIError* pError, int nReserved1, int nReserved2) {
  return HandleError(nStatus, pError, LKString(), nReserved1, nReserved2);
}

void COracle8Driver::Report(const OciFailure& failure, const LKString& szWhat, OCIError* pError) {
  LKString szMessage = szWhat + L" (" + failure.Action();
  if (failure.Status() == OCI_SUCCESS) return HandleErrorMsg(szMessage + L")");
  HandleError(failure.Status(), failure.HasRecord() ? pError : nullptr, szMessage + L" failed)", 0, 0);
}

int COracle8Driver::Connect(LKString szServer, LKString szUser, LKString szPassword) {
  const LKString szWhat = LKString(L"Cannot connect to ") + Quoted(szServer) + L" as " + Quoted(szUser);
  if (m_pSession != nullptr) {
    HandleErrorMsg(szWhat + L": already connected, disconnect first.");
    return 0;
  }
  std::unique_ptr<OciSession> pSession;
  try {
    pSession = std::make_unique<OciSession>();
    pSession->Attach(szServer);
    const LKString szWarning = pSession->Begin(szUser, szPassword);
    if (!szWarning.IsEmpty()) HandleWarningMsg(szWarning);
  } catch (const OciFailure& failure) {
    Report(failure, szWhat, pSession == nullptr ? nullptr : pSession->Error());
    return 0;
  }
  const std::lock_guard lock(m_SessionMutex);
  m_pSession = std::move(pSession);
  return 1;
}

int COracle8Driver::Disconnect() {
  m_pStatement.reset();
  std::unique_ptr<OciSession> pSession;
  {
    const std::lock_guard lock(m_SessionMutex);
    pSession = std::move(m_pSession);
  }
  if (pSession == nullptr) return 1;
  try {
    pSession->Close();
    return 1;
  } catch (const OciFailure& failure) {
    Report(failure, L"Cannot disconnect in order", pSession->Error());
    return 0;
  }
}

int COracle8Driver::Commit() {
  return InSession(L"Cannot commit", [](OciSession& session) { session.Commit(); });
}

int COracle8Driver::Rollback() {
  return InSession(L"Cannot roll back", [](OciSession& session) { session.Rollback(); });
}

// Touches neither the last error code nor the ignore list: they belong to the session's own thread.
int COracle8Driver::Cancel() {
  oracle8::ErrorText oracle;
  {
    const std::lock_guard lock(m_SessionMutex);
    if (m_pSession == nullptr) return 1;
    const sword nStatus = m_pSession->Break();
    if (!oracle8::Failed(nStatus)) return 1;
    oracle = oracle8::ReadError(nStatus, m_pSession->BreakError());
  }
  CError error = MakeError(L"Cannot cancel", oracle);
  HandleError(&error);
  return 0;
}

int COracle8Driver::PrepareStatement(const wchar_t* szSQL, int) {
  const LKString szText = szSQL;
  return InSession(LKString(L"Cannot prepare: ") + szText, [&](OciSession& session) {
    m_pStatement.reset();
    m_pStatement = std::make_unique<OciStatement>(session, szText);
  });
}

int COracle8Driver::ExecuteStatement(int) {
  return InSession(L"Cannot execute the statement", [&](OciSession&) {
    if (m_pStatement == nullptr) throw OciFailure(OCI_SUCCESS, L"no statement is prepared");
    m_pStatement->Execute(1, OCI_COMMIT_ON_SUCCESS);
  });
}

int COracle8Driver::CloseStatement() {
  m_pStatement.reset();
  return 1;
}

int COracle8Driver::Query(LKString szSQL, std::vector<std::vector<LKString>>& rows) {
  return InSession(LKString(L"Cannot query: ") + szSQL, [&](OciSession& session) {
    const auto read = oracle8::ReadRows(session, szSQL);
    rows.insert(rows.end(), read.begin(), read.end());
  });
}

LKString COracle8Driver::GetServerVersion() {
  LKString szVersion;
  InSession(L"Cannot read the server version",
            [&](OciSession& session) { szVersion = session.ServerVersion(); });
  return szVersion;
}

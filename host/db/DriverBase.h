// SPDX-License-Identifier: Apache-2.0
// CDriverBase is one database session of one virtual user, and the error handler that its transactions report
// to. It is created by class name (wxCreateDynamicObject), so that the runner links no database client. Used
// by one thread at a time, except Cancel, which any thread may call while a call is running.
#pragma once

#include <wx/object.h>

#include <set>
#include <vector>

#include "core/ErrorHandler.h"
#include "core/LKString.h"
#include "core/TRKArray.h"

class CDriverBase : public wxObject, public CErrorHandler {
  wxDECLARE_ABSTRACT_CLASS(CDriverBase);

 public:
  CDriverBase() = default;
  ~CDriverBase() override = default;

  using CErrorHandler::HandleError;
  using CErrorHandler::HandleErrorMsg;
  using CErrorHandler::HandleInfoMsg;
  using CErrorHandler::HandleWarningMsg;
  void HandleErrorMsg(const wchar_t* szMessage) { CErrorHandler::HandleErrorMsg(szMessage, 0); }
  void HandleInfoMsg(const wchar_t* szMessage) { CErrorHandler::HandleInfoMsg(szMessage, 0); }
  void HandleWarningMsg(const wchar_t* szMessage) { CErrorHandler::HandleWarningMsg(szMessage, 0); }

  // While a code is on the list its error is not reported. The list counts: each add needs its remove.
  void AddIgnoreError(int nCode) { m_IgnoredErrors.insert(nCode); }
  void RemoveIgnoreError(int nCode);
  bool IsIgnoredError(int nCode) const { return m_IgnoredErrors.contains(nCode); }

  // Session. Each returns non-zero on success; a failure has been reported.
  virtual int Connect(LKString szServer, LKString szUser, LKString szPassword) = 0;
  virtual int Disconnect() = 0;  // rolls back what is open
  virtual int IsConnected() const = 0;
  virtual int Commit() = 0;
  virtual int Rollback() = 0;
  virtual int Cancel() = 0;  // asks the running call to stop (any thread); no effect on an idle session

  // Generic statements, one at a time. The flags are reserved: pass 0.
  virtual int PrepareStatement(const wchar_t* szSQL, int nFlag) = 0;
  virtual int ExecuteStatement(int nFlag) = 0;  // commits on success
  virtual int CloseStatement() = 0;
  // Runs a query and appends every row's columns as text; NULL is the empty string.
  virtual int Query(LKString szSQL, std::vector<std::vector<LKString>>& rows) = 0;
  virtual LKString GetServerVersion() = 0;

  // The Oracle (or other database) number of the last failure that HandleError saw; 0 when there was none.
  int GetLastErrorCode() const { return m_nLastErrorCode; }
  void ClearLastErrorCode() { m_nLastErrorCode = 0; }

 protected:
  int m_nLastErrorCode = 0;

 private:
  std::multiset<int> m_IgnoredErrors;
};

// SPDX-License-Identifier: Apache-2.0
// CErrorHandler is one link of the chain that a report (CError) travels along. A handler does not own the
// next one. HandleError may be called by several threads: each link locks its own critical section while it
// works.
#pragma once

#include <wx/thread.h>

#include "core/LKString.h"

enum eErrorLevel {
  UNKNOWN_LEVEL = -1,
  INFO_LEVEL = 1,
  WARNING_LEVEL = 2,
  ERROR_LEVEL = 3,
  CRITICAL_LEVEL = 4
};

// One report. Field order is part of the contract.
struct CError {
  eErrorLevel m_eErrorLevel = UNKNOWN_LEVEL;
  LKString m_szErrorNumber;
  LKString m_szErrorSeverity;
  LKString m_szErrorMessage;
  LKString m_szErrorLocation;
  int m_bAlwaysDisplay = 0;
  LKString m_szData;
};

class CErrorHandler {
 public:
  CErrorHandler() = default;
  CErrorHandler(const CErrorHandler&) = delete;
  CErrorHandler& operator=(const CErrorHandler&) = delete;

  // Passes the report on to the next handler, if there is one; returns what that returned, else 0.
  virtual int HandleError(CError* pError);

  // Each builds a CError with number "-1" (critical, error) or "0" (warning, information) and hands it to
  // HandleError of this handler. A null message does nothing. Inline: whoever calls them builds them in.
  // kept: no lock is taken here, so a handler may report while it holds its own.
  void HandleCriticalMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
    Report(CRITICAL_LEVEL, L"-1", szMessage, bAlwaysDisplay);
  }
  void HandleErrorMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
    Report(ERROR_LEVEL, L"-1", szMessage, bAlwaysDisplay);
  }
  void HandleWarningMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
    Report(WARNING_LEVEL, L"0", szMessage, bAlwaysDisplay);
  }
  void HandleInfoMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
    Report(INFO_LEVEL, L"0", szMessage, bAlwaysDisplay);
  }

  void AddHandler(CErrorHandler* pHandler);  // appends at the end of the chain; not owned

 protected:
  ~CErrorHandler() = default;  // HandleError is the one virtual operation: never deleted through this type

  CErrorHandler* m_pNextHandler = nullptr;
  wxCriticalSection m_ErrorHandlerCriticalSection;

 private:
  void Report(eErrorLevel eLevel, const wchar_t* szNumber, const wchar_t* szMessage, int bAlwaysDisplay);
};

inline void CErrorHandler::Report(eErrorLevel eLevel, const wchar_t* szNumber, const wchar_t* szMessage,
                                  int bAlwaysDisplay) {
  if (!szMessage) return;
  CError error;
  error.m_bAlwaysDisplay = bAlwaysDisplay;
  error.m_szErrorMessage = szMessage;
  error.m_szErrorNumber = szNumber;
  error.m_eErrorLevel = eLevel;
  HandleError(&error);
}

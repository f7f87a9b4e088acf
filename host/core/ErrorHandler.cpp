// SPDX-License-Identifier: Apache-2.0
#include "core/ErrorHandler.h"

int CErrorHandler::HandleError(CError* pError) {
  CErrorHandler* pNext;
  {
    const wxCriticalSectionLocker lock(m_ErrorHandlerCriticalSection);
    pNext = m_pNextHandler;
  }
  return pNext ? pNext->HandleError(pError) : 0;
}

void CErrorHandler::HandleCriticalMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
  Report(CRITICAL_LEVEL, L"-1", szMessage, bAlwaysDisplay);
}

void CErrorHandler::HandleErrorMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
  Report(ERROR_LEVEL, L"-1", szMessage, bAlwaysDisplay);
}

void CErrorHandler::HandleWarningMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
  Report(WARNING_LEVEL, L"0", szMessage, bAlwaysDisplay);
}

void CErrorHandler::HandleInfoMsg(const wchar_t* szMessage, int bAlwaysDisplay) {
  Report(INFO_LEVEL, L"0", szMessage, bAlwaysDisplay);
}

void CErrorHandler::AddHandler(CErrorHandler* pHandler) {
  CErrorHandler* pLast = this;
  for (;;) {
    const wxCriticalSectionLocker lock(pLast->m_ErrorHandlerCriticalSection);
    if (!pLast->m_pNextHandler) {
      pLast->m_pNextHandler = pHandler;
      return;
    }
    pLast = pLast->m_pNextHandler;
  }
}

void CErrorHandler::Report(eErrorLevel eLevel, const wchar_t* szNumber, const wchar_t* szMessage,
                           int bAlwaysDisplay) {
  if (!szMessage) return;
  CError error;
  error.m_bAlwaysDisplay = bAlwaysDisplay;
  error.m_szErrorMessage = szMessage;
  error.m_szErrorNumber = szNumber;
  error.m_eErrorLevel = eLevel;
  HandleError(&error);
}

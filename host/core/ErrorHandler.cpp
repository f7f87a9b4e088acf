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

// SPDX-License-Identifier: Apache-2.0
// The body of COracle8Driver::InSession, for the driver's own source files.
#pragma once

#include "oracle8/OciSession.h"
#include "oracle8/Oracle8Driver.h"

template <class Work>
int COracle8Driver::InSession(const LKString& szWhat, Work work) {
  if (m_pSession == nullptr) {
    HandleErrorMsg(szWhat + L": not connected.");
    return 0;
  }
  try {
    work(*m_pSession);
    return 1;
  } catch (const oracle8::OciFailure& failure) {
    Report(failure, szWhat, m_pSession->Error());
    return 0;
  }
}

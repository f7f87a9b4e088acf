// SPDX-License-Identifier: Apache-2.0
#include "core/Timer.h"

#include <chrono>

namespace {

__int64 Now() {
  using namespace std::chrono;
  return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

void CTimer::SetStartTime() {
  Reset();
  m_nStart = Now();
}

void CTimer::SetResponseTime() { m_nResponse = Now(); }

void CTimer::SetEndTime(long nRows, long nBytes) {
  m_nEnd = Now();
  m_nRows = nRows;
  m_nBytes = nBytes;
}

int CTimer::Read() const {
  constexpr __int64 kNanosecondsPerMillisecond = 1'000'000;
  return IsStarted() ? static_cast<int>((Now() - m_nStart) / kNanosecondsPerMillisecond) : 0;
}

void CTimer::Reset() { *this = CTimer(); }

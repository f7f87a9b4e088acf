// SPDX-License-Identifier: Apache-2.0
// CTimer brackets one execution of a transaction: start, response time (just before the database call) and
// end with rows and bytes. Times are nanoseconds of the monotonic clock. Written by the thread that owns the
// transaction; read by the runner on that thread after the execution.
#pragma once

#include "core/LKTypes.h"

class CTimer {
 public:
  void SetStartTime();
  void SetResponseTime();
  void SetEndTime(long nRows, long nBytes);
  int Read() const;  // whole milliseconds since the start; 0 before the first start
  void Reset();      // as constructed

  bool IsStarted() const { return m_nStart != 0; }
  bool IsEnded() const { return m_nEnd != 0; }
  __int64 GetStart() const { return m_nStart; }  // 0 when not set, likewise below
  __int64 GetResponse() const { return m_nResponse; }
  __int64 GetEnd() const { return m_nEnd; }
  long GetRows() const { return m_nRows; }
  long GetBytes() const { return m_nBytes; }

 private:
  __int64 m_nStart = 0;
  __int64 m_nResponse = 0;
  __int64 m_nEnd = 0;
  long m_nRows = 0;
  long m_nBytes = 0;
};

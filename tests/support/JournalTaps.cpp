// SPDX-License-Identifier: Apache-2.0
// The timer's calls and the driver's calls that are not virtual, tapped: a program's own definition of an
// exported function comes before that of a shared library. Each writes itself down and goes on to the
// library's.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "Journal.h"
#include "ScriptedState.h"
#include "core/Timer.h"
#include "oracle8/Oracle8Driver.h"

using scripted::IsQuiet;
using scripted::Journal;
using scripted::Name;
using scripted::Quiet;

namespace {

std::string N(long number) { return std::to_string(number); }

// The function of that linker name in the library that defines it.
void* NextOf(const char* symbol) {
  void* function = dlsym(RTLD_NEXT, symbol);
  if (function != nullptr) return function;
  std::fprintf(stderr, "no library defines %s: its declaration has changed\n", symbol);
  std::abort();
}

template <class Result, class... Arguments>
Result CallNext(const char* symbol, Arguments... arguments) {
  const Quiet quiet;
  return reinterpret_cast<Result (*)(Arguments...)>(NextOf(symbol))(std::move(arguments)...);
}

}  // namespace

void CTimer::SetStartTime() {
  Journal::Note("SetStartTime()");
  CallNext<void>("_ZN6CTimer12SetStartTimeEv", this);
}

void CTimer::SetResponseTime() {
  Journal::Note("SetResponseTime()");
  CallNext<void>("_ZN6CTimer15SetResponseTimeEv", this);
}

void CTimer::SetEndTime(long nRows, long nBytes) {
  Journal::Note("SetEndTime(" + N(nRows) + ", " + N(nBytes) + ")");
  CallNext<void>("_ZN6CTimer10SetEndTimeEll", this, nRows, nBytes);
}

int CTimer::Read() const {
  Journal::Note("Read()");
  return CallNext<int>("_ZNK6CTimer4ReadEv", this);
}

void CTimer::Reset() {
  Journal::Note("Reset()");
  CallNext<void>("_ZN6CTimer5ResetEv", this);
}

void CDriverBase::RemoveIgnoreError(int nCode) {
  CallNext<void>("_ZN11CDriverBase17RemoveIgnoreErrorEi", this, nCode);
  if (!IsQuiet()) Journal::NoteIgnoreList();
}

int COracle8Driver::HandleError(int nStatus, OCIError* pError, int nReserved1, int nReserved2) {
  Journal::Note("HandleError(" + N(nStatus) + ", " + Name(pError) + ", " + N(nReserved1) + ", " +
                N(nReserved2) + ")");
  return CallNext<int>("_ZN14COracle8Driver11HandleErrorEiP8OCIErrorii", this, nStatus, pError, nReserved1,
                       nReserved2);
}

int COracle8Driver::HandleError(int nStatus, OCIError* pError, LKString szMessage, int nReserved1,
                                int nReserved2) {
  Journal::Note("HandleError(" + N(nStatus) + ", " + Name(pError) + ", \"" + szMessage.ToChar() + "\", " +
                N(nReserved1) + ", " + N(nReserved2) + ")");
  return CallNext<int>("_ZN14COracle8Driver11HandleErrorEiP8OCIError8LKStringii", this, nStatus, pError,
                       szMessage, nReserved1, nReserved2);
}

int COracle8Driver::ChangeTableName(LKString szTable, int nDirection) {
  Journal::Note("ChangeTableName(" + szTable.ToChar() + ", " + N(nDirection) + ")");
  return CallNext<int>("_ZN14COracle8Driver15ChangeTableNameE8LKStringi", this, szTable, nDirection);
}

// SPDX-License-Identifier: Apache-2.0
#include "HostTaps.h"

#include "Journal.h"
#include "db/Xact.h"

namespace {

int g_hostResult = 1;

int Tap(const char* szOperation) {
  scripted::Journal::Note(szOperation);
  return g_hostResult;
}

}  // namespace

int CXact::PreBenchmark() { return Tap("CXact::PreBenchmark()"); }
int CXact::PreIteration() { return Tap("CXact::PreIteration()"); }
int CXact::PostBenchmark() { return Tap("CXact::PostBenchmark()"); }

namespace scripted {

HostReturns::HostReturns(int nResult) { g_hostResult = nResult; }
HostReturns::~HostReturns() { g_hostResult = 1; }

}  // namespace scripted

// SPDX-License-Identifier: Apache-2.0
#include "HostTaps.h"

#include <optional>

#include "Journal.h"
#include "core/Random.h"
#include "db/Xact.h"

namespace {

int g_hostResult = 1;
std::optional<unsigned int> g_draw;

int Tap(const char* szOperation) {
  scripted::Journal::Note(szOperation);
  return g_hostResult;
}

}  // namespace

int CXact::PreBenchmark() { return Tap("CXact::PreBenchmark()"); }
int CXact::PreIteration() { return Tap("CXact::PreIteration()"); }
int CXact::PostBenchmark() { return Tap("CXact::PostBenchmark()"); }
unsigned int CUniqueRandom::GetRandom(unsigned int nBound) { return g_draw.value_or(nBound); }

namespace scripted {

HostReturns::HostReturns(int nResult) { g_hostResult = nResult; }
HostReturns::~HostReturns() { g_hostResult = 1; }

HostDraws::HostDraws(unsigned int nDraw) { g_draw = nDraw; }
HostDraws::~HostDraws() { g_draw.reset(); }

}  // namespace scripted

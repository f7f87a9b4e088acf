// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "CREP_ORA8.h"

// The library's entry: the host looks it up by this name. Stores a new benchmark, which the caller owns;
// returns 1.
extern "C" int GetBenchmarkClassInfo(CSSBenchmark** benchmark);

int GetBenchmarkClassInfo(CSSBenchmark** benchmark) {
  *benchmark = new CREP_ORA8;
  return 1;
}

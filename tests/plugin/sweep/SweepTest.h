// SPDX-License-Identifier: Apache-2.0
// The two sweeps as tests of every operation of a list: SWEEP(Insert, InsertOperations()) at namespace scope,
// within namespace sweep.
#pragma once

#include <gtest/gtest.h>

#include "FaultSweep.h"

namespace sweep {

class FaultSweep : public testing::TestWithParam<Operation> {};

inline std::string NameOf(const testing::TestParamInfo<Operation>& info) { return info.param.name; }
inline void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

}  // namespace sweep

#define SWEEP(group, operations)                                                             \
  class group##Sweep : public FaultSweep {};                                                 \
  TEST_P(group##Sweep, AnyCallThatFailsHasTheEffectOfItsRule) { SweepEachCall(GetParam()); } \
  TEST_P(group##Sweep, ALostDatabaseEndsItAndItRunsAgain) { SweepLostDatabase(GetParam()); } \
  INSTANTIATE_TEST_SUITE_P(Of, group##Sweep, testing::ValuesIn(operations), NameOf)

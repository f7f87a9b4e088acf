// SPDX-License-Identifier: Apache-2.0
// What a job means as the settings of the benchmark, and how a transaction copy is made ready for a user.
#pragma once

#include <memory>

#include "db/Xact.h"
#include "lkbench/Cancel.h"
#include "lkbench/Job.h"
#include "lkbench/Users.h"

namespace lkbench {

CBenchmarkProperties PropertiesOf(const Job& job);

// Who a copy takes itself for: tables and row ranges are dealt by these two numbers.
struct Seat {
  int user = 1;
  int users = 1;
};

// Binds a new copy to a user's session, the benchmark, the settings and the run's cancel flag.
void Bind(CXact& xact, VirtualUser& user, Seat seat, CSSBenchmark& benchmark,
          const CBenchmarkProperties& properties, CancelSwitch& cancel, std::uint32_t seed);

}  // namespace lkbench

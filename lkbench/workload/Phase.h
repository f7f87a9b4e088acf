// SPDX-License-Identifier: Apache-2.0
// A Phase is one part of a workload as the job asks for it: how many users repeat which mix, for how long and
// at what pace. The phases of a job run one after the other over the same sessions. A value.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "lkbench/workload/Mix.h"

namespace lkbench {

enum class Arrival { kFixed, kPoisson };  // how executions follow each other at a rate

struct Phase {
  using Time = std::chrono::nanoseconds;

  std::string name = "workload";
  int users = 2;
  Time duration = std::chrono::seconds(10);  // of the measured part; 0: no limit, the count ends it
  std::uint64_t count = 0;                   // measured executions of all users together; 0: no limit
  Time warm_up{0};                           // before the measured part; reported apart, not counted
  Time ramp{0};  // over which the users start one after the other, from the phase's beginning
  Mix mix;
  Time think_min{0};  // a user's pause after each execution, drawn evenly between these two
  Time think_max{0};
  double rate = 0;  // executions per second that all users together are asked for; 0: unlimited
  Arrival arrival = Arrival::kFixed;
  int commit_every = 1;  // executions of a user that share one commit

  bool operator==(const Phase&) const = default;
};

}  // namespace lkbench

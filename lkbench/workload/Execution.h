// SPDX-License-Identifier: Apache-2.0
// One execution of a transaction by a user's thread: run, commit or rollback, measured.
#pragma once

#include "db/Xact.h"
#include "lkbench/Users.h"
#include "lkbench/workload/Schedule.h"
#include "lkbench/workload/UserStats.h"

namespace lkbench {

// `intended` is when it should have started; without one it is when it does. With `commits` the commit
// belongs to the execution and to its times. A failure is rolled back, and that is not timed.
Execution RunOnce(VirtualUser& user, CXact& xact, TimePoint intended = {}, bool commits = true);

}  // namespace lkbench

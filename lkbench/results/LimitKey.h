// SPDX-License-Identifier: Apache-2.0
// The job key `limits`: a table { "insert.p99" = "<20ms" }, also [limits], or texts insert.p99<20ms.
#pragma once

#include "lkbench/Job.h"
#include "lkbench/options/KeyTypes.h"

namespace lkbench {

KeyType<Job> LimitTable();

}  // namespace lkbench

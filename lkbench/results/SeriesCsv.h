// SPDX-License-Identifier: Apache-2.0
// The intervals of a workload as comma-separated values (RFC 4180 with line feeds): one line per interval and
// transaction, and one with the transaction "total". Times are nanoseconds. A pure function.
#pragma once

#include <string>

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

std::string SeriesCsv(const RunRecord& record);

}  // namespace lkbench

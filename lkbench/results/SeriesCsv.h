// SPDX-License-Identifier: Apache-2.0
// The intervals of a workload as comma-separated values (RFC 4180 with line feeds): one line per interval and
// transaction, and one with the transaction "total". Times are nanoseconds. A pure function.
#pragma once

#include <span>
#include <string>

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

struct SeriesColumn {
  const char* name;
  const char* meaning;
};

std::span<const SeriesColumn> SeriesColumns();  // in their order
std::string SeriesCsv(const RunRecord& record);

}  // namespace lkbench

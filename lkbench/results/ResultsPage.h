// SPDX-License-Identifier: Apache-2.0
// lkbench-results(5): what a run leaves behind. The fields of run.json are those of its schema, the columns
// of series.csv those of its writer. A pure function.
#pragma once

#include <string>

namespace lkbench {

std::string ResultsPage();

}  // namespace lkbench

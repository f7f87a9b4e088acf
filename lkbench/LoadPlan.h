// SPDX-License-Identifier: Apache-2.0
// What a load has to do, worked out from the schema and the job alone: a pure function, so that every case is
// tested without a database.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lkbench/Schema.h"

namespace lkbench {

struct LoadPlan {
  int first = 1;
  int last = 1;
  bool use_backup = false;
  double wanted = 0;
  double base = 0;  // rows of this scale are there already; the load adds those above it

  std::vector<int> repairs;  // tables to be made from their backups before anything else
  std::map<int, double>
      cut_back;  // what the load writes into: tables (or backups) and the scale to cut them to
  std::map<int, double> scale_after;  // of each table, once the load has ended well

  std::uint64_t rows = 0;  // that the load will insert
};

// Throws UsageError when a table is missing and cannot be made from a backup.
LoadPlan PlanLoad(const Schema& schema, int first, int last, double wanted, bool use_backup);

}  // namespace lkbench

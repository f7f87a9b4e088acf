// SPDX-License-Identifier: Apache-2.0
// Whether a schema is ready for what a verb wants to do. Each check throws a UsageError whose one line says
// what to do first; nothing has been changed then.
#pragma once

#include "lkbench/Bench.h"

namespace lkbench {

// The schema stands and has the tables that the job means; fills in their number where the job leaves it
// open.
void RequireSchema(Bench& bench, const Schema& schema, const char* verb);

// No table is missing, and no load was broken off. A refresh puts a load of the tables themselves right
// again, so it asks for less.
enum class Broken { kNone, kTableLoadsToo };
void RequireWholeTables(const Bench& bench, const Schema& schema, const char* verb,
                        Broken allowed = Broken::kNone);

// What the job says with --scale, or else what fits the schema, which the job then says too.
double WantedScale(Bench& bench, double otherwise);

int FirstTable(const Job& job);  // 1 when unset

}  // namespace lkbench

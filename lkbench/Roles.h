// SPDX-License-Identifier: Apache-2.0
// What each transaction of a benchmark is for. The one place that knows ids and kinds, but for the ids that
// have a weight (workload/Mix.h): everything else asks for a role. Copies are made by class name through the
// benchmark, which owns the registered originals.
#pragma once

#include <memory>
#include <vector>

#include "db/SSBenchmark.h"
#include "db/Xact.h"
#include "lkbench/Job.h"

namespace lkbench {

enum class Role {
  kCreateTables,
  kCreateProperties,
  kCreateSequence,
  kDropTables,
  kDropProperties,
  kDropSequence,
  kLoad,
  kRefreshTables,
  kRefreshProperties,
  kRefreshSequence,
  kWorkload,
  kUnknown
};

Role RoleOf(const CXact& xact);

// A new copy of the transaction with that role. Throws PrepareError when the benchmark has none, or one that
// cannot be copied.
std::unique_ptr<CXact> NewXact(CSSBenchmark& benchmark, Role role);
// The same for the workload's transaction with an id.
std::unique_ptr<CXact> NewWorkloadXact(CSSBenchmark& benchmark, int id);

struct WorkloadXact {
  int id;
  int weight;
};
// The workload's transactions in registration order, with their weights in the mix.
std::vector<WorkloadXact> WorkloadXacts(const CSSBenchmark& benchmark, const Mix& mix);

// Throws PrepareError when the benchmark lacks a transaction, or has one that cannot be copied, which the
// verb needs whatever the database holds.
void RequireXacts(CSSBenchmark& benchmark, const Job& job, Verbs verb);

// "CREATE_TABLE" and so on; what the benchmark leaves open is "workload".
const char* KindName(int kind);

}  // namespace lkbench

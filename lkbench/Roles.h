// SPDX-License-Identifier: Apache-2.0
// What each transaction of a benchmark is for. The one place that knows ids and kinds: everything else asks
// for a role. Copies are made by class name through the benchmark, which owns the registered originals.
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

// A new copy of the transaction with that role. Throws PrepareError when the benchmark has none.
std::unique_ptr<CXact> NewXact(CSSBenchmark& benchmark, Role role);

struct WorkloadXact {
  int id;
  int weight;
};
// The workload's transactions in registration order, with their weights in the mix.
std::vector<WorkloadXact> WorkloadXacts(const CSSBenchmark& benchmark, const Mix& mix);

// "CREATE_TABLE" and so on; what the benchmark leaves open is "workload".
const char* KindName(int kind);

}  // namespace lkbench

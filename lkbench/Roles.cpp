// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Roles.h"

#include <algorithm>
#include <array>
#include <string>

#include "lkbench/Failure.h"

namespace lkbench {
namespace {

struct SetUpRole {
  int id;
  int kind;
  Role role;
  const char* name;
};

constexpr std::array kSetUp = {
    SetUpRole{100, CREATE_TABLE, Role::kCreateTables, "creates the tables"},
    SetUpRole{101, CREATE_TABLE, Role::kCreateProperties, "creates the properties table"},
    SetUpRole{161, CREATE_SP, Role::kCreateSequence, "creates the sequence"},
    SetUpRole{120, DROP_TABLE, Role::kDropTables, "drops the tables"},
    SetUpRole{121, DROP_TABLE, Role::kDropProperties, "drops the properties table"},
    SetUpRole{171, DROP_SP, Role::kDropSequence, "drops the sequence"},
    SetUpRole{110, LOAD_TABLE, Role::kLoad, "loads the tables"},
    SetUpRole{181, TRANSACTION, Role::kRefreshTables, "refreshes the tables"},
    SetUpRole{182, TRANSACTION, Role::kRefreshProperties, "refreshes the properties"},
    SetUpRole{183, TRANSACTION, Role::kRefreshSequence, "refreshes the sequence"}};

constexpr int kInsertID = 131, kUpdateID = 141, kDeleteID = 151;

int WeightOf(int id, const Mix& mix) {
  switch (id) {
    case kInsertID:
      return mix.insert;
    case kUpdateID:
      return mix.update;
    case kDeleteID:
      return mix.remove;
    default:
      return 0;
  }
}

}  // namespace

Role RoleOf(const CXact& xact) {
  if (xact.GetTransactionType() == UNKNOWN) return Role::kWorkload;
  const auto found = std::ranges::find_if(kSetUp, [&](const SetUpRole& each) {
    return each.id == xact.GetXactID() && each.kind == xact.GetTransactionType();
  });
  return found == kSetUp.end() ? Role::kUnknown : found->role;
}

std::unique_ptr<CXact> NewXact(CSSBenchmark& benchmark, Role role) {
  const auto* wanted = std::ranges::find(kSetUp, role, &SetUpRole::role);
  for (int i = 0; i < benchmark.GetXactCount(); ++i)
    if (RoleOf(*benchmark.GetXact(i)) == role)
      return std::unique_ptr<CXact>(benchmark.GetNewXactByID(benchmark.GetXact(i)->GetXactID()));
  throw PrepareError("the plug-in has no transaction that " + std::string(wanted->name));
}

std::vector<WorkloadXact> WorkloadXacts(const CSSBenchmark& benchmark, const Mix& mix) {
  std::vector<WorkloadXact> xacts;
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    const CXact& xact = *benchmark.GetXact(i);
    if (RoleOf(xact) == Role::kWorkload) xacts.push_back({xact.GetXactID(), WeightOf(xact.GetXactID(), mix)});
  }
  return xacts;
}

const char* KindName(int kind) {
  static constexpr std::array kNames = {
      "workload",         "QUERY",      "randomQUERY",  "inputQUERY", "TRANSACTION",  "randomTRANSACTION",
      "inputTRANSACTION", "LOAD_TABLE", "CREATE_TABLE", "DROP_TABLE", "CREATE_INDEX", "DROP_INDEX",
      "CREATE_SP",        "DROP_SP",    "CREATE_VIEW",  "DROP_VIEW",  "EXT_FUNCTION"};
  return kind >= 0 && kind < static_cast<int>(kNames.size()) ? kNames[static_cast<size_t>(kind)] : "unknown";
}

}  // namespace lkbench

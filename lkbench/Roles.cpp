// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Roles.h"

#include <algorithm>
#include <array>
#include <string>
#include <typeinfo>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/PhaseKeys.h"

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

int WeightOf(int id, const Mix& mix) {
  const auto* found = std::ranges::find(kMixParts, id, &MixPart::id);
  return found == kMixParts.end() ? 0 : mix.*found->weight;
}

const CXact* Find(const CSSBenchmark& benchmark, Role role, int id) {
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    const CXact* xact = benchmark.GetXact(i);
    if (xact->GetXactID() == id && RoleOf(*xact) == role) return xact;
  }
  return nullptr;
}

// A class that is not declared to wxWidgets is copied as its base, which does nothing and succeeds.
std::unique_ptr<CXact> CopyOf(CSSBenchmark& benchmark, const CXact& xact) {
  std::unique_ptr<CXact> copy(benchmark.GetNewXactByID(xact.GetXactID()));
  if (copy != nullptr && typeid(*copy) == typeid(xact)) return copy;
  throw PrepareError(
      "the plug-in's transaction \"" + Excerpt(xact.GetName().ToChar()) + "\" cannot be copied: its class " +
      "needs wxDECLARE_DYNAMIC_CLASS, wxIMPLEMENT_DYNAMIC_CLASS and a default constructor, and the id " +
      std::to_string(xact.GetXactID()) + " for itself");
}

// As a --mix gives them: what of the mix the benchmark has, or has not.
std::string MixText(const CSSBenchmark& benchmark, const Mix& mix, bool is_there) {
  std::vector<std::string> parts;
  for (const MixPart& each : kMixParts)
    if (mix.*each.weight > 0 && (Find(benchmark, Role::kWorkload, each.id) != nullptr) == is_there)
      parts.push_back(std::string(each.name) + '=' + std::to_string(mix.*each.weight));
  return Join(parts, ",");
}

void RequireMix(CSSBenchmark& benchmark, const Mix& mix) {
  const std::string missing = MixText(benchmark, mix, false);
  const std::string rest = MixText(benchmark, mix, true);
  if (!missing.empty())
    throw PrepareError("the plug-in has no transaction for " + missing + " of the mix" +
                       (rest.empty() ? "" : ": leave it out, as --mix " + rest));
  for (const MixPart& each : kMixParts)
    if (mix.*each.weight > 0) NewWorkloadXact(benchmark, each.id);
}

// What creates and drops depends on the schema, but for the verb that does nothing else.
std::vector<Role> RolesOf(Verbs verb, bool is_new) {
  switch (verb) {
    case kCreateVerb:
      return is_new ? std::vector{Role::kCreateTables, Role::kCreateSequence, Role::kCreateProperties}
                    : std::vector{Role::kCreateTables, Role::kRefreshProperties};
    case kLoadVerb:
      return {Role::kLoad, Role::kRefreshSequence, Role::kRefreshProperties};
    case kRefreshVerb:
      return {Role::kRefreshTables, Role::kRefreshSequence, Role::kRefreshProperties};
    case kRunVerb:
      return {Role::kLoad, Role::kRefreshTables, Role::kRefreshSequence, Role::kRefreshProperties};
    case kDropVerb:
      return {Role::kDropTables};
    default:
      return {};
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
  const CXact* xact = Find(benchmark, role, wanted->id);
  if (xact == nullptr) throw PrepareError("the plug-in has no transaction that " + std::string(wanted->name));
  return CopyOf(benchmark, *xact);
}

std::unique_ptr<CXact> NewWorkloadXact(CSSBenchmark& benchmark, int id) {
  return CopyOf(benchmark, *Find(benchmark, Role::kWorkload, id));
}

std::vector<WorkloadXact> WorkloadXacts(const CSSBenchmark& benchmark, const Mix& mix) {
  std::vector<WorkloadXact> xacts;
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    const CXact& xact = *benchmark.GetXact(i);
    if (RoleOf(xact) == Role::kWorkload) xacts.push_back({xact.GetXactID(), WeightOf(xact.GetXactID(), mix)});
  }
  return xacts;
}

void RequireXacts(CSSBenchmark& benchmark, const Job& job, Verbs verb) {
  for (const Role role : RolesOf(verb, job.first_table <= 1)) NewXact(benchmark, role);
  if ((verb & kWorkVerbs) == 0) return;
  for (const Phase& phase : PhasesOf(job)) RequireMix(benchmark, phase.mix);
}

const char* KindName(int kind) {
  static constexpr std::array kNames = {
      "workload",         "QUERY",      "randomQUERY",  "inputQUERY", "TRANSACTION",  "randomTRANSACTION",
      "inputTRANSACTION", "LOAD_TABLE", "CREATE_TABLE", "DROP_TABLE", "CREATE_INDEX", "DROP_INDEX",
      "CREATE_SP",        "DROP_SP",    "CREATE_VIEW",  "DROP_VIEW",  "EXT_FUNCTION"};
  return kind >= 0 && kind < static_cast<int>(kNames.size()) ? kNames[static_cast<size_t>(kind)] : "unknown";
}

}  // namespace lkbench

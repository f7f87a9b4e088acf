// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of the table refresh: truncates and batched deletes, of the tables and of their backups.
#include "RefreshSubject.h"
#include "SweepTest.h"

namespace sweep {
namespace {

using scripted::Oci;

constexpr char kLookUp[] = "SELECT COUNT(*) FROM USER_TABLES";

void HaveBackup(const std::string& table, const char* count) {
  Oci().Answer(std::string(kLookUp) + " WHERE TABLE_NAME = '" + table + "_BAK'", {{{count}}});
}

void Truncate(Settings& settings) { settings.properties.SetCurrentScale(0); }

void Delete(Settings& settings) {
  settings.properties.SetCurrentScale(1);
  settings.properties.SetLoadedMaxScale(14);
  Oci().RowCounts("DELETE FROM LK_REP_TABLE1", {5000, 5000, 2345});
  Oci().RowCounts("DELETE FROM LK_REP_TABLE2", {0});
}

Setup InBackups(const Setup& setup) {
  return [=](Settings& settings) {
    setup(settings);
    settings.properties.SetCreateUseBackup(true);
    settings.properties.SetIntAttribute2(1);
    HaveBackup("LK_REP_TABLE1", "1");
    HaveBackup("LK_REP_TABLE2", "1");
  };
}

void OneBackupIsMissing(Settings& settings) {
  InBackups(Truncate)(settings);
  HaveBackup("LK_REP_TABLE2", "0");
}

using TableRefresh = RefreshSubject<CREP_RefreshTable_ORA8>;

// A table whose backup cannot be looked up is left out.
class ListedTables : public TableRefresh {
 public:
  using TableRefresh::TableRefresh;
  void Check(int) override {
    if (Oci().Struck().empty()) {
      EXPECT_EQ(m_xact->m_TableArray.GetCount(), 2);
    }
    if (!m_reports.Errors().empty()) {
      EXPECT_EQ(m_xact->m_TableArray.GetCount(), 1);
    }
  }
};

std::vector<Operation> TableRefreshOperations() {
  const Rules look_up = DriverQuery(kLookUp, {1}, Effect{1}) + Frees();
  const Rules truncate = RefreshStatement("TRUNCATE TABLE LK_REP_TABLE");
  const Rules deletes = RefreshStatement("DELETE FROM LK_REP_TABLE");
  const Effect success{1, {}, 1};
  return {
      {"PreBenchmarkInBackups", Make<ListedTables>(Step::kPreBenchmark, InBackups(Truncate)), {1}, look_up},
      {"PreBenchmarkWithAMissingBackup",
       Make<TableRefresh>(Step::kPreBenchmark, OneBackupIsMissing),
       {1},
       look_up},
      {"Truncate", Make<TableRefresh>(Step::kExecute, Truncate), success, truncate},
      {"TruncateBackups", Make<TableRefresh>(Step::kExecute, InBackups(Truncate)), success, truncate},
      {"Delete", Make<TableRefresh>(Step::kExecute, Delete), success, deletes},
      {"DeleteInBackups", Make<TableRefresh>(Step::kExecute, InBackups(Delete)), success, deletes},
      {"PostBenchmark", Make<TableRefresh>(Step::kPostBenchmark, Delete), {1}, Frees()}};
}

SWEEP(TableRefresh, TableRefreshOperations());

}  // namespace
}  // namespace sweep

// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of the load: direct and by way of backups, cancelled, and the load of a single table.
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "CommonRules.h"
#include "SweepTest.h"
#include "XactSubject.h"

namespace sweep {
namespace {

using scripted::Oci;

constexpr char kLookUp[] = "SELECT COUNT(*) FROM USER_TABLES";
constexpr char kKey[] = "SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS";

void HaveTable(const std::string& table) {
  Oci().Describe("SELECT * FROM " + table, {{"ID", SQLT_NUM, 22, 0, -127, 0}, {"COLUMN1", SQLT_CHR, 4}});
  Oci().Answer(std::string(kKey) +
                   " K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE = 'P' AND K.TABLE_NAME = '" + table +
                   "' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME "
                   "ORDER BY C.POSITION",
               {{{"ID"}}});
}

void HaveBackups(const char* count) {
  for (const char* table : {"LK_REP_TABLE1_BAK", "LK_REP_TABLE2_BAK"})
    Oci().Answer(std::string(kLookUp) + " WHERE TABLE_NAME = '" + table + "'", {{{count}}});
}

// Ten rows a table, in batches of 4, 4 and 2.
void Direct(Settings& settings) {
  LKGetConfig()->WriteProfileInt(L"Settings", L"RowsPerCommit", 4);
  settings.properties.SetScale(0.01);
  for (const char* table : {"LK_REP_TABLE1", "LK_REP_TABLE2", "LK_REP_TABLE1_BAK", "LK_REP_TABLE2_BAK"})
    HaveTable(table);
}

void WithBackups(Settings& settings) {
  Direct(settings);
  settings.properties.SetCreateUseBackup(true);
  HaveBackups("1");
}

void WithoutTheBackups(Settings& settings) {
  WithBackups(settings);
  HaveBackups("0");
}

Setup Cancelled(const Setup& setup) {
  return [=](Settings& settings) {
    setup(settings);
    settings.cancelled = true;
  };
}

void AfterAFailedLoad(Settings& settings) {
  Direct(settings);
  settings.properties.SetLastIsBackupOption(true);
  settings.properties.SetLastLoadFailed(true);
}

// The base on its own, for one table.
class SingleTable : public XactSubject<CXact_LoadTableBase_ORA8> {
 public:
  SingleTable(Step step, const Setup& setup) : XactSubject(step, setup) {
    m_xact->m_szTableName = L"LK_REP_TABLE1";
  }
};

// The backups are there once they are made: only the run before the load misses them.
class BackupsMadeByTheLoad : public XactSubject<CXact_LoadTable_ORA8> {
 public:
  using XactSubject::XactSubject;
  void Prepare() override {
    HaveBackups("0");
    XactSubject::Prepare();
    HaveBackups("1");
  }
};

// A table is made from its backup; what fails becomes `failure`.
Rules Restore(const Effect& failure) {
  return DriverQuery(kLookUp, failure,
                     ReportedFirst("ERROR -1: Cannot restore table LK_REP_TABLE", failure)) +
         DriverDrop("DROP TABLE LK_REP_TABLE", failure) + DriverQuery(kKey, failure, {}) +
         DriverStatement("CREATE TABLE LK_REP_TABLE", failure) +
         DriverStatement("ALTER TABLE LK_REP_TABLE", failure) + Frees();
}

// An empty backup is made from its table.
Rules CreateBackup() {
  const Effect failure{0, {"ERROR -1: Failed to create initial backup for table LK_REP_TABLE"}};
  return DriverQuery(kKey, failure, {}) + DriverStatement("CREATE TABLE LK_REP_TABLE", failure) +
         DriverStatement("ALTER TABLE LK_REP_TABLE", failure) + Frees();
}

std::vector<Operation> LoadOperations() {
  using Load = XactSubject<CXact_LoadTable_ORA8>;
  const Rules look_up = DriverQuery(kLookUp, {1}, Effect{1}) + Frees();
  const Rules rows = Describe({0}) + Loader(0) + LoaderSend(0) + Frees();
  const Rules restore = Restore({1, {"WARNING 0: Failed to create table LK_REP_TABLE"}});
  return {{"PreBenchmark", Make<Load>(Step::kPreBenchmark, WithBackups), {1}, look_up},
          {"PreBenchmarkWithoutTheBackups", Make<Load>(Step::kPreBenchmark, WithoutTheBackups), {1}, look_up},
          {"PreIteration", Make<Load>(Step::kPreIteration, WithoutTheBackups), {1}, CreateBackup()},
          {"Direct", Make<Load>(Step::kExecute, Direct), {1}, rows},
          {"IntoBackups", Make<Load>(Step::kExecute, WithBackups), {1}, rows},
          {"IntoNewBackups", Make<Load>(Step::kExecute, WithoutTheBackups), {1}, rows},
          {"Cancelled", Make<Load>(Step::kExecute, Cancelled(Direct)), {0}, rows + Rules{{"OCIBreak", ""}}},
          {"PostBenchmark", Make<Load>(Step::kPostBenchmark, WithBackups), {1}, restore},
          {"PostBenchmarkAfterNewBackups",
           Make<BackupsMadeByTheLoad>(Step::kPostBenchmark, WithoutTheBackups),
           {1},
           restore}};
}

// A cancel between the load and its end: the backups are dropped.
class CancelledAtTheEnd : public XactSubject<CXact_LoadTable_ORA8> {
 public:
  using XactSubject::XactSubject;
  void Prepare() override {
    Renew();
    XactSubject::Prepare();
    m_xact->RequestCancel();
  }
};

std::vector<Operation> SingleTableOperations() {
  const Effect rename_failed{0, {"ERROR -1: Failed to change from backup name for table LK_REP_TABLE1"}};
  return {{"PreBenchmark",
           Make<SingleTable>(Step::kPreBenchmark, WithBackups),
           {1},
           DriverQuery(kLookUp, {1}, Effect{1}) + Frees()},
          {"PreIteration", Make<SingleTable>(Step::kPreIteration, WithoutTheBackups), {1}, CreateBackup()},
          {"PreIterationAfterAFailedLoad",
           Make<SingleTable>(Step::kPreIteration, AfterAFailedLoad),
           {1},
           DriverDrop("DROP TABLE LK_REP_TABLE1", {1}) +
               DriverStatement("ALTER TABLE LK_REP_TABLE1_BAK RENAME", rename_failed) + Frees()},
          {"Execute",
           Make<SingleTable>(Step::kExecute, WithBackups),
           {1},
           Restore({1, {"ERROR -1: Failed to restore backup of table LK_REP_TABLE1"}})},
          {"LoadCancelledAtTheEnd",
           Make<CancelledAtTheEnd>(Step::kPostBenchmark, WithBackups),
           {1},
           DriverDrop("DROP TABLE LK_REP_TABLE1_BAK", {1}) + DriverDrop("DROP TABLE LK_REP_TABLE2_BAK", {1}) +
               Frees()}};
}

SWEEP(Load, LoadOperations());
SWEEP(SingleTableLoad, SingleTableOperations());

}  // namespace
}  // namespace sweep

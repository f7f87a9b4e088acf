// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of the creates and drops, and of the refreshes of the properties and the sequence.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "CommonRules.h"
#include "RefreshSubject.h"
#include "SweepTest.h"

namespace sweep {
namespace {

using scripted::Oci;

const Effect kReported{0, {kOwnReport}};
const Effect kSilent{0};

void HaveColumnTypes(Settings& settings) {
  CRepBenchmarkProperties& properties = settings.properties.GetRepBenchmarkProperties();
  properties.SetTableNumber(3);
  properties.SetColumnNumbers(2, 2);
  properties.SetColumnInfo({std::make_shared<ColumnInfo>(L"NUMBER", 1, false)});
}

void StartAtTable2(Settings& settings) {
  HaveColumnTypes(settings);
  settings.properties.SetIntAttribute1(2);
}

void Cancel(Settings& settings) {
  HaveColumnTypes(settings);
  settings.cancelled = true;
}

void HaveNoColumnTypes(Settings& settings) {
  settings.properties.GetRepBenchmarkProperties().SetColumnInfo({});
}

void Nothing(Settings&) {}

void HaveTwoTables(Settings&) { Oci().Refuse("DROP TABLE LK_REP_TABLE3", 942); }

void HaveTwoTablesWithoutBackups(Settings& settings) {
  HaveTwoTables(settings);
  Oci().Refuse("DROP TABLE LK_REP_TABLE1_BAK", 942);
  Oci().Refuse("DROP TABLE LK_REP_TABLE2_BAK", 942);
}

void HaveNothingToDrop(Settings&) {
  Oci().Refuse("DROP TABLE LK_REP_TABLE1", 942);
  Oci().Refuse("DROP TABLE LK_REP_PROPERTIES", 4043);
  Oci().Refuse("DROP SEQUENCE LK_REP_ID_SEQ", 2289);
}

template <class Transaction>
std::function<std::unique_ptr<Subject>()> Execute(const Setup& setup) {
  return Make<XactSubject<Transaction>>(Step::kExecute, setup);
}

std::vector<Operation> CreateOperations() {
  using Tables = CXact_Create_RepTables;
  using Properties = CXact_Create_Replication_Properties_Table;
  const Rules tables = Statement("CREATE TABLE LK_REP_TABLE", kReported) + Frees();
  const Rules allocation = {{"OCIHandleAlloc", "", kAnyFailure, kReported}};
  return {
      {"CreateTables", Execute<Tables>(HaveColumnTypes), {1}, tables},
      {"CreateTablesFromTheSecondOn", Execute<Tables>(StartAtTable2), {1}, tables},
      {"CreateTablesCancelled", Execute<Tables>(Cancel), {1}, allocation + Frees()},
      {"CreateTablesWithoutColumnTypes", Execute<Tables>(HaveNoColumnTypes), {0, {}, 0, 1}, allocation},
      {"CreateSequence",
       Execute<CXact_Create_Sequence>(Nothing),
       {1},
       Statement("CREATE SEQUENCE LK_REP_ID_SEQ", kReported) + Frees()},
      {"CreateProperties",
       Execute<Properties>(HaveColumnTypes),
       {1, {}, 0, 1},
       Statement("CREATE TABLE LK_REP_PROPERTIES", kReported) + Statement("BEGIN INSERT INTO", kReported)}};
}

// What the database refuses is refused, whatever information might come with it.
Rules Refused(const std::string& text) { return {{"OCIStmtExecute", text, kInfo}}; }

// The backups go on the way, whatever comes of it; the first table that cannot be dropped ends the run, in
// silence when it is missing.
Rules DropTablesRules() {
  return DriverDrop("DROP TABLE LK_REP_TABLE1_BAK", {0}) + DriverDrop("DROP TABLE LK_REP_TABLE2_BAK", {0}) +
         Rules{{"OCIStmtExecute", "DROP TABLE LK_REP_TABLE", kMissing, kSilent}} +
         Statement("DROP TABLE LK_REP_TABLE", kReported) + Frees();
}

Rules DropPropertiesRules() {
  return Rules{{"OCIStmtExecute", "DROP TABLE LK_REP_PROPERTIES", kMissing, kSilent}} +
         Statement("DROP TABLE LK_REP_PROPERTIES", kReported) + Frees();
}

// By way of the driver's statement, which is then executed whether or not it could be prepared.
Rules DropSequenceRules() {
  const std::string text = "DROP SEQUENCE LK_REP_ID_SEQ";
  const std::string unprepared = "ERROR -1: Cannot execute the statement (no statement is prepared)";
  const Effect not_prepared{0, {"ERROR %N: Cannot prepare: " + text, unprepared}};
  return Rules{{"OCIHandleAlloc", text, kAnyFailure, not_prepared},
               {"OCIStmtPrepare", text, kMissing, Effect{0, {unprepared}}},
               {"OCIStmtPrepare", text, kAnyFailure, not_prepared},
               {"OCIStmtExecute", text, kMissing, kSilent},
               {"OCIStmtExecute", text, kAnyFailure, Effect{0, {"ERROR %N: Cannot execute the statement"}}}} +
         Frees();
}

std::vector<Operation> DropOperations() {
  using Tables = CXact_Drop_RepTables;
  using Properties = CXact_Drop_Replication_Properties_Table;
  return {{"DropTables",
           Execute<Tables>(HaveTwoTables),
           {0},
           Refused("DROP TABLE LK_REP_TABLE3") + DropTablesRules()},
          {"DropTablesWithoutBackups",
           Execute<Tables>(HaveTwoTablesWithoutBackups),
           {0},
           Refused("DROP TABLE LK_REP_TABLE3") + Refused("DROP TABLE LK_REP_TABLE1_BAK") +
               Refused("DROP TABLE LK_REP_TABLE2_BAK") + DropTablesRules()},
          {"DropNoTables",
           Execute<Tables>(HaveNothingToDrop),
           {0},
           Refused("DROP TABLE LK_REP_TABLE1") + DropTablesRules()},
          {"DropProperties", Execute<Properties>(Nothing), {1}, DropPropertiesRules()},
          {"DropNoProperties",
           Execute<Properties>(HaveNothingToDrop),
           {0},
           Refused("DROP TABLE LK_REP_PROPERTIES") + DropPropertiesRules()},
          {"DropSequence", Execute<CXact_Drop_Sequence>(Nothing), {1}, DropSequenceRules()},
          {"DropNoSequence",
           Execute<CXact_Drop_Sequence>(HaveNothingToDrop),
           {0},
           Refused("DROP SEQUENCE LK_REP_ID_SEQ") + DropSequenceRules()}};
}

std::vector<Operation> RefreshOperations() {
  using Properties = RefreshSubject<CREP_Refresh_Properties_Table>;
  using Sequence = RefreshSubject<CREP_Refresh_Sequence>;
  return {{"RefreshProperties",
           Make<Properties>(Step::kExecute, Nothing),
           {1, {}, 1},
           RefreshStatement("BEGIN UPDATE LK_REP_PROPERTIES")},
          {"RefreshPropertiesPostBenchmark", Make<Properties>(Step::kPostBenchmark, Nothing), {1}, Frees()},
          {"RefreshSequence",
           Make<Sequence>(Step::kExecute, Nothing),
           {1, {}, 1},
           RefreshStatement("DECLARE v_count number;")},
          {"RefreshSequencePostBenchmark", Make<Sequence>(Step::kPostBenchmark, Nothing), {1}, Frees()}};
}

SWEEP(Create, CreateOperations());
SWEEP(Drop, DropOperations());
SWEEP(Refresh, RefreshOperations());

}  // namespace
}  // namespace sweep

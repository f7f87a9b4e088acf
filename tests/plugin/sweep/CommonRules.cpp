// SPDX-License-Identifier: Apache-2.0
#include "CommonRules.h"

namespace sweep {

Effect ReportedFirst(const std::string& report, Effect effect) {
  effect.reports.insert(effect.reports.begin(), report);
  return effect;
}

Rules Frees() { return {{"OCIHandleFree", ""}, {"OCIDescriptorFree", ""}}; }

Rules Statement(const std::string& text, const Effect& failure) {
  return {{"OCIHandleAlloc", text, kAnyFailure, failure},
          {"OCIStmtPrepare", text, kAnyFailure, failure},
          {"OCIStmtExecute", text, kAnyFailure, failure}};
}

namespace {

// The driver knows that a failed allocation leaves no record.
Rules DriverCalls(const std::string& what, const std::string& text, const Effect& after) {
  const Effect no_handle = ReportedFirst("ERROR -1: " + what + text, after);
  return Rules{{"OCIHandleAlloc", text, kAnyFailure, no_handle}} +
         Statement(text, ReportedFirst("ERROR %N: " + what + text, after));
}

}  // namespace

Rules DriverStatement(const std::string& text, const Effect& after) {
  return DriverCalls("Cannot run: ", text, after);
}

Rules DriverDrop(const std::string& text, const Effect& after) {
  return Rules{{"OCIStmtPrepare", text, kMissing}, {"OCIStmtExecute", text, kMissing}} +
         DriverStatement(text, after);
}

Rules DriverQuery(const std::string& text, const Effect& after, std::optional<Effect> no_rows) {
  const Effect failure = ReportedFirst("ERROR %N: Cannot query: " + text, after);
  return Rules{{"OCIStmtFetch2", text, kInfo},
               {"OCIStmtFetch2", text, kNoData, std::move(no_rows)},
               {"OCIStmtFetch2", text, kAnyFailure, failure},
               {"OCIAttrGet", text, kAnyFailure, failure},
               {"OCIParamGet", text, kAnyFailure, failure},
               {"OCIDefineByPos", text, kAnyFailure, failure}} +
         DriverCalls("Cannot query: ", text, after);
}

Rules Describe(const Effect& after) {
  const Effect columns = ReportedFirst("ERROR %N: Unable to initialize columns", after);
  return {{"OCIHandleAlloc", "SELECT * FROM ", kAnyFailure,
           ReportedFirst("ERROR -1: Unable allocate statement handle!", after)},
          {"OCIStmtPrepare", "SELECT * FROM ", kAnyFailure,
           ReportedFirst("ERROR %N: Unable Prepare statement while Initialize.\n", after)},
          {"OCIStmtExecute", "SELECT * FROM ", kAnyFailure,
           ReportedFirst("ERROR %N: Unable Describe table while Initialize!\n", after)},
          {"OCIAttrGet", "SELECT * FROM ", kAnyFailure, columns},
          {"OCIParamGet", "SELECT * FROM ", kAnyFailure, columns}};
}

Rules Loader(int owned) {
  const Effect silent{0, {}, owned};
  return {{"OCIHandleAlloc", "INSERT INTO LK_REP_TABLE", kAnyFailure,
           Effect{0, {"ERROR %N: Unable create statement handle for TableLoader!\n"}, owned}},
          {"OCIStmtPrepare", "INSERT INTO LK_REP_TABLE", kAnyFailure, silent},
          {"OCIBindByPos", "INSERT INTO LK_REP_TABLE", kAnyFailure, silent},
          {"OCIBindArrayOfStruct", "INSERT INTO LK_REP_TABLE", kAnyFailure, silent}};
}

Rules LoaderSend(int owned) {
  return {{"OCIStmtExecute", "INSERT INTO LK_REP_TABLE", kAnyFailure, Effect{0, {kOwnReport}, owned}}};
}

}  // namespace sweep

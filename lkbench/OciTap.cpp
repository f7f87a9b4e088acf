// SPDX-License-Identifier: Apache-2.0
// Stands between the layers and the OCI library: reads the text of each statement that is prepared, notes
// each call that waits for the database, and passes it on. The program's own definitions are the first that
// the layers find, because their OCI symbols are bound when they are loaded; so they are in the program and
// in no library, and the program exports them (kept in step: lkbench/CMakeLists.txt).
#include <dlfcn.h>
#include <oci.h>

#include "lkbench/CallWatch.h"
#include "lkbench/workload/TableWatch.h"

#define LK_TAP extern "C" __attribute__((visibility("default"))) sword

using lkbench::CallNote;

namespace {

// The OCI library's own; null: none is loaded.
template <class Function>
Function* Behind(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Of the last execute, as the OCI library keeps them: no call to the database.
ub4 RowsOf(OCIStmt* statement, OCIError* error) {
  static const auto get = Behind<decltype(OCIAttrGet)>("OCIAttrGet");
  ub4 rows = 0;
  if (get != nullptr) get(statement, OCI_HTYPE_STMT, &rows, nullptr, OCI_ATTR_ROW_COUNT, error);
  return rows;
}

template <class Function, class... Arguments>
sword Pass(Function* function, Arguments... arguments) {
  return function == nullptr ? OCI_INVALID_HANDLE : function(arguments...);
}

}  // namespace

LK_TAP OCIStmtPrepare(OCIStmt* stmtp, OCIError* errhp, const OraText* stmt, ub4 stmt_len, ub4 language,
                      ub4 mode) {
  static const auto next = Behind<decltype(OCIStmtPrepare)>("OCIStmtPrepare");
  if (stmt != nullptr) {
    const std::string_view text(reinterpret_cast<const char*>(stmt), stmt_len);
    lkbench::NoteStatement(text);
    lkbench::NoteCallText(stmtp, text);
  }
  return Pass(next, stmtp, errhp, stmt, stmt_len, language, mode);
}

LK_TAP OCIStmtExecute(OCISvcCtx* svchp, OCIStmt* stmtp, OCIError* errhp, ub4 iters, ub4 rowoff,
                      const OCISnapshot* snap_in, OCISnapshot* snap_out, ub4 mode) {
  static const auto next = Behind<decltype(OCIStmtExecute)>("OCIStmtExecute");
  sword status = OCI_SUCCESS;
  {
    const CallNote note("executing", stmtp);
    status = Pass(next, svchp, stmtp, errhp, iters, rowoff, snap_in, snap_out, mode);
  }
  const bool is_done = status == OCI_SUCCESS || status == OCI_SUCCESS_WITH_INFO;
  if (is_done && lkbench::CallsAreNoted()) lkbench::NoteCallDone(stmtp, RowsOf(stmtp, errhp));
  return status;
}

LK_TAP OCIStmtFetch2(OCIStmt* stmtp, OCIError* errhp, ub4 nrows, ub2 orientation, sb4 fetchOffset, ub4 mode) {
  static const auto next = Behind<decltype(OCIStmtFetch2)>("OCIStmtFetch2");
  const CallNote note("fetching", stmtp);
  return Pass(next, stmtp, errhp, nrows, orientation, fetchOffset, mode);
}

LK_TAP OCITransCommit(OCISvcCtx* svchp, OCIError* errhp, ub4 flags) {
  static const auto next = Behind<decltype(OCITransCommit)>("OCITransCommit");
  const CallNote note("committing");
  return Pass(next, svchp, errhp, flags);
}

LK_TAP OCITransRollback(OCISvcCtx* svchp, OCIError* errhp, ub4 flags) {
  static const auto next = Behind<decltype(OCITransRollback)>("OCITransRollback");
  const CallNote note("rolling back");
  return Pass(next, svchp, errhp, flags);
}

LK_TAP OCIServerAttach(OCIServer* srvhp, OCIError* errhp, const OraText* dblink, sb4 dblink_len, ub4 mode) {
  static const auto next = Behind<decltype(OCIServerAttach)>("OCIServerAttach");
  const CallNote note("connecting");
  return Pass(next, srvhp, errhp, dblink, dblink_len, mode);
}

LK_TAP OCISessionBegin(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 credt, ub4 mode) {
  static const auto next = Behind<decltype(OCISessionBegin)>("OCISessionBegin");
  const CallNote note("logging on");
  return Pass(next, svchp, errhp, usrhp, credt, mode);
}

LK_TAP OCIServerVersion(void* hndlp, OCIError* errhp, OraText* bufp, ub4 bufsz, ub1 hndltype) {
  static const auto next = Behind<decltype(OCIServerVersion)>("OCIServerVersion");
  const CallNote note("asking for the version of the server");
  return Pass(next, hndlp, errhp, bufp, bufsz, hndltype);
}

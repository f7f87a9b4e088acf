// SPDX-License-Identifier: Apache-2.0
// Stands between the layers and the OCI library where a statement is prepared: it reads the text and passes
// the call on. The program's own definition is the first that the layers find, because their OCI symbols are
// bound when they are loaded; so it is in the program and in no library.
#include <dlfcn.h>
#include <oci.h>

#include "lkbench/workload/TableWatch.h"

extern "C" __attribute__((visibility("default"))) sword OCIStmtPrepare(OCIStmt* stmtp, OCIError* errhp,
                                                                       const OraText* stmt, ub4 stmt_len,
                                                                       ub4 language, ub4 mode) {
  static const auto next = reinterpret_cast<decltype(&OCIStmtPrepare)>(dlsym(RTLD_NEXT, "OCIStmtPrepare"));
  if (next == nullptr) return OCI_INVALID_HANDLE;  // no OCI library is loaded
  if (stmt != nullptr) lkbench::NoteStatement({reinterpret_cast<const char*>(stmt), stmt_len});
  return next(stmtp, errhp, stmt, stmt_len, language, mode);
}

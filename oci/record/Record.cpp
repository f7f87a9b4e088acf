// SPDX-License-Identifier: Apache-2.0
#include "oci/record/Record.h"

#include <oci.h>

#include <string>

namespace {

struct Handle {
  std::string text;  // of a statement
};

LkStatementTaker g_take = nullptr;
void* g_context = nullptr;

Handle* AsHandle(void* handle) { return static_cast<Handle*>(handle); }

}  // namespace

extern "C" {

void LkRecordStatements(LkStatementTaker take, void* context) {
  g_take = take;
  g_context = context;
}

sword OCIEnvNlsCreate(OCIEnv** environment, ub4, void*, void* (*)(void*, size_t),
                      void* (*)(void*, void*, size_t), void (*)(void*, void*), size_t, void**, ub2, ub2) {
  *environment = reinterpret_cast<OCIEnv*>(new Handle);
  return OCI_SUCCESS;
}

sword OCIHandleAlloc(const void*, void** handle, ub4, size_t, void**) {
  *handle = new Handle;
  return OCI_SUCCESS;
}

sword OCIHandleFree(void* handle, ub4) {
  delete AsHandle(handle);
  return OCI_SUCCESS;
}

sword OCIStmtPrepare(OCIStmt* statement, OCIError*, const OraText* text, ub4 size, ub4, ub4) {
  AsHandle(statement)->text.assign(reinterpret_cast<const char*>(text), size);
  return OCI_SUCCESS;
}

sword OCIStmtExecute(OCISvcCtx*, OCIStmt* statement, OCIError*, ub4, ub4, const OCISnapshot*, OCISnapshot*,
                     ub4) {
  const std::string& text = AsHandle(statement)->text;
  if (g_take != nullptr) g_take(g_context, text.data(), text.size());
  return OCI_SUCCESS;
}

sword OCIServerVersion(void*, OCIError*, OraText* buffer, ub4 size, ub1) {
  if (size > 0) *buffer = 0;
  return OCI_SUCCESS;
}

void OCIClientVersion(sword* major, sword* minor, sword* update, sword* patch, sword* port_update) {
  *major = *minor = *update = *patch = *port_update = 0;
}

sword OCIErrorGet(void*, ub4, OraText*, sb4*, OraText*, ub4, ub4) { return OCI_NO_DATA; }
sword OCIAttrSet(void*, ub4, void*, ub4, ub4, OCIError*) { return OCI_SUCCESS; }
sword OCIServerAttach(OCIServer*, OCIError*, const OraText*, sb4, ub4) { return OCI_SUCCESS; }
sword OCIServerDetach(OCIServer*, OCIError*, ub4) { return OCI_SUCCESS; }
sword OCISessionBegin(OCISvcCtx*, OCIError*, OCISession*, ub4, ub4) { return OCI_SUCCESS; }
sword OCISessionEnd(OCISvcCtx*, OCIError*, OCISession*, ub4) { return OCI_SUCCESS; }
sword OCIBreak(void*, OCIError*) { return OCI_SUCCESS; }
sword OCITransCommit(OCISvcCtx*, OCIError*, ub4) { return OCI_SUCCESS; }
sword OCITransRollback(OCISvcCtx*, OCIError*, ub4) { return OCI_SUCCESS; }
sword OCIStmtFetch2(OCIStmt*, OCIError*, ub4, ub2, sb4, ub4) { return OCI_NO_DATA; }

// What only a statement with binds or rows asks for.
sword OCIDescriptorFree(void*, ub4) { return OCI_ERROR; }
sword OCIAttrGet(const void*, ub4, void*, ub4*, ub4, OCIError*) { return OCI_ERROR; }
sword OCIParamGet(const void*, ub4, OCIError*, void**, ub4) { return OCI_ERROR; }
sword OCIBindArrayOfStruct(OCIBind*, OCIError*, ub4, ub4, ub4, ub4) { return OCI_ERROR; }
sword OCIBindByPos(OCIStmt*, OCIBind**, OCIError*, ub4, void*, sb4, ub2, void*, ub2*, ub2*, ub4, ub4*, ub4) {
  return OCI_ERROR;
}
sword OCIDefineByPos(OCIStmt*, OCIDefine**, OCIError*, ub4, void*, sb4, ub2, void*, ub2*, ub2*, ub4) {
  return OCI_ERROR;
}

}  // extern "C"

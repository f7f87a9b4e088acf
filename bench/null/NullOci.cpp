// SPDX-License-Identifier: Apache-2.0
// OCI over nothing: every call succeeds at once, keeps nothing but handles, and costs as little as it can.
// Any query describes one table, which has a column of each type of the default job; a defined double gets 1,
// 2, 3 and so on per statement; a row count is 1. Threads may call in, each with statements of its own.
#include <oci.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

struct Column {
  const char* name;
  ub2 type;
  ub2 size;
  sb2 precision;
  sb1 scale;
  ub1 nullable;
};

constexpr std::array kColumns = {
    Column{"ID", SQLT_NUM, 22, 0, -127, 0},        Column{"COLUMN1", SQLT_NUM, 22, 0, -127, 0},
    Column{"COLUMN2", SQLT_NUM, 22, 10, 2, 0},     Column{"COLUMN3", SQLT_CHR, 40, 0, 0, 1},
    Column{"COLUMN4", SQLT_AFC, 10, 0, 0, 0},      Column{"COLUMN5", SQLT_DAT, 7, 0, 0, 0},
    Column{"COLUMN6", SQLT_TIMESTAMP, 11, 0, 6, 1}};

// Every handle: what a statement needs is little enough to be part of all.
struct Handle {
  double* defined;
  double next;
};

template <class T>
void Give(void* out, T value) {
  std::memcpy(out, &value, sizeof value);
}

template <class T>
sword NewHandle(T** out) {
  *out = reinterpret_cast<T*>(std::calloc(1, sizeof(Handle)));
  return OCI_SUCCESS;
}

void GiveName(const Column& column, void* out, ub4* size) {
  Give(out, column.name);
  *size = static_cast<ub4>(std::strlen(column.name));
}

void GiveColumnAttribute(const Column& column, void* out, ub4* size, ub4 attribute) {
  switch (attribute) {
    case OCI_ATTR_NAME:
      return GiveName(column, out, size);
    case OCI_ATTR_DATA_TYPE:
      return Give(out, column.type);
    case OCI_ATTR_DATA_SIZE:
      return Give(out, column.size);
    case OCI_ATTR_PRECISION:
      return Give(out, column.precision);
    case OCI_ATTR_SCALE:
      return Give(out, column.scale);
    case OCI_ATTR_IS_NULL:
      return Give(out, column.nullable);
  }
}

}  // namespace

sword OCIEnvNlsCreate(OCIEnv** envhpp, ub4, void*, void* (*)(void*, size_t), void* (*)(void*, void*, size_t),
                      void (*)(void*, void*), size_t, void**, ub2, ub2) {
  return NewHandle(envhpp);
}
sword OCIHandleAlloc(const void*, void** hndlpp, ub4, size_t, void**) { return NewHandle(hndlpp); }
sword OCIHandleFree(void* hndlp, ub4) {
  std::free(hndlp);
  return OCI_SUCCESS;
}
sword OCIDescriptorFree(void*, ub4) { return OCI_SUCCESS; }
sword OCIAttrGet(const void* trgthndlp, ub4 trghndltyp, void* attributep, ub4* sizep, ub4 attrtype,
                 OCIError*) {
  if (trghndltyp == OCI_DTYPE_PARAM)
    GiveColumnAttribute(*static_cast<const Column*>(trgthndlp), attributep, sizep, attrtype);
  else if (attrtype == OCI_ATTR_PARAM_COUNT)
    Give(attributep, static_cast<ub4>(kColumns.size()));
  else if (attrtype == OCI_ATTR_ROW_COUNT)
    Give(attributep, ub4{1});
  return OCI_SUCCESS;
}
sword OCIAttrSet(void*, ub4, void*, ub4, ub4, OCIError*) { return OCI_SUCCESS; }
sword OCIParamGet(const void*, ub4, OCIError*, void** parmdpp, ub4 pos) {
  *parmdpp = const_cast<Column*>(&kColumns[pos - 1]);
  return OCI_SUCCESS;
}
sword OCIErrorGet(void*, ub4, OraText*, sb4* errcodep, OraText*, ub4, ub4) {
  *errcodep = 0;
  return OCI_NO_DATA;
}

sword OCIServerAttach(OCIServer*, OCIError*, const OraText*, sb4, ub4) { return OCI_SUCCESS; }
sword OCIServerDetach(OCIServer*, OCIError*, ub4) { return OCI_SUCCESS; }
sword OCISessionBegin(OCISvcCtx*, OCIError*, OCISession*, ub4, ub4) { return OCI_SUCCESS; }
sword OCISessionEnd(OCISvcCtx*, OCIError*, OCISession*, ub4) { return OCI_SUCCESS; }
sword OCIServerVersion(void*, OCIError*, OraText* bufp, ub4 bufsz, ub1) {
  std::strncpy(reinterpret_cast<char*>(bufp), "nothing", bufsz);
  return OCI_SUCCESS;
}
sword OCIBreak(void*, OCIError*) { return OCI_SUCCESS; }
sword OCIReset(void*, OCIError*) { return OCI_SUCCESS; }
sword OCITransCommit(OCISvcCtx*, OCIError*, ub4) { return OCI_SUCCESS; }
sword OCITransRollback(OCISvcCtx*, OCIError*, ub4) { return OCI_SUCCESS; }

sword OCIStmtPrepare(OCIStmt*, OCIError*, const OraText*, ub4, ub4, ub4) { return OCI_SUCCESS; }
sword OCIStmtExecute(OCISvcCtx*, OCIStmt* stmtp, OCIError*, ub4, ub4, const OCISnapshot*, OCISnapshot*, ub4) {
  auto* statement = reinterpret_cast<Handle*>(stmtp);
  if (statement->defined != nullptr) *statement->defined = ++statement->next;
  return OCI_SUCCESS;
}
sword OCIStmtFetch2(OCIStmt*, OCIError*, ub4, ub2, sb4, ub4) { return OCI_NO_DATA; }
sword OCIBindByPos(OCIStmt* stmtp, OCIBind** bindpp, OCIError*, ub4, void*, sb4, ub2, void*, ub2*, ub2*, ub4,
                   ub4*, ub4) {
  *bindpp = reinterpret_cast<OCIBind*>(stmtp);
  return OCI_SUCCESS;
}
sword OCIBindArrayOfStruct(OCIBind*, OCIError*, ub4, ub4, ub4, ub4) { return OCI_SUCCESS; }
sword OCIDefineByPos(OCIStmt* stmtp, OCIDefine** defnpp, OCIError*, ub4, void* valuep, sb4, ub2 dty, void*,
                     ub2*, ub2*, ub4) {
  *defnpp = reinterpret_cast<OCIDefine*>(stmtp);
  if (dty == SQLT_FLT) reinterpret_cast<Handle*>(stmtp)->defined = static_cast<double*>(valuep);
  return OCI_SUCCESS;
}

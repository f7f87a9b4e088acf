// SPDX-License-Identifier: Apache-2.0
// The calls of oci.h, scripted: each writes itself down, checks its handles and asks whether it is to fail.
#include <algorithm>
#include <cstring>

#include "ScriptedState.h"

using scripted::Handle;
using scripted::Name;
using scripted::Ptr;
using scripted::Quoted;
using scripted::Recorder;

namespace {

std::string N(long number) { return std::to_string(number); }

template <class T>
void Store(void* target, T value) {
  std::memcpy(target, &value, sizeof value);
}

sword ConnectionCall(Recorder& recorder, const void* handle, ub4 type, const void* error) {
  sword status = OCI_SUCCESS;
  if (recorder.Get(handle, type) == nullptr) return OCI_INVALID_HANDLE;
  recorder.Fails(error, status);
  return status;
}

sword Bind(Recorder& recorder, OCIStmt* stmtp, void** out, std::map<ub4, Handle*> Handle::*slots, ub4 type,
           ub4 position, const scripted::BindState& state) {
  Handle* statement = recorder.Get(stmtp, OCI_HTYPE_STMT);
  if (statement == nullptr) return OCI_INVALID_HANDLE;
  Handle*& handle = (statement->*slots)[position];
  if (handle == nullptr) handle = recorder.Create(type, statement);
  handle->bind = state;
  *out = handle;
  return OCI_SUCCESS;
}

bool StatementAttribute(const Handle& statement, ub4 attribute, void* out) {
  switch (attribute) {
    case OCI_ATTR_ROW_COUNT:
      Store<ub4>(out, statement.row_count);
      return true;
    case OCI_ATTR_ROWS_FETCHED:
      Store<ub4>(out, statement.rows_fetched);
      return true;
    case OCI_ATTR_PARAM_COUNT:
      Store<ub4>(out, static_cast<ub4>(statement.columns.size()));
      return true;
    case OCI_ATTR_STMT_TYPE:
      Store<ub2>(out, statement.sql.rfind("SELECT", 0) == 0 ? OCI_STMT_SELECT : 0);
      return true;
    default:
      return false;
  }
}

bool ColumnAttribute(const scripted::ColumnSpec& column, ub4 attribute, void* out, ub4* size) {
  switch (attribute) {
    case OCI_ATTR_NAME:
      Store<const char*>(out, column.name.c_str());
      *size = static_cast<ub4>(column.name.size());
      return true;
    case OCI_ATTR_DATA_TYPE:
      Store<ub2>(out, column.type);
      return true;
    case OCI_ATTR_DATA_SIZE:
      Store<ub2>(out, column.size);
      return true;
    case OCI_ATTR_PRECISION:
      Store<sb2>(out, column.precision);
      return true;
    case OCI_ATTR_SCALE:
      Store<sb1>(out, column.scale);
      return true;
    case OCI_ATTR_IS_NULL:
      Store<ub1>(out, column.nullable);
      return true;
    default:
      return false;
  }
}

}  // namespace

extern "C" {

sword OCIEnvCreate(OCIEnv** envhpp, ub4 mode, void*, void* (*)(void*, size_t),
                   void* (*)(void*, void*, size_t), void (*)(void*, void*), size_t, void**) {
  Recorder recorder("OCIEnvCreate", {N(mode)});
  sword status = OCI_SUCCESS;
  if (recorder.Fails(nullptr, status)) return status;
  *envhpp = reinterpret_cast<OCIEnv*>(recorder.Create(OCI_HTYPE_ENV, nullptr));
  return status;
}

sword OCIEnvNlsCreate(OCIEnv** envhpp, ub4 mode, void*, void* (*)(void*, size_t),
                      void* (*)(void*, void*, size_t), void (*)(void*, void*), size_t, void**, ub2 charset,
                      ub2 ncharset) {
  Recorder recorder("OCIEnvNlsCreate", {N(mode), N(charset), N(ncharset)});
  sword status = OCI_SUCCESS;
  if (recorder.Fails(nullptr, status)) return status;
  *envhpp = reinterpret_cast<OCIEnv*>(recorder.Create(OCI_HTYPE_ENV, nullptr));
  return status;
}

sword OCIHandleAlloc(const void* parenth, void** hndlpp, ub4 type, size_t xtramem_sz, void** usrmempp) {
  Recorder recorder("OCIHandleAlloc",
                    {Name(parenth), N(type), N(static_cast<long>(xtramem_sz)), Ptr(usrmempp)});
  sword status = OCI_SUCCESS;
  Handle* parent = recorder.Get(parenth, OCI_HTYPE_ENV);
  if (parent == nullptr) return OCI_INVALID_HANDLE;
  if (recorder.Fails(nullptr, status)) return status;
  *hndlpp = recorder.Create(type, parent);
  return status;
}

sword OCIHandleFree(void* hndlp, ub4 type) {
  Recorder recorder("OCIHandleFree", {Name(hndlp), N(type)});
  Handle* handle = recorder.Get(hndlp, type);
  if (handle == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(nullptr, status)) return status;
  recorder.Free(handle);
  return status;
}

sword OCIDescriptorFree(void* descp, ub4 type) {
  Recorder recorder("OCIDescriptorFree", {Name(descp), N(type)});
  Handle* handle = recorder.Get(descp, type);
  if (handle == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(nullptr, status)) return status;
  recorder.Free(handle);
  return status;
}

sword OCIAttrGet(const void* trgthndlp, ub4 trghndltyp, void* attributep, ub4* sizep, ub4 attrtype,
                 OCIError* errhp) {
  Recorder recorder("OCIAttrGet", {Name(trgthndlp), N(trghndltyp), Ptr(sizep), N(attrtype), Name(errhp)});
  Handle* handle = recorder.Get(trgthndlp, trghndltyp);
  if (handle == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  const bool known = handle->type == OCI_HTYPE_STMT ? StatementAttribute(*handle, attrtype, attributep)
                     : handle->type == OCI_DTYPE_PARAM
                         ? ColumnAttribute(handle->column, attrtype, attributep, sizep)
                         : false;
  return known ? status : recorder.Error(errhp, 24315, "illegal attribute type");
}

sword OCIAttrSet(void* trgthndlp, ub4 trghndltyp, void* attributep, ub4 size, ub4 attrtype, OCIError* errhp) {
  const bool text = trghndltyp == OCI_HTYPE_SESSION;
  const std::string value = attrtype == OCI_ATTR_PASSWORD && text ? "***"
                            : text ? Quoted(static_cast<const OraText*>(attributep), size)
                                   : Name(attributep);
  Recorder recorder("OCIAttrSet", {Name(trgthndlp), N(trghndltyp), value, N(attrtype), Name(errhp)});
  if (recorder.Get(trgthndlp, trghndltyp) == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  recorder.Fails(errhp, status);
  return status;
}

sword OCIParamGet(const void* hndlp, ub4 htype, OCIError* errhp, void** parmdpp, ub4 pos) {
  Recorder recorder("OCIParamGet", {Name(hndlp), N(htype), Name(errhp), N(pos)});
  Handle* statement = recorder.Get(hndlp, htype);
  if (statement == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  if (pos < 1 || pos > statement->columns.size())
    return recorder.Error(errhp, 24334, "no descriptor for this position");
  Handle* parameter = recorder.Create(OCI_DTYPE_PARAM, statement);
  parameter->column = statement->columns[pos - 1];
  *parmdpp = parameter;
  return status;
}

sword OCIErrorGet(void* hndlp, ub4 recordno, OraText* sqlstate, sb4* errcodep, OraText* bufp, ub4 bufsiz,
                  ub4 type) {
  Recorder recorder("OCIErrorGet", {Name(hndlp), N(recordno), Ptr(sqlstate), N(bufsiz), N(type)});
  const Handle* handle = recorder.Get(hndlp, type);
  if (handle == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(nullptr, status)) return status;
  if (recordno != 1 || handle->code == 0) return OCI_NO_DATA;
  *errcodep = handle->code;
  const size_t length = std::min<size_t>(handle->text.size(), bufsiz - 1);
  std::memcpy(bufp, handle->text.data(), length);
  bufp[length] = 0;
  return OCI_SUCCESS;
}

sword OCIServerAttach(OCIServer* srvhp, OCIError* errhp, const OraText* dblink, sb4 dblink_len, ub4 mode) {
  Recorder recorder("OCIServerAttach",
                    {Name(srvhp), Name(errhp), Quoted(dblink, static_cast<size_t>(dblink_len)), N(mode)});
  return ConnectionCall(recorder, srvhp, OCI_HTYPE_SERVER, errhp);
}

sword OCIServerDetach(OCIServer* srvhp, OCIError* errhp, ub4 mode) {
  Recorder recorder("OCIServerDetach", {Name(srvhp), Name(errhp), N(mode)});
  return ConnectionCall(recorder, srvhp, OCI_HTYPE_SERVER, errhp);
}

sword OCISessionBegin(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 credt, ub4 mode) {
  Recorder recorder("OCISessionBegin", {Name(svchp), Name(errhp), Name(usrhp), N(credt), N(mode)});
  return ConnectionCall(recorder, svchp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCISessionEnd(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 mode) {
  Recorder recorder("OCISessionEnd", {Name(svchp), Name(errhp), Name(usrhp), N(mode)});
  return ConnectionCall(recorder, svchp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCIServerVersion(void* hndlp, OCIError* errhp, OraText* bufp, ub4 bufsz, ub1 hndltype) {
  Recorder recorder("OCIServerVersion", {Name(hndlp), Name(errhp), N(bufsz), N(hndltype)});
  if (recorder.Get(hndlp, hndltype) == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  constexpr char kText[] = "Scripted Database Release 1.0";
  if (bufsz >= sizeof kText) std::memcpy(bufp, kText, sizeof kText);
  return status;
}

void OCIClientVersion(sword* major, sword* minor, sword* update, sword* patch, sword* port_update) {
  Recorder recorder("OCIClientVersion", {});
  *major = 1;
  *minor = *update = *patch = *port_update = 0;
}

sword OCIPing(OCISvcCtx* svchp, OCIError* errhp, ub4 mode) {
  Recorder recorder("OCIPing", {Name(svchp), Name(errhp), N(mode)});
  return ConnectionCall(recorder, svchp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCIBreak(void* hndlp, OCIError* errhp) {
  Recorder recorder("OCIBreak", {Name(hndlp), Name(errhp)});
  return ConnectionCall(recorder, hndlp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCIReset(void* hndlp, OCIError* errhp) {
  Recorder recorder("OCIReset", {Name(hndlp), Name(errhp)});
  return ConnectionCall(recorder, hndlp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCITransCommit(OCISvcCtx* svchp, OCIError* errhp, ub4 flags) {
  Recorder recorder("OCITransCommit", {Name(svchp), Name(errhp), N(flags)});
  return ConnectionCall(recorder, svchp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCITransRollback(OCISvcCtx* svchp, OCIError* errhp, ub4 flags) {
  Recorder recorder("OCITransRollback", {Name(svchp), Name(errhp), N(flags)});
  return ConnectionCall(recorder, svchp, OCI_HTYPE_SVCCTX, errhp);
}

sword OCIStmtPrepare(OCIStmt* stmtp, OCIError* errhp, const OraText* stmt, ub4 stmt_len, ub4 language,
                     ub4 mode) {
  Recorder recorder("OCIStmtPrepare",
                    {Name(stmtp), Name(errhp), Quoted(stmt, stmt_len), N(stmt_len), N(language), N(mode)});
  Handle* statement = recorder.Get(stmtp, OCI_HTYPE_STMT);
  if (statement == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  statement->text_given = reinterpret_cast<const char*>(stmt);
  statement->sql.assign(statement->text_given, stmt_len);
  statement->columns.clear();
  statement->binds.clear();
  statement->defines.clear();
  return status;
}

sword OCIStmtExecute(OCISvcCtx* svchp, OCIStmt* stmtp, OCIError* errhp, ub4 iters, ub4 rowoff,
                     const OCISnapshot* snap_in, OCISnapshot* snap_out, ub4 mode) {
  Recorder recorder("OCIStmtExecute", {Name(svchp), Name(stmtp), Name(errhp), N(iters), N(rowoff),
                                       Ptr(snap_in), Ptr(snap_out), N(mode)});
  Handle* service = recorder.Get(svchp, OCI_HTYPE_SVCCTX);
  Handle* statement = recorder.Get(stmtp, OCI_HTYPE_STMT);
  if (service == nullptr || statement == nullptr) return OCI_INVALID_HANDLE;
  recorder.RequireText(*statement);
  return recorder.Run(statement, iters, mode, errhp);
}

sword OCIStmtFetch2(OCIStmt* stmtp, OCIError* errhp, ub4 nrows, ub2 orientation, sb4 fetchOffset, ub4 mode) {
  Recorder recorder("OCIStmtFetch2",
                    {Name(stmtp), Name(errhp), N(nrows), N(orientation), N(fetchOffset), N(mode)});
  Handle* statement = recorder.Get(stmtp, OCI_HTYPE_STMT);
  if (statement == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  statement->rows_fetched = 0;
  if (recorder.Fails(errhp, status)) return status;
  const sword result = recorder.Fetch(statement, nrows, errhp);
  return result == OCI_SUCCESS ? status : result;
}

sword OCIBindByPos(OCIStmt* stmtp, OCIBind** bindpp, OCIError* errhp, ub4 position, void* valuep,
                   sb4 value_sz, ub2 dty, void* indp, ub2* alenp, ub2* rcodep, ub4 maxarr_len, ub4* curelep,
                   ub4 mode) {
  Recorder recorder("OCIBindByPos",
                    {Name(stmtp), Name(errhp), N(position), Ptr(valuep), N(value_sz), N(dty), Ptr(indp),
                     Ptr(alenp), Ptr(rcodep), N(maxarr_len), Ptr(curelep), N(mode)});
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  void* handle = *bindpp;
  const sword result = Bind(recorder, stmtp, &handle, &Handle::binds, OCI_HTYPE_BIND, position,
                            {valuep, value_sz, dty, indp, static_cast<ub4>(value_sz), sizeof(sb2)});
  if (result == OCI_SUCCESS) *bindpp = static_cast<OCIBind*>(handle);
  return result == OCI_SUCCESS ? status : result;
}

sword OCIBindByName(OCIStmt* stmtp, OCIBind**, OCIError* errhp, const OraText* placeholder, sb4 placeh_len,
                    void*, sb4, ub2, void*, ub2*, ub2*, ub4, ub4*, ub4) {
  Recorder recorder("OCIBindByName",
                    {Name(stmtp), Name(errhp), Quoted(placeholder, static_cast<size_t>(placeh_len))});
  return recorder.Error(errhp, 1036, "illegal variable name/number");
}

sword OCIBindArrayOfStruct(OCIBind* bindp, OCIError* errhp, ub4 pvskip, ub4 indskip, ub4 alskip, ub4 rcskip) {
  Recorder recorder("OCIBindArrayOfStruct",
                    {Name(bindp), Name(errhp), N(pvskip), N(indskip), N(alskip), N(rcskip)});
  Handle* bind = recorder.Get(bindp, OCI_HTYPE_BIND);
  if (bind == nullptr) return OCI_INVALID_HANDLE;
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  bind->bind.value_skip = pvskip;
  bind->bind.indicator_skip = indskip;
  return status;
}

sword OCIDefineByPos(OCIStmt* stmtp, OCIDefine** defnpp, OCIError* errhp, ub4 position, void* valuep,
                     sb4 value_sz, ub2 dty, void* indp, ub2* rlenp, ub2* rcodep, ub4 mode) {
  Recorder recorder("OCIDefineByPos", {Name(stmtp), Name(errhp), N(position), Ptr(valuep), N(value_sz),
                                       N(dty), Ptr(indp), Ptr(rlenp), Ptr(rcodep), N(mode)});
  sword status = OCI_SUCCESS;
  if (recorder.Fails(errhp, status)) return status;
  void* handle = *defnpp;
  const sword result = Bind(recorder, stmtp, &handle, &Handle::defines, OCI_HTYPE_DEFINE, position,
                            {valuep, value_sz, dty, indp, 0, 0});
  if (result == OCI_SUCCESS) *defnpp = static_cast<OCIDefine*>(handle);
  return result == OCI_SUCCESS ? status : result;
}

}  // extern "C"

// SPDX-License-Identifier: Apache-2.0
// OCIAttrGet, OCIAttrSet and OCIParamGet. A get writes exactly the width of its attribute and touches the
// size pointer for text only: callers pass a number in its place for attributes of fixed size.
#include <cstring>

#include "oci/mariadb/Guard.h"
#include "oci/mariadb/Session.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {
namespace {

// Where an attribute goes.
struct Target {
  void* attribute;
  ub4* size;

  template <class T>
  void Write(T value) const {
    std::memcpy(attribute, &value, sizeof value);
  }
  // A pointer into library memory that lives as long as the handle, and its length in bytes.
  void WriteText(const std::string& text) const {
    Write(text.c_str());
    if (size) *size = static_cast<ub4>(text.size());
  }
  void WriteHandle(const std::shared_ptr<Handle>& handle) const { Write(handle ? handle->Token() : nullptr); }
};

void Get(const StatementHandle& statement, ub4 attribute, const Target& to) {
  switch (attribute) {
    case OCI_ATTR_ROW_COUNT:
      return to.Write(static_cast<ub4>(statement.row_count));
    case OCI_ATTR_UB8_ROW_COUNT:
      return to.Write(statement.row_count);
    case OCI_ATTR_PARAM_COUNT:
      return to.Write(static_cast<ub4>(statement.description ? statement.description->size() : 0));
    case OCI_ATTR_STMT_TYPE:
      return to.Write(statement.StatementType());
    case OCI_ATTR_NUM_DML_ERRORS:
      return to.Write(statement.dml_errors);
    case OCI_ATTR_PARSE_ERROR_OFFSET:
      return to.Write(statement.parse_error_offset);
    case OCI_ATTR_BIND_COUNT:
      return to.Write(statement.BindCount());
    case OCI_ATTR_ROWS_FETCHED:
      return to.Write(statement.rows_fetched);
    default:
      throw OraError(24315);
  }
}

void Get(const ParameterHandle& parameter, ub4 attribute, const Target& to) {
  const ColumnDescription& column = parameter.Column();
  switch (attribute) {
    case OCI_ATTR_NAME:
      return to.WriteText(column.name);
    case OCI_ATTR_DATA_TYPE:
      return to.Write(column.type.data_type);
    case OCI_ATTR_DATA_SIZE:
      return to.Write(column.type.data_size);
    case OCI_ATTR_PRECISION:
      return to.Write(column.type.precision);
    case OCI_ATTR_SCALE:
      return to.Write(column.type.scale);
    case OCI_ATTR_IS_NULL:
      return to.Write(column.nullable);
    case OCI_ATTR_FSPRECISION:
      return to.Write(column.type.fsprecision);
    case OCI_ATTR_LFPRECISION:
      return to.Write(column.type.lfprecision);
    case OCI_ATTR_CHARSET_FORM:
      return to.Write(column.type.charset_form);
    case OCI_ATTR_CHAR_USED:
      return to.Write(column.type.char_used);
    case OCI_ATTR_CHAR_SIZE:
      return to.Write(column.type.char_size);
    default:
      throw OraError(24315);
  }
}

void Get(ServerHandle& server, ub4 attribute, const Target& to) {
  if (attribute != OCI_ATTR_SERVER_STATUS) throw OraError(24315);
  to.Write(server.Status());
}

void Get(ServiceHandle& service, ub4 attribute, const Target& to) {
  switch (attribute) {
    case OCI_ATTR_SERVER:
      return to.WriteHandle(service.Server());
    case OCI_ATTR_SESSION:
      return to.WriteHandle(service.Session());
    default:
      throw OraError(24315);
  }
}

void Get(const SessionHandle& session, ub4 attribute, const Target& to) {
  if (attribute != OCI_ATTR_USERNAME) throw OraError(24315);
  to.WriteText(session.credentials.user);
}

void Get(const ErrorHandle& error, ub4 attribute, const Target& to) {
  if (attribute != OCI_ATTR_DML_ROW_OFFSET) throw OraError(24315);
  to.Write(error.row_offset);
}

void GetAttribute(const void* token, ub4 type, ub4 attribute, const Target& to) {
  switch (type) {
    case OCI_HTYPE_STMT:
      return Get(Need<StatementHandle>(token), attribute, to);
    case OCI_DTYPE_PARAM:
    case OCI_HTYPE_DESCRIBE:  // some clients name a parameter so
      return Get(Need<ParameterHandle>(token), attribute, to);
    case OCI_HTYPE_SERVER:
      return Get(Need<ServerHandle>(token), attribute, to);
    case OCI_HTYPE_SVCCTX:
      return Get(Need<ServiceHandle>(token), attribute, to);
    case OCI_HTYPE_SESSION:
      return Get(Need<SessionHandle>(token), attribute, to);
    case OCI_HTYPE_ERROR:
      return Get(Need<ErrorHandle>(token), attribute, to);
    default:
      throw InvalidHandle{};
  }
}

void Set(SessionHandle& session, ub4 attribute, const void* value, ub4 size) {
  const std::string_view text(static_cast<const char*>(value), value ? size : 0);
  if (attribute == OCI_ATTR_USERNAME)
    session.credentials.user = text;
  else if (attribute == OCI_ATTR_PASSWORD)
    session.credentials.password = text;
  else
    throw OraError(24315);
}

// Handles come as they are, not by address; null takes one away.
template <class T>
std::shared_ptr<T> Link(const void* token) {
  auto linked = Share<T>(token);
  if (token && !linked) throw InvalidHandle{};
  return linked;
}

void Set(ServiceHandle& service, ub4 attribute, const void* value) {
  if (attribute == OCI_ATTR_SERVER)
    service.SetServer(Link<ServerHandle>(value));
  else if (attribute == OCI_ATTR_SESSION)
    service.SetSession(Link<SessionHandle>(value));
  else
    throw OraError(24315);
}

void NeedType(const void* token, ub4 type) {
  const Handle* handle = FindHandle(token);
  if (!handle || handle->Type() != type) throw InvalidHandle{};
}

void SetAttribute(const void* token, ub4 type, ub4 attribute, const void* value, ub4 size) {
  switch (type) {
    case OCI_HTYPE_SESSION:
      return Set(Need<SessionHandle>(token), attribute, value, size);
    case OCI_HTYPE_SVCCTX:
      return Set(Need<ServiceHandle>(token), attribute, value);
    default:
      NeedType(token, type);
      throw OraError(24315);
  }
}

void* ColumnParameter(const StatementHandle& statement, ub4 position) {
  if (!statement.description || position == 0 || position > statement.description->size())
    throw OraError(24334);
  return Make<ParameterHandle>(statement.Token(), statement.description, position - 1).Token();
}

// The failed row goes into the error handle that the caller brought, or into a new one.
void* FailedRow(const ErrorHandle& error, const void* brought, ub4 position) {
  if (position >= error.rows.size()) throw OraError(24334);
  ErrorHandle* row = Find<ErrorHandle>(brought);
  if (!row) row = &Make<ErrorHandle>(error.Token());
  row->Set(error.rows[position].error);
  row->row_offset = error.rows[position].row;
  return row->Token();
}

}  // namespace
}  // namespace ocimaria

using namespace ocimaria;

extern "C" sword OCIAttrGet(const void* trgthndlp, ub4 trghndltyp, void* attributep, ub4* sizep, ub4 attrtype,
                            OCIError* errhp) {
  const auto call = OCI_CALL(trgthndlp, trghndltyp, attrtype, errhp);
  // An error handle keeps its record while its own row offset is read.
  const auto work = [&]() -> sword {
    if (!attributep) throw OraError(24323);
    GetAttribute(trgthndlp, trghndltyp, attrtype, {attributep, sizep});
    return OCI_SUCCESS;
  };
  return trgthndlp == errhp ? Contained(call, work)
                            : Guarded(call, errhp, [&](ErrorHandle&) { return work(); });
}

extern "C" sword OCIAttrSet(void* trgthndlp, ub4 trghndltyp, void* attributep, ub4 size, ub4 attrtype,
                            OCIError* errhp) {
  return Guarded(OCI_CALL(trgthndlp, trghndltyp, attrtype, errhp), errhp, [&](ErrorHandle&) -> sword {
    SetAttribute(trgthndlp, trghndltyp, attrtype, attributep, size);
    return OCI_SUCCESS;
  });
}

extern "C" sword OCIParamGet(const void* hndlp, ub4 htype, OCIError* errhp, void** parmdpp, ub4 pos) {
  return Guarded(OCI_CALL(hndlp, htype, errhp, pos), errhp, [&](ErrorHandle&) -> sword {
    if (!parmdpp) throw OraError(24323);
    if (htype == OCI_HTYPE_STMT)
      *parmdpp = ColumnParameter(Need<StatementHandle>(hndlp), pos);
    else if (htype == OCI_HTYPE_ERROR)
      *parmdpp = FailedRow(Need<ErrorHandle>(hndlp), *parmdpp, pos);
    else
      throw InvalidHandle{};
    return OCI_SUCCESS;
  });
}

// SPDX-License-Identifier: Apache-2.0
#include "oracle8/OciStatement.h"

namespace oracle8 {

OciStatement::OciStatement(const OciSession& session, const LKString& sql)
    : m_session(session), m_text(sql.ToChar()), m_statement(AllocateHandle<OCIStmt>(session.Environment())) {
  Check(OCIStmtPrepare(m_statement.get(), m_session.Error(), reinterpret_cast<const OraText*>(m_text.data()),
                       static_cast<ub4>(m_text.size()), OCI_NTV_SYNTAX, OCI_DEFAULT),
        L"prepare");
}

void OciStatement::Execute(ub4 iterations, ub4 mode) {
  Check(OCIStmtExecute(m_session.Service(), m_statement.get(), m_session.Error(), iterations, 0, nullptr,
                       nullptr, mode),
        L"execute");
}

ub4 OciStatement::ColumnCount() { return Attribute(OCI_ATTR_PARAM_COUNT); }

ColumnDescription OciStatement::DescribeColumn(ub4 position) {
  void* raw = nullptr;
  Check(OCIParamGet(m_statement.get(), OCI_HTYPE_STMT, m_session.Error(), &raw, position),
        L"describe a column");
  const Parameter parameter(static_cast<OCIParam*>(raw));
  const auto read = [&](ub2& value, ub4 attribute) {
    Check(OCIAttrGet(parameter.get(), OCI_DTYPE_PARAM, &value, nullptr, attribute, m_session.Error()),
          L"describe a column");
  };
  ColumnDescription column;
  read(column.type, OCI_ATTR_DATA_TYPE);
  read(column.size, OCI_ATTR_DATA_SIZE);
  return column;
}

void OciStatement::DefineText(ub4 position, char* values, size_t width, sb2* indicators) {
  OCIDefine* define = nullptr;  // owned by the statement
  Check(OCIDefineByPos(m_statement.get(), &define, m_session.Error(), position, values,
                       static_cast<sb4>(width), SQLT_STR, indicators, nullptr, nullptr, OCI_DEFAULT),
        L"define a column");
}

ub4 OciStatement::Fetch(ub4 rows) {
  const sword status =
      OCIStmtFetch2(m_statement.get(), m_session.Error(), rows, OCI_FETCH_NEXT, 0, OCI_DEFAULT);
  if (status != OCI_NO_DATA) CheckError(status, L"fetch");
  return Attribute(OCI_ATTR_ROWS_FETCHED);
}

ub4 OciStatement::Attribute(ub4 attribute) {
  ub4 value = 0;
  Check(OCIAttrGet(m_statement.get(), OCI_HTYPE_STMT, &value, nullptr, attribute, m_session.Error()),
        L"read a statement attribute");
  return value;
}

}  // namespace oracle8

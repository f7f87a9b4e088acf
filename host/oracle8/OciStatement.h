// SPDX-License-Identifier: Apache-2.0
// OciStatement is one prepared statement: its handle and its text. Every operation throws OciFailure. It must
// not outlive its session; same thread.
#pragma once

#include <string>

#include "oracle8/OciSession.h"

namespace oracle8 {

class OciStatement {
 public:
  OciStatement(const OciSession& session, const LKString& sql);

  void Execute(ub4 iterations, ub4 mode);
  ub4 ColumnCount();
  ub2 ColumnType(ub4 position) { return ColumnAttribute(position, OCI_ATTR_DATA_TYPE); }  // from 1
  ub2 ColumnSize(ub4 position) { return ColumnAttribute(position, OCI_ATTR_DATA_SIZE); }
  // Texts of `width` bytes each, terminator included, one indicator a row.
  void DefineText(ub4 position, char* values, size_t width, sb2* indicators);
  ub4 Fetch(ub4 rows);  // the number of rows that arrived; below `rows` at the end

 private:
  ub2 ColumnAttribute(ub4 position, ub4 attribute);
  ub4 Attribute(ub4 attribute);

  const OciSession& m_session;
  std::string m_text;  // kept: whether a client library copies the text at the prepare is not documented
  Handle<OCIStmt> m_statement;
};

}  // namespace oracle8

// SPDX-License-Identifier: Apache-2.0
// OciStatement is one prepared statement: its handle and its text. Every operation throws OciFailure. It must
// not outlive its session; same thread.
#pragma once

#include <string>

#include "oracle8/OciSession.h"

namespace oracle8 {

struct ColumnDescription {
  ub2 type = 0;  // SQLT_*
  ub2 size = 0;  // bytes
};

class OciStatement {
 public:
  OciStatement(const OciSession& session, const LKString& sql);

  void Execute(ub4 iterations, ub4 mode);
  ub4 ColumnCount();
  ColumnDescription DescribeColumn(ub4 position);  // from 1
  // Texts of `width` bytes each, terminator included, one indicator a row.
  void DefineText(ub4 position, char* values, size_t width, sb2* indicators);
  ub4 Fetch(ub4 rows);  // the number of rows that arrived; below `rows` at the end

 private:
  ub4 Attribute(ub4 attribute);

  const OciSession& m_session;
  std::string m_text;  // a client library may read it until the last execute and fetch
  Handle<OCIStmt> m_statement;
};

}  // namespace oracle8

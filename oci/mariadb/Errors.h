// SPDX-License-Identifier: Apache-2.0
// The error handle: the record that the last call on it left, and the rows that failed in an array execute
// with OCI_BATCH_ERRORS. Each guarded call clears it first.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "oci/mariadb/Handles.h"
#include "oci/mariadb/OraError.h"

namespace ocimaria {

struct ErrorRecord {
  int code = 0;
  std::string text;  // as a caller reads it: "ORA-00942: table or view does not exist\n"
};

ErrorRecord RecordOf(const OraError& error);

struct RowError {
  ub4 row;  // element of the array, from 0
  OraError error;
};

class ErrorHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_ERROR;
  ErrorHandle() : Handle(kType) {}

  // Forgets the record. The failed rows stay until the next execute: they are read by calls on this handle.
  void Clear() { m_record.reset(); }
  void Set(const OraError& error) { m_record = RecordOf(error); }
  void Report(const OraError& error);  // the same, of a call that fails: the trace shows it
  const std::optional<ErrorRecord>& Record() const { return m_record; }

  std::vector<RowError> rows;  // of the last array execute, in the order they were met
  ub4 row_offset = 0;          // of the row that this handle describes (OCI_ATTR_DML_ROW_OFFSET)

 private:
  std::optional<ErrorRecord> m_record;
};

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
// What the loading tests share: columns as a database would describe them, for the scripted OCI and as
// objects.
#pragma once

#include <string>
#include <vector>

#include "Benchmarks/CREP_ORA8/Column.h"
#include "ScriptedOci.h"

namespace scripted {

inline ColumnSpec IdColumn() { return {"ID", SQLT_NUM, 22, 0, -127, 0}; }
inline ColumnSpec NumberColumn(const std::string& name, sb2 precision, sb1 scale, ub1 nullable = 0) {
  return {name, SQLT_NUM, 22, precision, scale, nullable};
}
inline ColumnSpec TextColumn(const std::string& name, ub2 size, ub1 nullable = 0) {
  return {name, SQLT_CHR, size, 0, 0, nullable};
}
inline ColumnSpec DateColumn(const std::string& name, ub1 nullable = 0) {
  return {name, SQLT_DAT, 7, 0, 0, nullable};
}

// The table is then there to be described.
inline void DescribeTable(const std::string& table, const std::vector<ColumnSpec>& columns) {
  Oci().Describe("SELECT * FROM " + table, columns);
}

// A column without a statement behind it.
inline CColumn ColumnOf(const ColumnSpec& spec, int nNumber = 1) {
  CColumn column(nullptr, nullptr, nNumber);
  column.m_strName = LKString(spec.name.c_str(), static_cast<int>(spec.name.size()));
  column.m_nDataType = spec.type;
  column.m_nSize = spec.size;
  column.m_nPrecision = static_cast<ub2>(spec.precision);
  column.m_nScale = spec.scale;
  column.m_nNullable = spec.nullable;
  return column;
}

}  // namespace scripted

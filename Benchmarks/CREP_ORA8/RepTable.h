// SPDX-License-Identifier: Apache-2.0
// CRepTable is one generated table (or its backup copy) whose columns are learnt from the database by a
// describe. It owns its columns and its describe statement until it is destroyed; the driver is not owned.
// Loaders that it creates use its columns: delete them first. One thread.
#pragma once

#include "Column.h"
#include "oracle8/Oracle8Driver.h"

class CTableLoader;

class CRepTable {
 public:
  CRepTable(COracle8Driver* pDriver, LKString strName);
  ~CRepTable();
  CRepTable(const CRepTable&) = delete;
  CRepTable& operator=(const CRepTable&) = delete;

  int Initialize();  // 1; 0 without a driver or after a failure, which has been reported
  CTableLoader* CreateLoader(unsigned int nRowsPerCommit);  // initialised; caller owns

  ub4 GetColumnCount() const { return m_Columns.GetCount(); }
  CColumns& GetColumns() { return m_Columns; }
  void SetDriver(COracle8Driver* pDriver) { m_pDriver = pDriver; }

  LKString m_strName;
  CColumns m_Columns;
  OCIStmt* m_pStmt = nullptr;
  COracle8Driver* m_pDriver;

 private:
  int Describe();
};

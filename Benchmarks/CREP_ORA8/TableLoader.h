// SPDX-License-Identifier: Apache-2.0
// CTableLoader fills one table by array inserts: MakeRecord fills the next row of the column arrays, SendRows
// inserts all rows filled since the last successful send. It owns its insert statement and its binds; the
// columns belong to the CRepTable that created it and outlive it. One thread.
//
// Order of calls: Initialize, SetStartingRows, BindColumns, then up to a commit's rows of MakeRecord and one
// SendRows, again and again.
#pragma once

#include <oci.h>

#include <string>

#include "Bind.h"
#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/Random.h"
#include "core/TRKArray.h"
#include "oracle8/Oracle8Driver.h"

class CTableLoader {
 public:
  CTableLoader(COracle8Driver* pDriver, LKString strName);
  ~CTableLoader();
  CTableLoader(const CTableLoader&) = delete;
  CTableLoader& operator=(const CTableLoader&) = delete;

  // Creates a bind per column, each with arrays of nRowsPerCommit rows; 1 when every column got one.
  int Initialize(CColumns* pColumns, unsigned int nRowsPerCommit);
  void SetStartingRows(long nStartingRows);
  void SetTotalRows(__int64 nTotalRows) { m_nTotalRows = nTotalRows; }
  int BindColumns();          // builds, prepares and binds the insert; 1 or 0
  int MakeRecord(long nRow);  // nRow is the row's ID; 1
  int SendRows(int nRows);    // REQUIRES: nRows rows are filled; 1, or 0 after a failure
  bool NeedSendRows(int nRows) const { return nRows % m_nRowsPerCommit == 0; }

  void SetAutoCommit(bool bAutoCommit) { m_nCommitMode = bAutoCommit ? OCI_COMMIT_ON_SUCCESS : OCI_DEFAULT; }
  bool IsAutoCommit() const { return (m_nCommitMode & OCI_COMMIT_ON_SUCCESS) != 0; }
  CTRKArray<IBind*, IBind*>& GetBindArray() { return m_BindArray; }

  LKString BuildSQL();
  // A new statement handle (caller owns), or null after a report. kept: the name is so spelt.
  OCIStmt* CreateStatment();
  void Cleanup();  // deletes the binds

  LKString m_strName;
  __int64 m_nTotalRows = 0;  // rows that the whole load adds; informational
  __int64 m_nStartingRows = 0;
  int m_nRowsPerCommit = 50;
  int m_nRowIndex = 0;      // array row that the last MakeRecord filled
  int m_nNumberOfRows = 0;  // rows filled since the last successful send
  ub4 m_nCommitMode = OCI_COMMIT_ON_SUCCESS;
  CColumns* m_pColumns = nullptr;
  OCIStmt* m_pInsertStmt = nullptr;
  CRandGen m_RandGen;
  CTRKArray<IBind*, IBind*> m_BindArray;
  COracle8Driver* m_pDriver;

 private:
  std::string m_szInsertSQL;  // read until the last batch is sent
};

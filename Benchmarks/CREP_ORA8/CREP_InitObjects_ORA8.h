// SPDX-License-Identifier: Apache-2.0
// The load: fills the generated tables up to the scale, directly or by way of backup copies. Every virtual
// user runs its own copy on its own driver; who loads which rows follows from the user's number alone, so the
// copies share nothing. Of the users that load one table only the one of its last set builds, restores and
// drops backups.
#pragma once

#include "core/LKConfig.h"
#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/TRKArray.h"
#include "core/TRKMap.h"
#include "db/Xact.h"

class COracle8Driver;
class CTableLoader;

// What loads have in common, and the backup protocol for a single table (m_szTableName). Reports the class
// information of CXact: it is only ever a base.
class CXact_LoadTableBase_ORA8 : public CXact {
 public:
  CXact_LoadTableBase_ORA8() = default;
  ~CXact_LoadTableBase_ORA8() override = default;

  int Execute() override;
  int PreBenchmark() override;
  int PostBenchmark() override;
  int PreIteration() override;

  // "RowsPerCommit" of section "Settings". kept: a value above the maximum becomes the maximum, one below 1
  // the default.
  int GetRowsPerCommit(int nDefaultRowsPerCommit, int nMaxRowsPerCommit) {
    const long nRows = LKGetConfig()->GetProfileInt(L"Settings", L"RowsPerCommit", nDefaultRowsPerCommit);
    if (nRows > nMaxRowsPerCommit) return nMaxRowsPerCommit;
    return nRows < 1 ? nDefaultRowsPerCommit : static_cast<int>(nRows);
  }
  int ReloadFromBackup();  // 1 also when the restore fails; 0 when no reload is due

  LKString m_szSQL;  // kept: neither this nor the two counters below is used
  LKString m_szTableName;
  __int64 m_nRows = 0;
  __int64 m_nBytes = 0;
  BOOL m_bCreateBackup = FALSE;      // the backup of at least one table must be built in this run
  BOOL m_bReloadLastBackup = FALSE;  // the previous load is to be undone from its backup

 protected:
  bool IsLastSet() const { return m_nSetNumber == m_nNumberOfSets; }
  // Each works on m_szTableName and reports what it does.
  int CreateInitialBackup(COracle8Driver* pDriver);
  void CreateTableFromBackup(COracle8Driver* pDriver);

 private:
  int ChangeFromBackupName(COracle8Driver* pDriver);
};

class CXact_LoadTable_ORA8 : public CXact_LoadTableBase_ORA8 {
  wxDECLARE_DYNAMIC_CLASS(CXact_LoadTable_ORA8);

 public:
  CXact_LoadTable_ORA8();
  ~CXact_LoadTable_ORA8() override = default;

  int Execute() override;
  int PreBenchmark() override;
  int PostBenchmark() override;
  int PreIteration() override;

  int InitializeTables();  // deals this user its tables and its set; the number of tables
  void DropAllBackupTables();

  CTRKArray<LKString, LKString> m_TableArray;  // in loading order
  CTRKMap<LKString, int> m_BackupTableMap;     // tables whose backup was not found; value 1

 private:
  // This user's rows of one table: nFirst + 1 to nFirst + nCount.
  struct RowRange {
    __int64 nStartRows;  // rows that are there already
    __int64 nAddedRows;  // rows that all sets of the table add together
    __int64 nFirst;
    __int64 nCount;
  };
  int DealSet(int nNumberOfTables);  // sets the set number and count; the first table to load, from 1
  RowRange GetRowRange(const LKString& szTable);
  // The steps of a load, from the outermost in; each is 1, or 0 after a failure or a cancel.
  int LoadTable(COracle8Driver* pDriver, const LKString& szTable);
  int LoadRange(COracle8Driver* pDriver, const RowRange& range, int nRowsPerCommit);
  int InsertRows(COracle8Driver* pDriver, CTableLoader& loader, const RowRange& range);
  int SendBatch(CTableLoader& loader, int nRows);
  void ReportProgress(COracle8Driver* pDriver, const wchar_t* szWholeFormat, const wchar_t* szSetFormat);
};

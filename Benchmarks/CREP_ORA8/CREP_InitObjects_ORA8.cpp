// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "CREP_InitObjects_ORA8.h"

#include <memory>

#include "OciCall.h"
#include "RepTable.h"
#include "SchemaRules.h"
#include "TableLoader.h"
#include "core/LKStringFormat.h"

namespace {

constexpr int kLoadTableID = 110;
constexpr int kDefaultRowsPerCommit = 500;
constexpr int kMaxRowsPerCommit = 1000;

}  // namespace

int CXact_LoadTableBase_ORA8::PreBenchmark() {
  if (m_szTableName.IsEmpty()) return CXact::PreBenchmark();
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  m_bCreateBackup = m_BenchmarkProperties.IsCreateUseBackup() && !pDriver->BackupExists(m_szTableName);
  m_bReloadLastBackup =
      m_BenchmarkProperties.GetLastIsBackupOption() && m_BenchmarkProperties.GetLastLoadFailed();
  return CXact::PreBenchmark();
}

int CXact_LoadTableBase_ORA8::PreIteration() {
  if (m_szTableName.IsEmpty() || !IsLastSet()) return CXact::PreIteration();
  const bool bUseBackup = m_BenchmarkProperties.IsCreateUseBackup();
  if (bUseBackup ? !m_bCreateBackup : !m_bReloadLastBackup) return CXact::PreIteration();
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!(bUseBackup ? CreateInitialBackup(pDriver) : ChangeFromBackupName(pDriver))) return 0;
  return CXact::PreIteration();
}

int CXact_LoadTableBase_ORA8::CreateInitialBackup(COracle8Driver* pDriver) {
  // kept: two blanks behind the full stop
  pDriver->HandleInfoMsg(LKString(L"Backup for table ") + m_szTableName +
                         LKString(L" could not be found.  Recreating backup using normal inserts."));
  if (pDriver->CreateBackupTable(m_szTableName, LKString())) return 1;
  pDriver->HandleErrorMsg(LKString(L"Failed to create initial backup for table ") + m_szTableName);
  return 0;
}

int CXact_LoadTableBase_ORA8::ChangeFromBackupName(COracle8Driver* pDriver) {
  pDriver->PrepareRenameFromBackup(m_szTableName);  // kept: not looked at, a failure shows in the rename
  if (pDriver->ChangeTableName(m_szTableName, 0)) return 1;
  pDriver->HandleErrorMsg(LKString(L"Failed to change from backup name for table ") + m_szTableName);
  return 0;
}

int CXact_LoadTableBase_ORA8::Execute() {
  if (AsOracleDriver(m_pDriver) == nullptr) return 0;
  ReloadFromBackup();  // kept: not looked at, to have nothing to make is no failure
  return 1;
}

int CXact_LoadTableBase_ORA8::ReloadFromBackup() {
  if (!m_BenchmarkProperties.IsCreateUseBackup() || m_bCreateBackup || m_bReloadLastBackup) return 0;
  if (!IsLastSet()) return 1;
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  pDriver->HandleInfoMsg(LKString(L"Recreating table ") + m_szTableName + LKString(L" from backup"));
  if (!pDriver->RestoreFromBackup(m_szTableName))
    pDriver->HandleErrorMsg(LKString(L"Failed to restore backup of table ") + m_szTableName);
  // kept: a success all the same; the host goes on with the next table
  return 1;
}

int CXact_LoadTableBase_ORA8::PostBenchmark() {
  const bool bReloaded = m_bReloadLastBackup && m_BenchmarkProperties.IsCreateUseBackup();
  if ((m_bCreateBackup || bReloaded) && IsLastSet() && !CancelXact()) {
    COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
    if (pDriver == nullptr) return 0;
    CreateTableFromBackup(pDriver);
  }
  return CXact::PostBenchmark();
}

void CXact_LoadTableBase_ORA8::CreateTableFromBackup(COracle8Driver* pDriver) {
  pDriver->HandleInfoMsg(LKString(L"Creating table ") + m_szTableName + LKString(L" from backup."));
  if (pDriver->RestoreFromBackup(m_szTableName))
    pDriver->HandleInfoMsg(m_szTableName + LKString(L" created successfully from backup."));
  else  // kept: a warning, where a backup that cannot be made is an error and ends the load
    pDriver->HandleWarningMsg(LKString(L"Failed to create table ") + m_szTableName +
                              LKString(L" from backup."));
}

// The base between the two has no class information of its own.
wxIMPLEMENT_DYNAMIC_CLASS(CXact_LoadTable_ORA8, CXact);

CXact_LoadTable_ORA8::CXact_LoadTable_ORA8() {
  // kept: "tables" in lower case, unlike its siblings; hosts find the transaction by its name.
  SetName(L"Load Replication tables");
  SetDescription(L"Loading Replication Benchmark tables");
  SetXactID(kLoadTableID);
  SetTransactionType(LOAD_TABLE);
}

int CXact_LoadTable_ORA8::InitializeTables() {
  m_TableArray.RemoveAll();
  const int nTableNumber = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  const int nStartTableID = m_BenchmarkProperties.GetIntAttribute3();
  const int nNumberOfTables = nTableNumber - nStartTableID;
  const bool bStartInside = nStartTableID >= 0 && nStartTableID <= nTableNumber;
  REP_ASSERT(bStartInside,
             "nStartTableID >= 0 && nStartTableID <= "
             "m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber()");
  if (nNumberOfTables == 0) return 0;

  // kept: corrected for the names only, the number of tables above is not
  const int nTablesBefore = bStartInside ? nStartTableID : 0;
  int nTableID = DealSet(nNumberOfTables);
  do {
    REP_ASSERT(nTableID >= 1 && nTableID <= nNumberOfTables, "nTableID >= 1 && nTableID <= nNumberOfTables");
    LKString szTable;
    szTable.Format(L"LK_REP_TABLE%d", nTablesBefore + nTableID);
    m_TableArray.Add(szTable);
    nTableID += m_nTotalUsers;
  } while (nTableID <= nNumberOfTables);
  return static_cast<int>(m_TableArray.GetCount());
}

int CXact_LoadTable_ORA8::DealSet(int nNumberOfTables) {
  int nNumberOfSets = m_nTotalUsers / nNumberOfTables;
  int nMaxUserID = nNumberOfTables;
  int nSetNumber = 1;
  int nTableID = m_nUserID;
  if (nNumberOfSets < 1) {
    nNumberOfSets = 1;
  } else {
    nMaxUserID = nNumberOfTables * nNumberOfSets;
    const int nRest = m_nUserID % nNumberOfSets;
    nTableID = m_nUserID / nNumberOfSets + (nRest != 0 ? 1 : 0);
    // kept: with 3 sets the users 1, 2 and 3 load the sets 2, 3 and 1
    nSetNumber = nRest + 1;
  }
  const int nLeftTables = m_nTotalUsers % nNumberOfTables;
  if (nTableID <= nLeftTables && m_nTotalUsers > nNumberOfTables) ++nNumberOfSets;

  const int nNewTableID = m_nUserID - nMaxUserID;
  if (nNewTableID < 1) {
    m_nSetNumber = nSetNumber;
    m_nNumberOfSets = nNumberOfSets;
    return nTableID;
  }
  // One user more than the sets of all tables: it takes an additional, last set.
  m_nSetNumber = m_nNumberOfSets = nNumberOfSets + 1;
  return nNewTableID;
}

int CXact_LoadTable_ORA8::PreBenchmark() {
  m_bCreateBackup = FALSE;
  const int nNumberOfTable = InitializeTables();
  REP_ASSERT(nNumberOfTable >= 1, "nNumberOfTable >= 1");
  if (nNumberOfTable < 1) return 0;
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  REP_ASSERT(pDriver != nullptr, "pDriver != __null");
  if (pDriver == nullptr) return 0;
  for (const LKString& szTable : m_TableArray) {
    m_szTableName = szTable;
    if (m_szTableName.IsEmpty()) return CXact_LoadTableBase_ORA8::PreBenchmark();
    if (!m_BenchmarkProperties.IsCreateUseBackup() || pDriver->BackupExists(szTable)) continue;
    m_bCreateBackup = TRUE;
    m_BackupTableMap.SetAt(szTable, 1);  // kept: never emptied, a copy remembers what was missing once
  }
  return 1;  // kept: the host's own PreBenchmark is reached by way of the base's only
}

int CXact_LoadTable_ORA8::PreIteration() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!m_BenchmarkProperties.IsCreateUseBackup() || !m_bCreateBackup || !IsLastSet()) return 1;
  auto position = m_BackupTableMap.GetStartPosition();
  while (position != m_BackupTableMap.GetEndPosition()) {
    int nMissing = 0;
    m_BackupTableMap.GetNextAssoc(position, m_szTableName, nMissing);
    if (!CreateInitialBackup(pDriver)) return 0;
  }
  return 1;
}

int CXact_LoadTable_ORA8::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  m_Timer.SetStartTime();
  for (const LKString& szTable : m_TableArray)
    if (!LoadTable(pDriver, szTable)) return 0;
  m_Timer.Reset();  // kept: not ended, so a load adds no time and no rows to the results
  return 1;
}

CXact_LoadTable_ORA8::RowRange CXact_LoadTable_ORA8::GetRowRange(const LKString& szTable) {
  int nMissing = 0;
  const bool bNewBackup = m_BenchmarkProperties.IsCreateUseBackup() && m_bCreateBackup &&
                          m_BackupTableMap.Lookup(szTable, nMissing);
  const __int64 nTotalRows = RowsOf(m_BenchmarkProperties.GetScale());
  const __int64 nStartRows = bNewBackup ? 0 : RowsOf(m_BenchmarkProperties.GetLoadedMaxScale());
  const __int64 nAddedRows = nTotalRows - nStartRows;
  const __int64 nRowsPerSet = nAddedRows / m_nNumberOfSets;
  const __int64 nFirst = (m_nSetNumber - 1) * nRowsPerSet + nStartRows;
  // The last set takes the remainder of the division too.
  return {nStartRows, nAddedRows, nFirst, IsLastSet() ? nTotalRows - nFirst : nRowsPerSet};
}

int CXact_LoadTable_ORA8::LoadTable(COracle8Driver* pDriver, const LKString& szTable) {
  m_szTableName = szTable;
  if (m_BenchmarkProperties.IsCreateUseBackup()) m_szTableName += L"_BAK";
  const RowRange range = GetRowRange(szTable);
  // kept: read for every table, so that a change of the setting reaches a load that runs
  const int nRowsPerCommit = GetRowsPerCommit(kDefaultRowsPerCommit, kMaxRowsPerCommit);
  if (range.nCount < 1) {
    m_nRowsProcessed += range.nStartRows / m_nNumberOfSets;  // kept: counted only where nothing is loaded
    m_nLastReadTime = m_Timer.Read();
    return 1;
  }
  ReportProgress(pDriver, L"Started loading table %s.", L"Started loading table %s (set %d of %d).");
  if (!LoadRange(pDriver, range, nRowsPerCommit)) return 0;
  // kept: no blank before the parenthesis of this one
  ReportProgress(pDriver, L"Completed loading table %s.", L"Completed loading table %s(set %d of %d).");
  return 1;
}

void CXact_LoadTable_ORA8::ReportProgress(COracle8Driver* pDriver, const wchar_t* szWholeFormat,
                                          const wchar_t* szSetFormat) {
  LKString szMessage;
  if (m_nNumberOfSets < 2)
    szMessage.Format(szWholeFormat, m_szTableName);
  else
    szMessage.Format(szSetFormat, m_szTableName, m_nSetNumber, m_nNumberOfSets);
  pDriver->HandleInfoMsg(szMessage);
}

int CXact_LoadTable_ORA8::LoadRange(COracle8Driver* pDriver, const RowRange& range, int nRowsPerCommit) {
  CRepTable table(pDriver, m_szTableName);
  if (!table.Initialize()) return 0;  // kept: the timer is not reset here, nor when binding fails
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(static_cast<unsigned int>(nRowsPerCommit)));
  pLoader->SetStartingRows(range.nFirst + 1);
  pLoader->SetTotalRows(range.nAddedRows);
  return pLoader->BindColumns() ? InsertRows(pDriver, *pLoader, range) : 0;
}

int CXact_LoadTable_ORA8::InsertRows(COracle8Driver* pDriver, CTableLoader& loader, const RowRange& range) {
  int nFilled = 0;
  for (__int64 k = 1; k <= range.nCount; ++k) {
    if (CancelXact()) {
      m_Timer.Reset();
      OCIBreak(pDriver->GetOCIServerContext(), pDriver->GetOCIError());
      return 0;  // kept: a cancelled create or refresh succeeds
    }
    loader.MakeRecord(range.nFirst + k);
    if (!loader.NeedSendRows(++nFilled)) continue;
    if (!SendBatch(loader, nFilled)) return 0;
    m_nRowsProcessed += nFilled;  // kept: not set back by an execution, a second one counts on
    m_nLastReadTime = m_Timer.Read();
    nFilled = 0;
  }
  // kept: the last, partial batch is not counted as processed
  return nFilled == 0 || SendBatch(loader, nFilled) ? 1 : 0;
}

int CXact_LoadTable_ORA8::SendBatch(CTableLoader& loader, int nRows) {
  if (loader.SendRows(nRows)) return 1;
  m_Timer.Reset();
  return 0;
}

int CXact_LoadTable_ORA8::PostBenchmark() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!m_BenchmarkProperties.IsCreateUseBackup() || !IsLastSet()) return 1;
  // kept: also after a load that failed; the tables then have the rows that were sent
  for (const LKString& szTable : m_TableArray) {
    if (CancelXact()) {
      DropAllBackupTables();  // kept: of all tables, also backups that an earlier load made
      return 1;
    }
    m_szTableName = szTable;
    CreateTableFromBackup(pDriver);
  }
  return 1;  // kept: the host's own PostBenchmark is not called
}

void CXact_LoadTable_ORA8::DropAllBackupTables() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return;
  for (const LKString& szTable : m_TableArray) {
    m_szTableName = szTable;
    pDriver->DropBackupTable(m_szTableName);  // kept: not looked at, the other backups go all the same
  }
}

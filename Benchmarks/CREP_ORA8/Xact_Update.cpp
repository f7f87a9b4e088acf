// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "Xact_Update.h"

#include <memory>

#include "CREP_ORA8.h"
#include "OciCall.h"
#include "RepTable.h"
#include "SchemaRules.h"
#include "TableLoader.h"
#include "WorkloadStatement.h"

wxIMPLEMENT_DYNAMIC_CLASS(CXact_Update, CXact);

namespace {

constexpr int kXactID = 141;  // kept: hosts know the transaction by this number
constexpr int kSeedOffset = 2;
constexpr int kRandomRowPercent = 50;

}  // namespace

CXact_Update::CXact_Update() {
  SetName(L"Update Transaction");
  SetDescription(L"Replication benchmark update transaction");
  SetXactID(kXactID);
}

CXact_Update::~CXact_Update() = default;  // kept: the handle is freed by PostBenchmark, not here

int CXact_Update::PreBenchmark() {
  m_nNumberOfTables = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  REP_ASSERT_AT(m_nNumberOfTables > 0, "m_nNumberOfTables > 0", "Xact_Update", 60, "PreBenchmark");
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!EnsureStatement(pDriver, &m_pUpdateStmt, L"Unable statement handle in Update Transaction!")) return 0;
  m_Random.Seed(m_nUserID + kSeedOffset);
  return 1;  // kept: the host's own PreBenchmark is not called
}

int CXact_Update::PreIteration() { return CXact::PreIteration(); }

void CXact_Update::ChooseRow() {
  const int nPercent = m_Random.GetRandomInt(1, 100);  // kept: drawn also when no row is recorded
  CREP_ORA8* pBenchmark = CREP_ORA8::From(m_pBenchmark);
  if (nPercent > kRandomRowPercent && pBenchmark != nullptr && pBenchmark->TakeFirstRow(m_nTableID, m_nRowID))
    return;  // kept: the row stays recorded, so it is updated until a delete takes it
  m_nTableID = m_Random.GetRandomInt(1, m_nNumberOfTables);
  m_nRowID = m_Random.GetRandomInt(1, LastRandomRow(m_BenchmarkProperties.GetScale()));
}

void CXact_Update::BuildSQL() {
  m_szSQL.Empty();
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return;
  ChooseRow();
  LKString szTableName;
  szTableName.Format(L"LK_REP_TABLE%lld", m_nTableID);
  REP_DEBUG_AT("Xact_Update", 159, "BuildSQL", L"Update --- User [%d] Table [%s]\n", m_nUserID,
               szTableName.c_str());
  CRepTable table(pDriver, szTableName);
  if (!table.Initialize()) {
    pDriver->HandleErrorMsg(L"Unable to retrieve table information in Update Transaction", 0);
    return;
  }
  // kept: the insert is prepared and bound, though only the values of the loader's generators are used
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(1));
  if (!pLoader || !pLoader->BindColumns()) return;
  pLoader->MakeRecord(m_nRowID);
  const LKString sz_ColStr = BuildSetList(table, *pLoader);
  m_szSQL.Format(L"update %s set %s where id = %lld", szTableName, sz_ColStr, m_nRowID);
}

LKString CXact_Update::BuildSetList(CRepTable& table, CTableLoader& loader) {
  LKString sz_ColStr;
  for (int nColumnIndex = 0; nColumnIndex < static_cast<int>(table.GetColumnCount()); ++nColumnIndex) {
    CColumn* pColumn = table.GetColumns()[nColumnIndex];
    IBind* pBind = loader.GetBindArray()[nColumnIndex];  // kept: throws past the end
    if (pColumn == nullptr || pBind == nullptr) continue;
    sz_ColStr += BuildFragment(*pColumn, *pBind, nColumnIndex);
  }
  return sz_ColStr.Left(sz_ColStr.GetLength() - 1);  // without the last comma
}

LKString CXact_Update::BuildFragment(CColumn& column, IBind& bind, int nColumnIndex) {
  if (column.IsPrimaryKey()) {
    LKString szFragment;
    szFragment.Format(L"ID=%lld,", m_nRowID);
    return szFragment;
  }
  return BuildAssignment(column, bind.GetDataGenerator(), nColumnIndex);
}

LKString CXact_Update::BuildAssignment(const CColumn& column, IDataGenerator* pGenerator, int nColumnIndex) {
  LKString szTemplate;
  LKString szFragment;
  szTemplate.Format(L"COLUMN%d", nColumnIndex);  // kept: the column's index, not its stored name
  // kept: a NULL is written as what the generator holds then: an empty text or date, or the number before;
  // quotes in a value are not escaped, generators make letters only
  const auto Fill = [&](const wchar_t* szEnd, auto ValueOf) {
    szTemplate += szEnd;
    if (pGenerator != nullptr) szFragment.Format(szTemplate, ValueOf(*pGenerator));
  };
  const auto Text = [](IDataGenerator& generator) { return static_cast<char*>(generator.GetValue()); };
  const auto Number = [](IDataGenerator& generator) { return *static_cast<double*>(generator.GetValue()); };
  switch (column.GetDataType()) {
    case SQLT_CHR:
    case SQLT_AFC:
    case SQLT_AVC:
      Fill(L"='%s',", Text);
      break;
    case SQLT_NUM:
    case SQLT_INT:
    case SQLT_LNG:  // kept: LONG counts as a number here
      Fill(L"=%f,", Number);
      break;
    case SQLT_DAT:
    case SQLT_TIMESTAMP:
      // kept: dashes in the mask, slashes in the value; the database takes either.
      Fill(L"=TO_DATE('%s', 'YYYY-MM-DD HH24:MI:SS'),", Text);
      break;
    default:  // also without a generator
      REP_ASSERT_AT(false, "0", "Xact_Update", 216, "BuildSQL");
  }
  return szFragment;
}

int CXact_Update::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  m_Timer.SetStartTime();
  ub4 nEffectRows = 0;
  // kept: nothing to do for a benchmark of another kind is a success
  if (CREP_ORA8::From(m_pBenchmark) != nullptr && !RunUpdate(pDriver, nEffectRows)) return 0;
  m_Timer.SetEndTime(nEffectRows, 0);
  return 1;
}

int CXact_Update::RunUpdate(COracle8Driver* pDriver, ub4& nEffectRows) {
  BuildSQL();
  if (m_szSQL.IsEmpty()) return 0;  // kept: the timer stays started, likewise after a failed call
  m_Timer.SetResponseTime();
  return RunMeasured(pDriver, m_pUpdateStmt, m_szSQL, L"Unable to prepare statement for update transaction.",
                     nEffectRows);
}

int CXact_Update::PostBenchmark() {
  Cleanup();
  return CXact::PostBenchmark();
}

void CXact_Update::Cleanup() { FreeStatement(&m_pUpdateStmt); }

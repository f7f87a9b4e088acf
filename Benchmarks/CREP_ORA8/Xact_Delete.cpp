// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "Xact_Delete.h"

#include "CREP_ORA8.h"
#include "OciCall.h"
#include "SchemaRules.h"
#include "WorkloadStatement.h"

wxIMPLEMENT_DYNAMIC_CLASS(CXact_Delete, CXact);

namespace {

constexpr int kXactID = 151;  // kept: hosts know the transaction by this number
constexpr int kSeedOffset = 3;

}  // namespace

CXact_Delete::CXact_Delete() {
  SetName(L"Delete Transaction");
  SetDescription(L"Replication benchmark delete transaction");
  SetXactID(kXactID);
}

CXact_Delete::~CXact_Delete() = default;  // kept: the handle is freed by PostBenchmark, not here

int CXact_Delete::PreBenchmark() {
  m_nNumberOfTables = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  REP_ASSERT_AT(m_nNumberOfTables > 0, "m_nNumberOfTables > 0", "Xact_Delete", 60, "PreBenchmark");
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!EnsureStatement(pDriver, &m_pDeleteStmt, L"Unable statement handle in Delete Transaction!")) return 0;
  m_Random.Seed(m_nUserID + kSeedOffset);
  return 1;  // kept: the host's own PreBenchmark is not called
}

int CXact_Delete::PreIteration() { return CXact::PreIteration(); }

void CXact_Delete::ChooseRow() {
  CREP_ORA8* pBenchmark = CREP_ORA8::From(m_pBenchmark);
  m_bInsertedRow = pBenchmark != nullptr && pBenchmark->TakeFirstRow(m_nTableID, m_nRowID) ? TRUE : FALSE;
  if (m_bInsertedRow) return;  // kept: without a draw, unlike an update
  m_nTableID = m_Random.GetRandomInt(1, m_nNumberOfTables);
  m_nRowID = m_Random.GetRandomInt(1, LastRandomRow(m_BenchmarkProperties.GetScale()));
}

void CXact_Delete::BuildSQL() {
  m_szSQL.Empty();
  ChooseRow();  // kept: without a driver too, where an update's text stays empty
  LKString szTableName;
  szTableName.Format(L"LK_REP_TABLE%lld", m_nTableID);
  m_szSQL.Format(L"delete from %s where id = %lld", szTableName, m_nRowID);
  REP_DEBUG_AT("Xact_Delete", 160, "BuildSQL", L"Delete --- User [%d] Table [%s]\n", m_nUserID,
               szTableName.c_str());
}

int CXact_Delete::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  m_Timer.SetStartTime();
  ub4 nRows = 0;
  // kept: nothing to do for a benchmark of another kind is a success
  if (CREP_ORA8::From(m_pBenchmark) != nullptr && !RunDelete(pDriver, nRows)) return 0;
  m_Timer.SetEndTime(nRows, 0);
  return 1;
}

int CXact_Delete::RunDelete(COracle8Driver* pDriver, ub4& nRows) {
  BuildSQL();
  if (m_szSQL.IsEmpty()) return 0;
  m_Timer.SetResponseTime();
  // kept: the timer stays started after a failure, and the recorded row stays, so the next delete tries it
  // again
  if (!RunMeasured(pDriver, m_pDeleteStmt, m_szSQL, L"Unable to prepare statement for delete transaction.",
                   nRows))
    return 0;
  // kept: forgotten whatever the row count: two users may have picked the same row.
  if (m_bInsertedRow) CREP_ORA8::From(m_pBenchmark)->ForgetRow(m_nTableID, m_nRowID);
  return 1;
}

int CXact_Delete::PostBenchmark() {
  Cleanup();
  return CXact::PostBenchmark();
}

void CXact_Delete::Cleanup() { FreeStatement(&m_pDeleteStmt); }

// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "Xact_Insert.h"

#include <memory>

#include "CREP_ORA8.h"
#include "OciCall.h"
#include "RepTable.h"
#include "TableLoader.h"
#include "WorkloadStatement.h"

wxIMPLEMENT_DYNAMIC_CLASS(CXact_Insert, CXact);

namespace {

constexpr int kXactID = 131;  // kept: hosts know the transaction by this number
constexpr int kSeedOffset = 1;

// kept: 0 is no ID either, though a sequence could give it; below -1 it is one.
bool IsNoID(__int64 nRowID) { return static_cast<unsigned long>(nRowID) + 1 <= 1; }  // -1 or 0

}  // namespace

CXact_Insert::CXact_Insert() {
  SetName(L"Insert Transaction");
  SetDescription(L"Replication benchmark insert transaction");
  SetXactID(kXactID);
}

CXact_Insert::~CXact_Insert() = default;  // kept: the handle is freed by PostBenchmark, not here

int CXact_Insert::PreBenchmark() {
  m_nNumberOfTables = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  REP_ASSERT_AT(m_nNumberOfTables > 0, "m_nNumberOfTables > 0", "Xact_Insert", 62, "PreBenchmark");
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  if (!EnsureStatement(pDriver, &m_pStmt, L"Unable statement handle in Insert Transaction!")) return 0;
  if (!PrepareSequenceQuery(pDriver)) return -1;  // kept: not 0 as after a failed allocation
  m_Random.Seed(m_nUserID + kSeedOffset);
  return 1;  // kept: the host's own PreBenchmark is not called
}

int CXact_Insert::PrepareSequenceQuery(COracle8Driver* pDriver) {
  static constexpr std::string_view lpSQL = "SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL";
  const sword nStatus = PrepareText(m_pStmt, pDriver->GetOCIError(), lpSQL);
  if (IsFailure(nStatus)) {
    pDriver->HandleError(nStatus, pDriver->GetOCIError(), L"Unable to generate ID for Insert transaction.", 0,
                         0);
    return 0;
  }
  // kept: the status of the define is not looked at; a failed one shows at the first execute.
  OCIDefine* pDefine = nullptr;
  OCIDefineByPos(m_pStmt, &pDefine, pDriver->GetOCIError(), 1, &m_fNextID, sizeof m_fNextID, SQLT_FLT,
                 &m_nIndicator, nullptr, nullptr, OCI_DEFAULT);
  return 1;
}

int CXact_Insert::PreIteration() { return CXact::PreIteration(); }

__int64 CXact_Insert::GenerateNextID() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return -1;
  const sword nStatus = ExecuteOnce(pDriver, m_pStmt, OCI_DEFAULT);
  if (IsFailure(nStatus)) {
    pDriver->HandleError(nStatus, pDriver->GetOCIError(), L"Unable to generate ID for Insert transaction.", 0,
                         0);
    return -1;
  }
  return static_cast<__int64>(m_fNextID);  // kept: the indicator is not examined, a fraction is cut off
}

int CXact_Insert::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  const int nTableID = m_Random.GetRandomInt(1, m_nNumberOfTables);
  LKString strTableName;
  strTableName.Format(L"LK_REP_TABLE%d", nTableID);
  REP_DEBUG_AT("Xact_Insert", 113, "Execute", L"Insert --- User [%d] Table [%s]\n", m_nUserID,
               strTableName.c_str());
  return InsertRow(pDriver, nTableID, strTableName);
}

int CXact_Insert::InsertRow(COracle8Driver* pDriver, int nTableID, const LKString& strTableName) {
  CRepTable table(pDriver, strTableName);
  // kept: described anew for each row, before the timer starts; an update's describe is timed
  if (!table.Initialize()) {
    pDriver->HandleErrorMsg(L"Unable to retrieve table information in Insert Transaction", 0);
    return 0;
  }
  m_Timer.SetStartTime();
  // kept: the timer stays started on both returns below.
  std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(1));
  if (!pLoader || !pLoader->BindColumns()) return 0;
  m_Timer.SetResponseTime();
  const __int64 nRowID = GenerateNextID();
  if (IsNoID(nRowID)) {
    m_Timer.SetEndTime(0, 0);
    (void)pLoader.release();  // kept: the loader is not freed on this path
    return 0;
  }
  pLoader->m_nCommitMode = OCI_DEFAULT;  // the host commits
  pLoader->MakeRecord(nRowID);
  const int nSent = pLoader->SendRows(1);
  m_Timer.SetEndTime(nSent, 0);
  pLoader.reset();
  if (nSent == 0) return 0;
  RecordRow(nTableID, nRowID);
  return nSent;
}

void CXact_Insert::RecordRow(int nTableID, __int64 nRowID) {
  // kept: under a benchmark of another kind the row is inserted all the same, where update and delete do
  // nothing
  CREP_ORA8* pBenchmark = CREP_ORA8::From(m_pBenchmark);
  if (pBenchmark != nullptr) pBenchmark->RecordRow(nTableID, nRowID);
}

int CXact_Insert::PostBenchmark() {
  Cleanup();
  return CXact::PostBenchmark();
}

void CXact_Insert::Cleanup() { FreeStatement(&m_pStmt); }

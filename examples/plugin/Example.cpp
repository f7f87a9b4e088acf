// SPDX-License-Identifier: Apache-2.0
#include "Example.h"

// wxWidgets registers the classes by name, so that the host can copy a transaction by its class.
wxIMPLEMENT_DYNAMIC_CLASS(CExample, CSSBenchmark);
wxIMPLEMENT_ABSTRACT_CLASS(CExampleXact, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CExampleRead, CExampleXact);
wxIMPLEMENT_DYNAMIC_CLASS(CExampleTouch, CExampleXact);

namespace {

// lkbench weighs the transactions of a workload by these numbers: the mix's insert, update and delete.
constexpr int kInsertID = 131;
constexpr int kUpdateID = 141;

constexpr double kRowsPerScale = 1000;

}  // namespace

CExample::CExample() { SetName(L"Example"); }

// Set-up transactions would be added when bSetup is set; this benchmark uses the tables of another plug-in.
int CExample::RegisterTransactions(int) {
  AddXact(new CExampleRead);
  AddXact(new CExampleTouch);
  return 1;
}

int CExampleXact::Execute() {
  const int nTable =
      m_Random.GetRandomInt(1, m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber());
  const int nRow =
      m_Random.GetRandomInt(1, static_cast<int>(m_BenchmarkProperties.GetScale() * kRowsPerScale));
  LKString szTable;
  szTable.Format(L"LK_REP_TABLE%d", nTable);
  m_Timer.SetStartTime();
  m_Timer.SetResponseTime();  // the database part begins here
  const long nRows = RunOn(szTable, nRow);
  if (nRows < 0) return 0;
  m_Timer.SetEndTime(nRows, 0);
  return 1;
}

CExampleRead::CExampleRead() {
  SetName(L"Example Read");
  SetDescription(L"Reads a row by its key");
  SetXactID(kInsertID);
}

long CExampleRead::RunOn(const LKString& szTable, int nRow) {
  LKString szSQL;
  szSQL.Format(L"SELECT ID FROM %s WHERE ID = %d", szTable, nRow);
  std::vector<std::vector<LKString>> rows;
  return m_pDriver->Query(szSQL, rows) != 0 ? static_cast<long>(rows.size()) : -1;
}

CExampleTouch::CExampleTouch() {
  SetName(L"Example Touch");
  SetDescription(L"Writes a row without changing it");
  SetXactID(kUpdateID);
}

long CExampleTouch::RunOn(const LKString& szTable, int nRow) {
  LKString szSQL;
  szSQL.Format(L"UPDATE %s SET ID = ID WHERE ID = %d", szTable, nRow);
  const bool bDone =
      m_pDriver->PrepareStatement(szSQL.c_str(), 0) != 0 && m_pDriver->ExecuteStatement(0) != 0;
  m_pDriver->CloseStatement();
  return bDone ? 1 : -1;
}

// The one symbol that the host looks up: stores a new benchmark, which the host owns, and returns 1.
extern "C" int GetBenchmarkClassInfo(CSSBenchmark** benchmark) {
  *benchmark = new CExample;
  return 1;
}

// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "CREP_ORA8.h"

#include "CREP_CreateObjects_ORA8.h"
#include "CREP_DeleteObjects_ORA8.h"
#include "CREP_InitObjects_ORA8.h"
#include "REP_RefreshTables_ORA8.h"
#include "Xact_Delete.h"
#include "Xact_Insert.h"
#include "Xact_Update.h"

namespace {

constexpr int kBenchmarkID = 16;
constexpr int kDriverID = 9;
// kept: looked at before a row is added, so the map grows to 100; a full map takes no replacement either.
constexpr long kMaxCountToRecord = 99;

}  // namespace

wxIMPLEMENT_DYNAMIC_CLASS(CREP_ORA8, CSSBenchmark);

CREP_ORA8::CREP_ORA8() {
  SetBenchmarkID(kBenchmarkID);
  SetDriverID(kDriverID);
  SetName(L"Replication");
}

CREP_ORA8::~CREP_ORA8() { m_MapTableNumToRowID.RemoveAll(); }

CREP_ORA8* CREP_ORA8::From(CSSBenchmark* pBenchmark) {
  const bool bKind = pBenchmark != nullptr && pBenchmark->IsKindOf(wxCLASSINFO(CREP_ORA8));
  return bKind ? static_cast<CREP_ORA8*>(pBenchmark) : nullptr;
}

int CREP_ORA8::RegisterTransactions(int bSetup) {
  if (bSetup) AddSetupTransactions();
  AddWorkloadTransactions();
  return 1;
}

void CREP_ORA8::AddSetupTransactions() {
  AddXact(new CXact_Create_RepTables);
  AddXact(new CXact_Drop_RepTables);
  AddXact(new CXact_LoadTable_ORA8);
  AddXact(new CXact_Create_Sequence);
  AddXact(new CXact_Drop_Sequence);
  AddXact(new CXact_Create_Replication_Properties_Table);
  AddXact(new CXact_Drop_Replication_Properties_Table);
  AddXact(new CREP_RefreshTable_ORA8);
  AddXact(new CREP_Refresh_Properties_Table);
  AddXact(new CREP_Refresh_Sequence);
}

void CREP_ORA8::AddWorkloadTransactions() {
  AddXact(new CXact_Insert);
  AddXact(new CXact_Update);
  AddXact(new CXact_Delete);
}

int CREP_ORA8::RecordRow(long nTableNum, long nRowID) {
  const std::lock_guard lock(m_MapLock);
  if (m_MapTableNumToRowID.GetCount() > kMaxCountToRecord) return 0;
  // kept: the key is a plain sum, so rows of different tables may share an entry and the later one stays;
  // update and delete read the table number back as key minus value.
  m_MapTableNumToRowID.SetAt(nTableNum + nRowID, nRowID);
  return 1;
}

int CREP_ORA8::TakeFirstRow(long& nTableNum, long& nRowID) {
  const std::lock_guard lock(m_MapLock);
  if (m_MapTableNumToRowID.IsEmpty()) return 0;
  // kept: the entry stays; the delete forgets it, an update may take it any number of times.
  const auto first = m_MapTableNumToRowID.GetStartPosition();
  nRowID = first->second;
  nTableNum = first->first - first->second;
  return 1;
}

void CREP_ORA8::ForgetRow(long nTableNum, long nRowID) {
  const std::lock_guard lock(m_MapLock);
  m_MapTableNumToRowID.RemoveKey(nTableNum + nRowID);
}

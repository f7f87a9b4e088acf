// SPDX-License-Identifier: Apache-2.0
#include "db/Xact.h"

#include <algorithm>
#include <string>

wxIMPLEMENT_DYNAMIC_CLASS(CXact, wxObject);

CXact::CXact() = default;
CXact::~CXact() = default;

void CXact::AddChildXact(CXact* pChild) {
  pChild->m_pParentXact = this;
  m_ChildXacts.Add(pChild);
}

int CXact::Execute() {
  CXact* pNext = GetNextXactToExecute();
  return pNext == nullptr ? 1 : pNext->Execute();
}

// Not inline: the transactions of a plug-in call these, and what they do stays the host's to change.
int CXact::PreBenchmark() { return 1; }
int CXact::PostBenchmark() { return 1; }
int CXact::PreIteration() { return 1; }

int CXact::PreExecute() { return m_pStartEvent == nullptr || m_pStartEvent->bSignalled ? 1 : 0; }

int CXact::InitializeForTest(LKEvent_* pStart, int nUserID, int nTotalUsers, int nSeed) {
  if (nUserID < 1 || nUserID > nTotalUsers) return 0;
  m_pStartEvent = pStart;
  m_nUserID = nUserID;
  m_nTotalUsers = nTotalUsers;
  m_Random.Seed(nSeed);
  m_Timer.Reset();
  m_nRowsProcessed = 0;
  ClearResults();
  ClearDistributions();
  return 1;
}

int CXact::IsInUserXact() { return m_pParentXact == nullptr ? 0 : m_pParentXact->IsUserXact(); }

CXact* CXact::GetNextXactToExecute() {
  long nTotalWeight = 0;
  for (const CXact* pChild : m_ChildXacts) nTotalWeight += std::max(0, pChild->m_nWeight);
  if (nTotalWeight == 0) return nullptr;
  long nDraw = m_Random.GetRandom(1, nTotalWeight);
  return *std::ranges::find_if(m_ChildXacts, [&](const CXact* pChild) {
    nDraw -= std::max(0, pChild->m_nWeight);
    return nDraw <= 0;
  });
}

int CXact::GlobalSearchReplace(LKString& szFind, LKString& szReplace, int bMatchCase, int bWholeWord) {
  int nReplaced = 0;
  for (CXact* pChild : m_ChildXacts)
    if (pChild->CanSearchReplace() != 0)
      nReplaced += pChild->GlobalSearchReplace(szFind, szReplace, bMatchCase, bWholeWord);
  return nReplaced;
}

LKString CXact::GetDetailInformation() {
  LKString szDetail = m_szName;
  szDetail += L" (transaction ";
  szDetail += std::to_wstring(m_nXactID).c_str();
  szDetail += L", type ";
  szDetail += std::to_wstring(m_nTransactionType).c_str();
  szDetail += L")";
  if (m_szDescription.IsEmpty()) return szDetail;
  szDetail += L": ";
  return szDetail + m_szDescription;
}

CRestObject* CXact::GetNextObject(LKString szName) {
  const auto found =
      std::ranges::find_if(m_ChildXacts, [&](const CXact* pChild) { return pChild->m_szName == szName; });
  return found == m_ChildXacts.end() ? nullptr : *found;
}

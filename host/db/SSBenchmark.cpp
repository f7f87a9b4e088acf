// SPDX-License-Identifier: Apache-2.0
#include "db/SSBenchmark.h"

#include <algorithm>

#include "db/Xact.h"

wxIMPLEMENT_DYNAMIC_CLASS(CSSBenchmark, wxObject);

CSSBenchmark::CSSBenchmark() = default;
CSSBenchmark::~CSSBenchmark() = default;

int CSSBenchmark::RegisterTransactions(int) { return 1; }

int CSSBenchmark::GetPropertyPages(CTRKPtrArray*, int) { return 0; }

CXact* CSSBenchmark::GetNewXactByID(int nXactID) {
  const auto found =
      std::ranges::find_if(m_Xacts, [&](const auto& pXact) { return pXact->GetXactID() == nXactID; });
  if (found == m_Xacts.end()) return nullptr;
  std::unique_ptr<wxObject> pObject((*found)->GetClassInfo()->CreateObject());
  auto* pXact = dynamic_cast<CXact*>(pObject.get());
  if (pXact == nullptr || pXact->CopyObject(found->get()) == 0) return nullptr;
  (void)pObject.release();
  return pXact;
}

void CSSBenchmark::AddXact(CXact* pXact) {
  if (pXact != nullptr) m_Xacts.emplace_back(pXact);
}

CXact* CSSBenchmark::GetXact(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetXactCount()) return nullptr;
  return m_Xacts[static_cast<size_t>(nIndex)].get();
}

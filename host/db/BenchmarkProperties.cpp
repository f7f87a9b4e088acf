// SPDX-License-Identifier: Apache-2.0
#include "db/BenchmarkProperties.h"

#include <utility>

wxIMPLEMENT_DYNAMIC_CLASS(ColumnInfo, wxObject);

// The definitions and the array of plain pointers to them that the contract hands out. Immutable once made,
// so that copies of the settings may share it between threads.
struct CRepBenchmarkProperties::Columns {
  std::vector<std::shared_ptr<wxObject>> owned;
  ColumnInfoArray array;
};

ColumnInfo::ColumnInfo(const LKString& szTypeName, int nWeight, bool bIsNull)
    : m_szTypeName(szTypeName), m_nWeight(nWeight), m_bIsNull(bIsNull) {}

ColumnInfoArray* CRepBenchmarkProperties::GetColumnInfo() const {
  return m_pColumns == nullptr ? nullptr : &m_pColumns->array;
}

void CRepBenchmarkProperties::SetColumnNumbers(int nMin, int nMax) {
  m_nMinColumnNumber = nMin;
  m_nMaxColumnNumber = nMax;
}

void CRepBenchmarkProperties::SetColumnInfo(std::vector<std::shared_ptr<wxObject>> columns) {
  auto pColumns = std::make_shared<Columns>();
  pColumns->owned = std::move(columns);
  for (const auto& pColumn : pColumns->owned) pColumns->array.Add(pColumn.get());
  m_pColumns = std::move(pColumns);
}

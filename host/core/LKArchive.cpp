// SPDX-License-Identifier: Apache-2.0
#include "core/LKArchive.h"

#include <algorithm>

CLKArchive::CLKArchive(SerializeMode eMode) : m_eMode(eMode), m_bStoring(true) {}

CLKArchive::CLKArchive(SerializeMode eMode, const LKString& szText)
    : m_eMode(eMode), m_bStoring(false), m_bGood(LKReadProperties(szText, eMode, m_Values)) {}

void CLKArchive::Exchange(const wchar_t* szName, int& nValue) { Exchange({szName, REST_INT, &nValue}); }

void CLKArchive::Exchange(const wchar_t* szName, __int64& nValue) { Exchange({szName, REST_INT64, &nValue}); }

void CLKArchive::Exchange(const wchar_t* szName, double& fValue) { Exchange({szName, REST_DOUBLE, &fValue}); }

void CLKArchive::Exchange(const wchar_t* szName, LKString& szValue) {
  Exchange({szName, REST_STRING, &szValue});
}

void CLKArchive::Exchange(const REST_PROPERTY_ENTRY& entry) {
  if (m_bStoring) return m_Values.push_back(LKPropertyOf(entry));
  const auto found =
      std::ranges::find_if(m_Values, [&entry](const auto& value) { return value.szName == entry.szName; });
  if (found != m_Values.end() && !LKStoreValue(entry, found->szValue)) m_bGood = false;
}

LKString CLKArchive::GetText() const { return LKWriteProperties(m_Values, m_eMode); }

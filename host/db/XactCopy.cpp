// SPDX-License-Identifier: Apache-2.0
#include "db/Xact.h"

CXact::CXact(const CXact& other) : wxObject(other), CRestObject(other) { CXact::operator=(other); }

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): every member is its own copy then
CXact& CXact::operator=(const CXact& other) {
  m_szName = other.m_szName;
  m_szDescription = other.m_szDescription;
  m_nXactID = other.m_nXactID;
  m_nTransactionType = other.m_nTransactionType;
  m_nDriverType = other.m_nDriverType;
  m_nWeight = other.m_nWeight;
  m_nUserLoad = other.m_nUserLoad;
  m_BenchmarkProperties = other.m_BenchmarkProperties;
  return *this;
}

int CXact::CopyObject(const CXact* pOther) {
  if (pOther == nullptr) return 0;
  CXact::operator=(*pOther);
  return 1;
}

// SPDX-License-Identifier: Apache-2.0
// A transaction as a resource: its property table, its archive, and changes that arrive as requests.
#include "core/PropertyText.h"
#include "db/Xact.h"

void CXact::GetPropertyTable(std::vector<REST_PROPERTY_ENTRY>& table) {
  table.push_back({L"Name", REST_STRING, &m_szName, false});
  table.push_back({L"Description", REST_STRING, &m_szDescription, false});
  table.push_back({L"XactID", REST_INT, &m_nXactID, true});
  table.push_back({L"TransactionType", REST_INT, &m_nTransactionType, true});
  table.push_back({L"Weight", REST_INT, &m_nWeight, false});
  table.push_back({L"UserLoad", REST_INT, &m_nUserLoad, false});
}

void CXact::Serialize(CLKArchive& archive) {
  archive.Exchange(L"Name", m_szName);
  archive.Exchange(L"Description", m_szDescription);
  archive.Exchange(L"XactID", m_nXactID);
  archive.Exchange(L"TransactionType", m_nTransactionType);
  archive.Exchange(L"DriverType", m_nDriverType);
  archive.Exchange(L"Weight", m_nWeight);
  archive.Exchange(L"UserLoad", m_nUserLoad);
}

int CXact::SetProperty(LKString& szName, LKString& szValue) {
  Context context;
  context.szRequestData = LKWriteProperties({{szName, szValue}}, Json);
  context.nContextType = Json;
  LKString szResponse;
  return DoPut(context, szResponse) == 200 ? 1 : 0;
}

int CXact::SetChildObject(LKString&, LKString&) { return 0; }

int CXact::DoPut(Context context, LKString& szResponse) {
  const CXact before(*this);
  const int nStatus = CRestObject::DoPut(context, szResponse);
  if (nStatus == 200 && m_nWeight >= 0 && m_nUserLoad >= 0) return 200;
  CXact::operator=(before);
  if (nStatus != 200) return nStatus;
  szResponse = L"Weight and UserLoad must be 0 or more.";
  return 400;
}

// SPDX-License-Identifier: Apache-2.0
#include "db/DriverBase.h"

wxIMPLEMENT_ABSTRACT_CLASS(CDriverBase, wxObject);

void CDriverBase::RemoveIgnoreError(int nCode) {
  const auto found = m_IgnoredErrors.find(nCode);
  if (found != m_IgnoredErrors.end()) m_IgnoredErrors.erase(found);
}

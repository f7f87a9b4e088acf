// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/KeptStatements.h"

#include <algorithm>

namespace ocimaria {

std::unique_ptr<PreparedStatement> KeptStatements::Take(std::string_view text) {
  const auto found = std::ranges::find(m_statements, text, [](const auto& kept) { return kept->Text(); });
  if (found == m_statements.end()) return nullptr;
  auto taken = std::move(*found);
  m_statements.erase(found);
  return taken;
}

void KeptStatements::Give(std::unique_ptr<PreparedStatement> statement) {
  if (!statement->IsReusable()) return;
  if (m_statements.size() == kMost) m_statements.erase(m_statements.begin());
  m_statements.push_back(std::move(statement));
}

}  // namespace ocimaria

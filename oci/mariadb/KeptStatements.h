// SPDX-License-Identifier: Apache-2.0
// Statements that a connection's handles have given up and the server still has prepared, for the next handle
// with the same text: as many as an Oracle client keeps unless told otherwise. What returns no rows is kept;
// the server itself prepares such a statement anew when a table that it names has changed, whoever changed
// it. Threads: as the connection. No round trips.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

class KeptStatements {
 public:
  static constexpr std::size_t kMost = 20;

  // The statement of this text, no longer kept; null when there is none.
  std::unique_ptr<PreparedStatement> Take(std::string_view text);

  // Keeps what can be used again and closes anything else. The longest unused one goes when there are many.
  void Give(std::unique_ptr<PreparedStatement> statement);

  void Clear() { m_statements.clear(); }

 private:
  std::vector<std::unique_ptr<PreparedStatement>> m_statements;  // the last one was given last
};

}  // namespace ocimaria

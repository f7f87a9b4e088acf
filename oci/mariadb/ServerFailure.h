// SPDX-License-Identifier: Apache-2.0
// What the server or the client library answered in place of a result: its number and text, not yet an Oracle
// error, because the recovery after a failure decides by the native number.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/ErrorMap.h"

namespace ocimaria {

class ServerFailure : public std::exception {
 public:
  ServerFailure(unsigned number, std::string text) : m_number(number), m_text(std::move(text)) {}

  unsigned Number() const { return m_number; }
  const std::string& Text() const { return m_text; }
  const char* what() const noexcept override { return m_text.c_str(); }

  bool BrokenLink() const;             // the client library cannot talk to the server any more
  bool LostConnection() const;         // the session is gone: a broken link, or the server said so
  bool Interrupted() const;            // KILL QUERY, or the server's own time limit
  bool RolledBackTransaction() const;  // the server undid more than the statement
  bool MissingSavepoint() const;
  bool ConcernsRow() const;  // another row of the same array may well succeed

 private:
  unsigned m_number;
  std::string m_text;
};

// The Oracle error of a failure.
OraError ToOraError(const ServerFailure& failure, const sql::ErrorContext& context = {});

}  // namespace ocimaria

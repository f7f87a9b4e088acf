// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ServerFailure.h"

#include <errmsg.h>
#include <mysqld_error.h>

namespace ocimaria {

bool ServerFailure::LostConnection() const {
  switch (m_number) {
    case CR_SERVER_GONE_ERROR:
    case CR_SERVER_LOST:
    case ER_CONNECTION_KILLED:
    case ER_SERVER_SHUTDOWN:
      return true;
    default:
      return false;
  }
}

bool ServerFailure::Interrupted() const {
  return m_number == ER_QUERY_INTERRUPTED || m_number == ER_STATEMENT_TIMEOUT;
}

bool ServerFailure::RolledBackTransaction() const { return m_number == ER_LOCK_DEADLOCK; }

bool ServerFailure::MissingSavepoint() const { return m_number == ER_SP_DOES_NOT_EXIST; }

bool ServerFailure::ConcernsRow() const {
  return !LostConnection() && !Interrupted() && !RolledBackTransaction() && m_number != ER_LOCK_WAIT_TIMEOUT;
}

OraError ToOraError(const ServerFailure& failure, const sql::ErrorContext& context) {
  return sql::MapServerError(failure.Number(), failure.Text(), context);
}

}  // namespace ocimaria

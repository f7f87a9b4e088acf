// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ServerFailure.h"

#include <errmsg.h>
#include <mysqld_error.h>

namespace ocimaria {

bool ServerFailure::BrokenLink() const {
  switch (m_number) {
    case CR_SERVER_GONE_ERROR:
    case CR_SERVER_LOST:
    case CR_SERVER_LOST_EXTENDED:
    case CR_SSL_CONNECTION_ERROR:  // how a link with TLS breaks
    case CR_MALFORMED_PACKET:
    case CR_ERR_NET_READ:
    case CR_ERR_NET_WRITE:
      return true;
    default:
      return false;
  }
}

bool ServerFailure::LostConnection() const {
  return BrokenLink() || m_number == ER_CONNECTION_KILLED || m_number == ER_SERVER_SHUTDOWN;
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
  OraError error = sql::MapServerError(failure.Number(), failure.Text(), context);
  error.SetServer({failure.Number(), failure.Text(), context.is_block});
  return error;
}

}  // namespace ocimaria

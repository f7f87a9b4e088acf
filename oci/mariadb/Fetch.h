// SPDX-License-Identifier: Apache-2.0
// Queries: execution, and rows into the defines of a statement.
#pragma once

#include "oci/mariadb/Errors.h"
#include "oci/mariadb/Execute.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {

// Runs the query and delivers the first rows. The result is stored whole; outside of a transaction that has
// done work a COMMIT follows, so that nothing stays locked, except after drawing from a sequence or locking
// rows. Round trips: 1, and 1 for that COMMIT where the query read a table.
sword ExecuteQuery(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error);

// Delivers up to `count` rows. OCI_NO_DATA with ORA-01403 on `error` when there were fewer. No round trip.
sword FetchRows(StatementHandle& statement, ub4 count, ErrorHandle& error);

}  // namespace ocimaria

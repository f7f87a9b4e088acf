// SPDX-License-Identifier: Apache-2.0
// Executing a statement. Each kind of statement has its own way; all leave on the handle what Oracle leaves:
// row count, failed rows, description.
#pragma once

#include "oci/mariadb/Errors.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {

struct ExecuteRequest {
  ub4 first = 0;  // element of the bind arrays
  ub4 end = 1;
  ub4 mode = OCI_DEFAULT;

  bool Has(ub4 flag) const { return (mode & flag) != 0; }
};

// REQUIRES a CallScope on the statement's connection. Gives OCI_SUCCESS, OCI_SUCCESS_WITH_INFO or
// OCI_NO_DATA; throws for everything else.
sword Execute(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error);

// Each kind, used by Execute. Round trips: a text 1, a bound statement 1 for each 8 MB of its rows, a block
// 1, or 2 when the transaction has done work before; a commit 1 more.
void ExecuteText(StatementHandle& statement, const ExecuteRequest& request);
sword ExecuteBound(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error);
void ExecuteBlock(StatementHandle& statement, const ExecuteRequest& request);

}  // namespace ocimaria

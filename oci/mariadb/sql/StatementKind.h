// SPDX-License-Identifier: Apache-2.0
// What a statement is, told by its leading words.
#pragma once

#include <oci.h>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

struct StatementKind {
  ub2 type = OCI_STMT_UNKNOWN;     // OCI_STMT_*
  bool is_ddl = false;             // commits before and after
  bool is_block = false;           // an anonymous block
  bool is_stored_program = false;  // CREATE PROCEDURE, TRIGGER …: the body is the server's, colons and all
};

StatementKind ClassifyStatement(const PieceList& pieces);

}  // namespace ocimaria::sql

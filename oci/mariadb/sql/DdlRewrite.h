// SPDX-License-Identifier: Apache-2.0
// Statements that define objects, put into the server's words.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Any statement; what is no DDL or needs no change stays. Throws OraError: ORA-00922 for an option that is
// none, ORA-03001 for what cannot be had, and what a table definition throws.
void RewriteDdl(PieceList& pieces);

// REQUIRES: the pieces begin with CREATE TABLE, ALTER TABLE.
void RewriteCreateTable(PieceList& pieces);
void RewriteAlterTable(PieceList& pieces);

}  // namespace ocimaria::sql

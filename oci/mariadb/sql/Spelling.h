// SPDX-License-Identifier: Apache-2.0
// The same thing spelt otherwise: literals with a prefix, operators, names with characters that the server
// takes for something else; and what Oracle's grammar has and the server's has not.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Throws ORA-00911 for a mark that Oracle's language has not, ORA-00933 for a literal behind a literal,
// ORA-03001 for database links, outer joins with
// (+), CONNECT BY, NULLS FIRST or LAST.
void RewriteSpelling(PieceList& pieces);

}  // namespace ocimaria::sql

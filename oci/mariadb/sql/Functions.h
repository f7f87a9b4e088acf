// SPDX-License-Identifier: Apache-2.0
// Functions and pseudo-columns that the server lacks or spells otherwise: TO_NUMBER, TRUNC, CAST to Oracle's
// types, USER, SYSTIMESTAMP, CURRENT_DATE, whole days added to SYSDATE or to what a date function gives. USER
// is the schema, which owns what the dictionary views show.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Throws ORA-03001 where the meaning depends on what the server alone knows, ORA-01722 for a literal that is
// no number, ORA-00938 and ORA-00939 for wrong numbers of arguments.
void RewriteFunctions(PieceList& pieces);

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// TO_DATE and TO_TIMESTAMP. Around a placeholder they vanish: the bound text is converted before it is sent.
// Around a literal they become a date literal. Around anything else they become STR_TO_DATE.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Throws OraError: ORA-00907, ORA-00938, ORA-00939 for a malformed call, ORA-03001 for a mask that is no
// literal, and what the mask and the text of a literal give.
void RewriteDateFunctions(PieceList& pieces);

}  // namespace ocimaria::sql

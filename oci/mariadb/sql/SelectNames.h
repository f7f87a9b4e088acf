// SPDX-License-Identifier: Apache-2.0
// A column of a query is named by its text as written. Where that text is rewritten, the name is kept as an
// alias.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// The last step: every other rewriting is done, placeholders included.
void KeepSelectNames(PieceList& pieces);

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// The dictionary views USER_… and ALL_… and V$VERSION: where a query names one as a table, a query over the
// server's own dictionary takes its place, with Oracle's columns and upper-case names. The server calls every
// primary key PRIMARY; the views name it PK_ and its table's name, so that a constraint's name is unique in a
// schema.
//
// TABLES, TAB_COLUMNS, VIEWS, SEQUENCES (names only: the server lists no more), CONSTRAINTS (without those of
// NOT NULL), CONS_COLUMNS, INDEXES, IND_COLUMNS, OBJECTS. Also DUAL as a table with its column DUMMY.
#pragma once

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

void RewriteDictionaryViews(PieceList& pieces);

}  // namespace ocimaria::sql

// SPDX-License-Identifier: Apache-2.0
// The Oracle type that a result column describes as when nothing is known but the server's own metadata: a
// column of a table that was not created through this library, or an expression.
// Approximate numbers and numeric expressions are NUMBER; text is VARCHAR2 or CHAR with lengths in
// characters, large text CLOB; binary strings are RAW, large ones BLOB; DATETIME is DATE, with a fraction
// TIMESTAMP. Pure function, any thread.
#pragma once

#include <mysql.h>

#include "oci/mariadb/sql/OracleType.h"

namespace ocimaria {

sql::TypeDescription NaturalType(const MYSQL_FIELD& field);

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
// The server's column type that stores an Oracle type.
#pragma once

#include <cstddef>
#include <string>

#include "oci/mariadb/sql/OracleType.h"

namespace ocimaria::sql {

// With a collation where the server's own would compare otherwise: CHAR is compared without trailing blanks.
std::string StorageType(const OracleType& type);

// The same outside the row, for a text in a table whose rows would pass the server's limit. The length is
// then not the type's: a check has to hold it.
std::string OutOfRowStorageType(const OracleType& type);
bool CanBeOutOfRow(const OracleType& type);

// What the value takes of the server's row limit at most.
std::size_t RowBytes(const OracleType& type);
inline constexpr std::size_t kOutOfRowBytes = 12;

// What CAST(… AS …) names in place of the type. Throws ORA-03001 for a type that no expression has here.
std::string CastType(const OracleType& type);

}  // namespace ocimaria::sql

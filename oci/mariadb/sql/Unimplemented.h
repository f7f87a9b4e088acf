// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "oci/mariadb/OraError.h"

namespace ocimaria::sql {

// The error of a statement that means something to Oracle and cannot be had here: it says what.
inline OraError Unimplemented(const std::string& what) {
  return OraError::WithText(3001, "unimplemented feature: " + what);
}

}  // namespace ocimaria::sql

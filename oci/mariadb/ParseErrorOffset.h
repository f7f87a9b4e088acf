// SPDX-License-Identifier: Apache-2.0
// Where in a statement an error lies, as far as the server's message tells: a syntax error shows the text
// from there on, an unknown column or table is named. Pure function, any thread.
#pragma once

#include <oci.h>

#include <string_view>

#include "oci/mariadb/ServerFailure.h"

namespace ocimaria {

// Byte offset into the statement as the caller wrote it; 0 when the failure has no place in it.
ub2 ParseErrorOffset(std::string_view statement, const ServerFailure& failure);

}  // namespace ocimaria

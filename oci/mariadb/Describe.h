// SPDX-License-Identifier: Apache-2.0
// Describing a query: prepared on the server, nothing executed, no lock left behind.
#pragma once

#include <memory>

#include "oci/mariadb/Description.h"
#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

// The columns of a prepared statement. Round trips: none, or one when the declared types of a table are not
// known yet. REQUIRES a CallScope.
std::shared_ptr<const Description> Describe(PreparedStatement& statement, std::string_view oracle_text);

}  // namespace ocimaria

// SPDX-License-Identifier: Apache-2.0
// Descriptions of queries, by all that they are made from: the server, the text, what the server has just
// said of the columns, and the declared types (TypeCache), with which they are forgotten. So a description
// comes from here only where it would be made the same. Any thread.
#pragma once

#include <memory>
#include <string_view>

#include "oci/mariadb/Description.h"
#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

// The columns of a prepared statement, as Describe gives them. Round trips: as there. REQUIRES a CallScope.
std::shared_ptr<const Description> DescribeOrRecall(PreparedStatement& statement,
                                                    std::string_view oracle_text);

}  // namespace ocimaria

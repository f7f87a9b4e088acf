// SPDX-License-Identifier: Apache-2.0
// What only stands in a block: the texts of EXECUTE IMMEDIATE, which are statements of their own, and the
// types of declared variables.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

using RewriteNested = std::function<std::string(std::string_view)>;

// `rewrite` does the texts that EXECUTE IMMEDIATE names as literals.
void RewriteBlock(PieceList& pieces, const RewriteNested& rewrite);

}  // namespace ocimaria::sql

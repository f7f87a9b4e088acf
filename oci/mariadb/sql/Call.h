// SPDX-License-Identifier: Apache-2.0
// A function call among the pieces of a statement: where its name, parentheses and arguments stand.
#pragma once

#include <cstddef>
#include <vector>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

struct Range {
  std::size_t begin, end;  // end is behind the last
  std::size_t Size() const { return end - begin; }
};

struct Call {
  std::size_t name, open, close;
  std::vector<Range> arguments;
};

// A word before a "(" that is no part of a longer name.
bool IsCallOf(const PieceList& pieces, std::size_t i);

// REQUIRES: IsCallOf(pieces, name). Throws ORA-00907 when the parenthesis is never closed, ORA-00936 for an
// empty argument between commas.
Call ParseCall(const PieceList& pieces, std::size_t name);

// The parts between the commas from `open` to `close`, commas of inner parentheses aside; none when it is
// empty.
std::vector<Range> SplitAtCommas(const PieceList& pieces, std::size_t open, std::size_t close);

}  // namespace ocimaria::sql

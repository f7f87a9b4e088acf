// SPDX-License-Identifier: Apache-2.0
// Options of Oracle's storage that change nothing in what a table or an index means: they are left out.
// Likewise the states of a constraint that say what holds here anyhow.
#pragma once

#include <cstddef>

#include "oci/mariadb/sql/PieceList.h"

namespace ocimaria::sql {

// Behind the storage option that begins at `i`; `i` itself when none does.
std::size_t SkipStorageOption(const PieceList& pieces, std::size_t i);

// Behind the constraint state that begins at `i` (ENABLE, VALIDATE, USING INDEX …, NOT DEFERRABLE …); `i`
// itself when none does. Throws ORA-03001 for a state that cannot be had: DISABLE, DEFERRABLE, INITIALLY
// DEFERRED.
std::size_t SkipConstraintState(const PieceList& pieces, std::size_t i, std::size_t end);

// Removes all constraint states between the two places.
void RemoveConstraintStates(PieceList& pieces, std::size_t begin, std::size_t end);

}  // namespace ocimaria::sql

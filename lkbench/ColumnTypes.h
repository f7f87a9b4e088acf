// SPDX-License-Identifier: Apache-2.0
// Which column types a replication table may have: those that the loader binds and fills. Texts whose
// length counts characters are not among them: a describe gives their bytes, and the loader makes that many
// letters. Pure functions.
#pragma once

#include <string>

namespace lkbench {

// Why a type text cannot be used, naming what would be right; empty when it can.
std::string ColumnTypeProblem(const std::string& type);

}  // namespace lkbench

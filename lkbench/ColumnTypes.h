// SPDX-License-Identifier: Apache-2.0
// Which column types a replication table may have: those that the loader binds and fills. Pure functions.
#pragma once

#include <string>

namespace lkbench {

// Why a type text cannot be used, naming what would be right; empty when it can.
std::string ColumnTypeProblem(const std::string& type);

}  // namespace lkbench

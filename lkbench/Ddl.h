// SPDX-License-Identifier: Apache-2.0
// The statements that `lkbench create` executes for a job, taken down without a database: the plug-in's own
// transactions run over an OCI library that records. Throws a Failure.
#pragma once

#include <string>
#include <vector>

#include "lkbench/Bench.h"

namespace lkbench {

std::vector<std::string> CreationStatements(const Job& job, Console& console, ErrorLog& log);

// The same as a script for a client program: a statement a line, blocks ended by a line with a slash.
std::string DdlScript(const std::vector<std::string>& statements);

// The part of `create` that both have in common: the tables, and in a new schema all that belongs to them.
void MakeObjects(Bench& bench, bool is_new);

}  // namespace lkbench

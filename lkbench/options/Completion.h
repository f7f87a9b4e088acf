// SPDX-License-Identifier: Apache-2.0
// Completion for shells, made from the tables of verbs and flags. Pure functions.
#pragma once

#include <string>

namespace lkbench {

std::string BashCompletion();
std::string ZshCompletion();

}  // namespace lkbench

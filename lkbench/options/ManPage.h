// SPDX-License-Identifier: Apache-2.0
// The manual pages as roff, made from the tables of verbs and keys. Pure functions.
#pragma once

#include <string>

namespace lkbench {

std::string ProgramPage();  // lkbench(1)
std::string JobPage();      // lkbench-job(5)

}  // namespace lkbench

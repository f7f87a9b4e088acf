// SPDX-License-Identifier: Apache-2.0
// The texts of `lkbench help`, made from the tables of verbs and flags. Pure functions; lines have at most
// 100 columns and end with a line end.
#pragma once

#include <span>
#include <string>

#include "lkbench/options/Verbs.h"

namespace lkbench {

std::string GeneralHelp();                   // verbs, exit codes, where settings come from
std::string VerbHelp(const VerbInfo& verb);  // its flags by section, and examples

// What help and manual page have in common.
struct ExitStatus {
  int code;
  std::string meaning;
};
std::span<const ExitStatus> ExitStatuses();
std::string ProgramDescription();
std::string SettingsText();  // where a setting may be made

}  // namespace lkbench

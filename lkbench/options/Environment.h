// SPDX-License-Identifier: Apache-2.0
// Settings from the environment: LKBENCH_USERS=8 is the key users. A variable that is set to nothing counts
// as not set; a repeated key's values are divided by semicolons. Reading is on the calling thread, which must
// be the only one that changes the environment.
#pragma once

#include <string>
#include <vector>

#include "lkbench/options/Key.h"

namespace lkbench {

struct Variable {
  std::string name;
  std::string value;
};

std::vector<Variable> LkbenchVariables();  // those that begin with LKBENCH_ and hold something

JobValue ValueOfVariable(const KeyText& key, const Variable& variable);

// Throws UsageError for the first that is no key's variable. The variable that a password is taken from
// (env:NAME) may have any name.
void RefuseUnknownVariables(const std::vector<Variable>& variables, const std::string& password_source);

}  // namespace lkbench

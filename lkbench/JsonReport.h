// SPDX-License-Identifier: Apache-2.0
// The results of an invocation as JSON: a versioned schema, times as whole nanoseconds.
#pragma once

#include <string>

#include "lkbench/Bench.h"

namespace lkbench {

std::string JsonText(const Bench& bench, const std::string& verb, const std::string& target, int exit_code);
void WriteJson(const std::string& file,
               const std::string& text);  // throws UsageError when it cannot be written

}  // namespace lkbench

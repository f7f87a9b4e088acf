// SPDX-License-Identifier: Apache-2.0
// What lkbench can tell about itself: the texts of the verbs list and check.
#pragma once

#include <string>

#include "db/SSBenchmark.h"
#include "lkbench/Layers.h"
#include "lkbench/ServerSettings.h"
#include "lkbench/Users.h"

namespace lkbench {

// One line per transaction: order, class, name, id, kind.
std::string ListText(const CSSBenchmark& benchmark);

std::string CheckText(const Layers& layers, const CSSBenchmark& benchmark, const std::string& target,
                      VirtualUser& user, const std::optional<ServerSettings>& settings);

}  // namespace lkbench

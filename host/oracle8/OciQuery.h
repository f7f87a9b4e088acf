// SPDX-License-Identifier: Apache-2.0
// Runs a query and reads all of its rows as text.
#pragma once

#include <vector>

#include "core/LKString.h"

namespace oracle8 {

class OciSession;

// Every row's columns; NULL is the empty string. Throws OciFailure, also for a value that is longer than
// the buffer that its column's description asks for: a cut value is never returned.
std::vector<std::vector<LKString>> ReadRows(const OciSession& session, const LKString& sql);

}  // namespace oracle8

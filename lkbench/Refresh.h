// SPDX-License-Identifier: Apache-2.0
// Cutting tables back to a number of rows by the refresh transaction, dealt out among the users.
#pragma once

#include <map>
#include <string>

#include "lkbench/Bench.h"

namespace lkbench {

enum class Copies { kTables, kBackups };

// Removes every row above the scale that `scales` gives for a table number. Backups that do not exist are
// left out. Throws when a step fails, as a failure of `verb`, or the run is interrupted. `highest` is the
// most that any table may hold, for the progress in per cent.
void CutBack(Bench& bench, const std::string& verb, const std::map<int, double>& scales, Copies copies,
             double highest);

// Rewrites the properties and makes the sequence anew, so that its next number lies just above `scale`.
void ResetSequence(Bench& bench, double scale);
void ResetProperties(Bench& bench, double scale);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The objects that --format json puts on standard output, as docs/stream.md describes them. What is also in
// run.json has its names from there. Pure functions.
#pragma once

#include "lkbench/display/ProgressText.h"
#include "lkbench/results/RunFile.h"
#include "lkbench/workload/Progress.h"

namespace lkbench {

inline constexpr int kStreamSchemaVersion = 1;

// What is known before the work: verb, start, target and seeds.
Json BeginObject(const RunFacts& facts);
Json LoadObject(const LoadState& load);
Json TablesObject(const TablesState& state);
Json IntervalObject(const Progress& progress);
Json PhaseObject(const PhaseRecord& phase);
Json EventObject(const Event& event);
Json ErrorObject(const ErrorRecord& error);
Json ProblemObject(const std::string& text);
// `run` is the whole of run.json; `folder` (may be empty) is where it was written.
Json EndObject(const Json& run, const std::string& folder);
// The end of an invocation that failed before it had any of that.
Json EndObject(int exit_code, const std::string& failure);

// One line without its end.
std::string LineOf(const Json& object);

}  // namespace lkbench

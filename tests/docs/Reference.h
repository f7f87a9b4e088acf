// SPDX-License-Identifier: Apache-2.0
// The pages of docs/reference that are made from the program's own tables, as its help and manual pages are.
// Pure functions; the texts are Markdown.
#pragma once

#include <string>

namespace lkbench {

std::string VerbReference();      // lkbench.md: verbs, flags, exit codes
std::string JobReference();       // job.md: the keys of a job file
std::string SeriesColumnNames();  // of series.csv, one a line

}  // namespace lkbench

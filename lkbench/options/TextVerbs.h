// SPDX-License-Identifier: Apache-2.0
// The bits of those verbs that touch no database.
#pragma once

#include "lkbench/options/Verbs.h"

namespace lkbench {

inline constexpr Verbs kInitVerb = 512, kDdlVerb = 1024, kCompletionVerb = 2048, kManVerb = 4096,
                       kReportVerb = 8192, kCompareVerb = 16384;
// All that read a job, those with a database included.
inline constexpr Verbs kJobVerbs = kPluginVerbs | kDdlVerb;

}  // namespace lkbench

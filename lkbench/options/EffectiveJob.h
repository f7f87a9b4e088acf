// SPDX-License-Identifier: Apache-2.0
// A job as a job file that means the same: `lkbench run -c` with it repeats the run, from any folder. Every
// key that is set or has a default stands there with the place where it was set. A password never does, only
// where it comes from. Pure functions but for the current folder, against which file names are made absolute.
#pragma once

#include <string>

#include "lkbench/Job.h"

namespace lkbench {

std::string EffectiveJobText(const Job& given);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// A histogram as text in the form that plotters of percentile spectra read (.hgrm files): a line for each
// step of the percentiles, the steps halving with the distance to 100 %. Values are in milliseconds, as
// exact as the histogram. A pure function.
#pragma once

#include <string>

#include "lkbench/Histogram.h"

namespace lkbench {

std::string PercentileSpectrum(const HistogramData& times);

}  // namespace lkbench

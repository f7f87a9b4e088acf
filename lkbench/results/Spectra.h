// SPDX-License-Identifier: Apache-2.0
// The percentile spectra of a run as files that plotters read (.hgrm): for each phase and transaction, and
// for all transactions together, the response times of what was measured. With a rate, which makes them
// differ, the service times too. A pure function.
#pragma once

#include <string>
#include <vector>

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

struct SpectrumFile {
  std::string name;  // "1-base.insert-transaction.response.hgrm"
  std::string text;
};

// Names begin with the number of the phase and differ from each other. Where nothing succeeded there is no
// file.
std::vector<SpectrumFile> SpectrumFiles(const RunRecord& record);

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// Cuts the growing numbers of a phase into intervals: each is what came after the one before. One thread.
#pragma once

#include <vector>

#include "lkbench/workload/PhaseStats.h"

namespace lkbench {

class IntervalCutter {
 public:
  // `like` is an interval with its times, users, backlog and phase filled in. Gives one of the measured part,
  // or of the warm-up, or both where both have grown.
  std::vector<Interval> Cut(const PhaseStats& stats, const Interval& like, bool in_warm_up);
  void BeginPhase();  // its numbers start at 0
  // The phase so far, without its tables.
  const Part& SoFar(bool of_warm_up) const { return of_warm_up ? m_warm_up : m_measured; }

 private:
  void CutPart(Part now, Part& before, const Interval& like, bool always, std::vector<Interval>& intervals);

  Part m_warm_up;  // as cut last
  Part m_measured;
};

}  // namespace lkbench

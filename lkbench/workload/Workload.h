// SPDX-License-Identifier: Apache-2.0
// The measured part: the phases of a job, one after the other, over one set of users. All users begin a phase
// together, draw transactions by weight and repeat them at the phase's pace until its time is over or its
// count is reached. The deadline is absolute: a call that still runs some time after it is broken off, and a
// user whose call does not come back even then is given up. The same holds for a call that takes longer than
// any may, at work or while a user is prepared, and after a cancel.
//
// The object belongs to the thread that made it; Run starts one thread a user. When users were given up,
// their threads still use the object and what it was made from: it must live until the process ends (its
// destructor waits for them).
#pragma once

#include <memory>
#include <vector>

#include "lkbench/Patience.h"
#include "lkbench/Threads.h"
#include "lkbench/workload/Conductor.h"
#include "lkbench/workload/IntervalCutter.h"
#include "lkbench/workload/Progress.h"
#include "lkbench/workload/UserWork.h"

namespace lkbench {

// What the process had computed when a phase began and when its warm-up ended.
struct ProcessorMarks {
  std::uint64_t begin = 0;  // ns
  std::uint64_t warm_up_end = 0;
};

class Workload {
 public:
  // `users` outlive the object; each has the same transactions in the same order, with a weight for each
  // phase. No phase asks for more users than there are.
  Workload(std::vector<WorkloadUser>& users, std::vector<Phase> phases, RunContext& context,
           Patience patience = {});

  // Runs all phases, or until cancelled. `tick` is called on this thread about once a second and at the end
  // of each part, `phase_end` with each phase's whole record. Throws PrepareError when a user's PreBenchmark
  // fails, or its call does not come back: then nothing has been measured.
  RunRecord Run(const Tick& tick, const PhaseEnd& phase_end = {});
  bool HasGivenUp() const { return m_record.given_up_users > 0; }  // after Run, however it ended

 private:
  void RunUser(int index);
  void RunPhase(size_t number, TimePoint begin, const Tick& tick);
  void Conduct(RunningPhase& phase, const Tick& tick);
  TimePoint NextCut(const PhaseRun& run) const;
  void Cut(RunningPhase& phase, TimePoint now, const Tick& tick);
  std::string Prepare();
  void Enforce(const std::vector<int>& users, TimePoint deadline);
  void EnforceEnd(const std::vector<int>& users, TimePoint limit, TimePoint now);
  void EnforceCall(int index, TimePoint now);
  TimePoint LimitOf(TimePoint deadline, TimePoint now);
  void GiveUp(int index);
  void Close(RunningPhase& phase);
  void WaitForThreads();
  RunRecord Finished(TimePoint origin);

  std::vector<WorkloadUser>& m_users;
  std::vector<Phase> m_phases;
  RunContext& m_context;
  Patience m_patience;
  std::vector<XactTotals> m_names;
  std::vector<std::unique_ptr<UserWork>> m_works;
  Conductor m_conductor;
  IntervalCutter m_cutter;
  RunRecord m_record;
  TimePoint m_last_cut{};
  ProcessorMarks m_processor;
  TimePoint m_cancelled{};                 // when the cancel was noticed
  TimePoint m_broken{};                    // when calls were broken off last
  std::vector<TimePoint> m_calls_broken;   // of each user, for taking too long
  std::unique_ptr<UserThreads> m_threads;  // after what they use
};

}  // namespace lkbench

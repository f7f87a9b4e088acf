// SPDX-License-Identifier: Apache-2.0
// Where the users of a workload meet: all begin a phase together, the next one begins when all have ended it.
// The users' threads call the first group of operations, the one thread that conducts them the second.
// Nobody is waited for that left, or that was given up.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "lkbench/workload/RunningPhase.h"

namespace lkbench {

class Conductor {
 public:
  explicit Conductor(int users);

  // The user is prepared; `failure` (else empty) says why there will be no work.
  void Prepared(int index, const std::string& failure);
  // The last so many users will never be.
  void Miss(int users, const std::string& failure);
  // Blocks until phase `number` begins. Null: there is none, or not for this user.
  std::shared_ptr<RunningPhase> WaitForPhase(int index, size_t number);
  void EndPhase(int index);
  // For good; also called for a user that is given up. One that was not prepared yet leaves `failure`.
  void Leave(int index, const std::string& failure = {});

  // Whether all are prepared, or never will be; waits for that until the moment.
  bool WaitUntilPrepared(TimePoint moment);
  std::vector<int> Unprepared() const;
  std::string Failure() const;  // the first one; empty when all are prepared
  void Begin(std::shared_ptr<RunningPhase> phase);
  // Whether all have ended the phase; waits for that until the moment.
  bool WaitForUsers(TimePoint moment);
  std::vector<int> AtWork() const;
  bool HasUsers() const;
  // Whether all have left; waits for that until the moment.
  bool WaitUntilLeft(TimePoint moment);
  std::vector<int> Users() const;  // that have not
  TimePoint LastEnd() const;       // when the last user ended the phase, or was given up
  void Finish();                   // no phase follows

 private:
  void End(int index);
  void EndPreparation(int index, const std::string& failure);

  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  std::set<int> m_unprepared;
  std::string m_failure;
  std::set<int> m_users;    // that have not left
  std::set<int> m_at_work;  // in the phase
  std::shared_ptr<RunningPhase> m_phase;
  bool m_is_over = false;
  TimePoint m_last_end{};
};

}  // namespace lkbench

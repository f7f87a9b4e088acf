// SPDX-License-Identifier: Apache-2.0
// The numbers of one running phase: those of its users, and the sum of what they did in the warm-up. Each
// user's thread writes its own numbers, and says when it has ended its warm-up; one thread reads at any time.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "lkbench/workload/UserStats.h"

namespace lkbench {

class PhaseStats {
 public:
  // `names` has a transaction in each place, with its name and without numbers.
  PhaseStats(const std::vector<XactTotals>& names, const Phase& phase);

  // For the thread of the user at `index`.
  XactStats& Of(int index, size_t xact) { return *m_users[static_cast<size_t>(index)].xacts[xact]; }
  void EndWarmUp(int index);  // what it records from now on is measured

  Part WarmUp() const;
  Part Measured() const;
  std::vector<std::uint64_t> UserExecutions() const;  // measured ones

 private:
  struct User {
    std::vector<std::unique_ptr<XactStats>> xacts;
    bool warms_up = false;
  };
  Part Sum(bool of_warm_up) const;
  void AddUser(Part& part, const User& user) const;

  mutable std::mutex m_mutex;
  std::vector<User> m_users;
  Part m_nothing;
  Part m_warm_up;  // of the users that have ended theirs
};

}  // namespace lkbench

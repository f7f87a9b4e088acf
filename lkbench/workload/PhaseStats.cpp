// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/PhaseStats.h"

#include <numeric>

namespace lkbench {

PhaseStats::PhaseStats(const std::vector<XactTotals>& names, const Phase& phase)
    : m_users(static_cast<size_t>(phase.users)) {
  for (User& user : m_users) {
    user.warms_up = phase.warm_up.count() > 0;
    for (size_t i = 0; i < names.size(); ++i)
      user.xacts.push_back(std::make_unique<XactStats>(phase.rate > 0));
  }
  m_nothing.xacts = names;
  m_nothing.total.name = "total";
  m_warm_up = m_nothing;
}

void PhaseStats::EndWarmUp(int index) {
  const std::lock_guard lock(m_mutex);
  User& user = m_users[static_cast<size_t>(index)];
  if (!user.warms_up) return;
  AddUser(m_warm_up, user);
  for (const auto& xact : user.xacts) xact->Clear();
  user.warms_up = false;
}

void PhaseStats::AddUser(Part& part, const User& user) const {
  for (size_t i = 0; i < user.xacts.size(); ++i) user.xacts[i]->AddTo(part.xacts[i]);
}

Part PhaseStats::WarmUp() const { return Sum(true); }

Part PhaseStats::Measured() const { return Sum(false); }

Part PhaseStats::Sum(bool of_warm_up) const {
  const std::lock_guard lock(m_mutex);
  Part part = of_warm_up ? m_warm_up : m_nothing;
  for (const User& user : m_users)
    if (user.warms_up == of_warm_up) AddUser(part, user);
  for (const XactTotals& xact : part.xacts) part.total.Add(xact);
  return part;
}

std::vector<std::uint64_t> PhaseStats::UserExecutions() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::uint64_t> counts;
  for (const User& user : m_users) {
    Part part = m_nothing;
    if (!user.warms_up) AddUser(part, user);
    counts.push_back(std::transform_reduce(part.xacts.begin(), part.xacts.end(), std::uint64_t{0},
                                           std::plus(),
                                           [](const XactTotals& xact) { return xact.executions; }));
  }
  return counts;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// A workload of three users over fake sessions, with transactions that the test writes.
#pragma once

#include <gmock/gmock.h>

#include <thread>

#include "Fakes.h"
#include "lkbench/workload/Workload.h"

namespace lkbench {

using namespace std::chrono_literals;

class WorkloadTest : public testing::Test {
 protected:
  static constexpr int kUsers = 3;

  void Add(int user, std::vector<int> weights, const std::function<int(FakeXact&)>& body,
           const wchar_t* name = L"Fake") {
    auto xact = std::make_unique<FakeXact>(m_users.Happened());
    FakeXact* made = xact.get();
    made->SetName(name);
    made->m_Execute = [made, body] { return body(*made); };
    auto share = std::make_unique<WorkloadShare>();
    share->xact = std::move(xact);
    share->weights = std::move(weights);
    m_work[static_cast<size_t>(user)].shares.push_back(std::move(share));
    m_xacts.push_back(made);
  }
  void AddToAll(std::vector<int> weights, const std::function<int(FakeXact&)>& body,
                const wchar_t* name = L"Fake") {
    for (int user = 0; user < kUsers; ++user) Add(user, weights, body, name);
  }
  // One phase of all users, long enough to be ended by something else.
  Phase Long() const {
    Phase phase;
    phase.users = static_cast<int>(m_work.size());
    phase.duration = 10min;
    return phase;
  }
  RunRecord Run(std::vector<Phase> phases, Patience patience = {}) {
    m_workload = std::make_unique<Workload>(m_work, std::move(phases), m_context, patience);
    return m_workload->Run([this](const Progress& progress) { m_ticks.push_back(progress.interval); });
  }
  RunRecord Run() { return Run({Long()}); }
  // A body that cancels the run once it has been called `count` times by all users together.
  std::function<int(FakeXact&)> Until(int count, const std::function<int(FakeXact&)>& body) {
    return [this, count, body](FakeXact& xact) {
      if (++m_calls >= count) m_cancel.Set();
      return body(xact);
    };
  }

  FakeUsers m_users{kUsers};
  CancelSwitch m_cancel;
  CallBreaker m_breaker;
  RunContext m_context{m_cancel, m_breaker, 1, {}};
  std::vector<WorkloadUser> m_work = [this] {
    std::vector<WorkloadUser> work;
    for (int i = 0; i < kUsers; ++i) work.push_back({&m_users[i], {}});
    return work;
  }();
  std::vector<FakeXact*> m_xacts;
  std::atomic<int> m_calls{0};
  std::vector<Interval> m_ticks;
  std::unique_ptr<Workload> m_workload;  // ends before what it uses
};

inline int OneRow(FakeXact& xact) {
  xact.Timer().SetStartTime();
  xact.Timer().SetResponseTime();
  xact.Timer().SetEndTime(1, 0);
  return 1;
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
// The figures of a run as Prometheus collects them. The verb's thread sets them about once a second; any
// thread may collect at the same time, and sees them as of the last interval: it touches nothing that a user
// touches. Memory: some hundred bytes for each phase and transaction, however long the run.
#pragma once

#include <prometheus/collectable.h>
#include <prometheus/metric_family.h>

#include <array>
#include <map>
#include <mutex>

#include "lkbench/display/RunView.h"

namespace lkbench {

inline constexpr std::array kResponseBounds = {0.0001, 0.00025, 0.0005, 0.001, 0.0025, 0.005,
                                               0.01,   0.025,   0.05,   0.1,   0.25,   0.5,
                                               1.0,    2.5,     5.0,    10.0,  30.0,   60.0};

class RunFigures final : public prometheus::Collectable {
 public:
  using Labels = std::vector<prometheus::ClientMetric::Label>;

  explicit RunFigures(Labels run) : m_run(std::move(run)) {}  // what tells this run from others

  void Set(const LoadState& load);
  void Set(const Progress& progress);
  void EndPhase();  // nobody is at work

  std::vector<prometheus::MetricFamily> Collect() const override;

 private:
  struct Xact {
    std::string name;
    Tally tally;
    std::uint64_t count = 0;  // of response times
    std::uint64_t sum = 0;    // ns
    std::array<std::uint64_t, kResponseBounds.size()> at_most{};
  };
  struct Place {  // the labels of a phase's part
    std::string phase;
    bool warm_up = false;
    auto operator<=>(const Place&) const = default;  // NOLINT(modernize-use-nullptr): there is no pointer
  };
  static Xact Condensed(const XactTotals& totals);
  static Labels LabelsOf(const Place& place, const Xact& xact);
  void AddExecutions(std::vector<prometheus::MetricFamily>& families) const;
  void AddState(std::vector<prometheus::MetricFamily>& families) const;

  mutable std::mutex m_mutex;
  Labels m_run;
  std::map<Place, std::vector<Xact>> m_xacts;
  LoadState m_load;
  bool m_is_at_work = false;
  Place m_current;
  int m_users = 0;
  std::uint64_t m_backlog = 0;
};

}  // namespace lkbench

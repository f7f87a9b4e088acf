// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/PhaseCheck.h"

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/TomlText.h"

namespace lkbench {
namespace {

// One phase, with the places that messages begin with.
class PhaseCheck {
 public:
  PhaseCheck(const Job& job, const Phase& phase, const std::string& place)
      : m_job(job), m_phase(phase), m_place(place) {}

  void End() const {
    if (m_phase.duration.count() > 0 || m_phase.count > 0) return;
    Refuse({"duration", "count"}, Name() + " has neither a duration nor a count: it would never end");
  }
  void WarmUp() const {
    if (m_phase.duration.count() == 0 || m_phase.warm_up < m_phase.duration) return;
    Refuse({"warm_up", "duration"}, "the warm-up of " + Name() + " is " + DurationText(m_phase.warm_up) +
                                        " but it is measured for " + DurationText(m_phase.duration) +
                                        ": the duration, which comes after it, must be longer");
  }
  void Ramp() const {
    const Phase::Time whole = m_phase.warm_up + m_phase.duration;
    if (m_phase.duration.count() == 0 || m_phase.ramp < whole) return;
    Refuse({"ramp", "count", "duration"}, "the ramp of " + Name() + " is " + DurationText(m_phase.ramp) +
                                              " but it ends after " + DurationText(whole) +
                                              ": not all users would start");
  }
  void Arrivals() const {
    if (m_phase.arrival != Arrival::kPoisson || m_phase.rate > 0) return;
    Refuse({"arrival"}, "the arrival of " + Name() + " is poisson but it has no rate: give it one, as 100");
  }
  void Pace() const {
    const double seconds = std::chrono::duration<double>(m_phase.think_min).count();
    if (m_phase.rate * seconds <= m_phase.users) return;
    Refuse({"rate", "think", "users"},
           "the rate of " + Name() + " is " + Short(m_phase.rate) + " per s but each of its " +
               Plural(static_cast<std::uint64_t>(m_phase.users), "user") + " pauses for at least " +
               DurationText(m_phase.think_min) + ": more users, a shorter think or a lower rate is needed");
  }

 private:
  std::string Name() const { return Excerpt(m_phase.name); }
  // `keys`: whose places a job without phases may name.
  [[noreturn]] void Refuse(const std::vector<std::string>& keys, const std::string& text) const {
    std::string place = m_place;
    for (const std::string& key : keys)
      if (place.empty() && m_job.origins.contains(key)) place = OriginOf(m_job, key);
    throw UsageError((place.empty() ? "job" : place) + ": " + text);
  }

  const Job& m_job;
  const Phase& m_phase;
  std::string m_place;  // empty: that of a key
};

void CheckNames(const Job& job, const std::vector<Phase>& phases) {
  for (size_t i = 0; i < phases.size(); ++i)
    for (size_t earlier = 0; earlier < i; ++earlier)
      if (phases[i].name == phases[earlier].name)
        throw UsageError(job.phases[i].place + ": two phases are called " + Excerpt(phases[i].name) +
                         ", the other at " + job.phases[earlier].place + ": each needs a name of its own");
}

}  // namespace

void CheckPhases(const Job& job, const std::vector<Phase>& phases) {
  for (size_t i = 0; i < phases.size(); ++i) {
    const PhaseCheck check(job, phases[i], job.phases.empty() ? "" : job.phases[i].place);
    check.End();
    check.WarmUp();
    check.Ramp();
    check.Arrivals();
    check.Pace();
  }
  CheckNames(job, phases);
  const bool has_rate = std::ranges::any_of(phases, [](const Phase& phase) { return phase.rate > 0; });
  if (job.arrival == Arrival::kPoisson && !has_rate)
    throw UsageError(OriginOf(job, "arrival") +
                     ": arrival is poisson but no phase has a rate: give one a rate");
}

}  // namespace lkbench

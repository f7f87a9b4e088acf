// SPDX-License-Identifier: Apache-2.0
#include "lkbench/metrics/RunFigures.h"

namespace lkbench {
namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;

double Seconds(std::uint64_t nanoseconds) { return static_cast<double>(nanoseconds) / 1e9; }

ClientMetric Counted(const RunFigures::Labels& labels, std::uint64_t value) {
  ClientMetric metric;
  metric.label = labels;
  metric.counter.value = static_cast<double>(value);
  return metric;
}

MetricFamily Gauge(const char* name, const char* help, double value, const RunFigures::Labels& labels = {}) {
  ClientMetric metric;
  metric.label = labels;
  metric.gauge.value = value;
  return {name, help, MetricType::Gauge, {metric}};
}

const char* PartName(bool warm_up) { return warm_up ? "warm_up" : "measured"; }

}  // namespace

void RunFigures::Set(const LoadState& load) {
  const std::lock_guard lock(m_mutex);
  m_load = load;
}

void RunFigures::Set(const Progress& progress) {
  std::vector<Xact> xacts;
  for (const XactTotals& totals : progress.part.xacts) xacts.push_back(Condensed(totals));
  const std::lock_guard lock(m_mutex);
  m_is_at_work = true;
  m_current = {progress.phase.settings.name, progress.interval.warm_up};
  m_users = progress.interval.users;
  m_backlog = progress.interval.backlog;
  m_xacts[m_current] = std::move(xacts);
}

void RunFigures::EndPhase() {
  const std::lock_guard lock(m_mutex);
  m_is_at_work = false;
  m_users = 0;
  m_backlog = 0;
}

RunFigures::Xact RunFigures::Condensed(const XactTotals& totals) {
  Xact xact{totals.name, static_cast<const Tally&>(totals), totals.response.Count(), totals.response.Sum()};
  for (std::size_t bucket = 0; bucket < histogram::kBuckets; ++bucket)
    for (std::size_t i = 0; i < kResponseBounds.size(); ++i)
      if (Seconds(histogram::MiddleOf(bucket)) <= kResponseBounds[i])
        xact.at_most[i] += totals.response.CountOf(bucket);
  return xact;
}

RunFigures::Labels RunFigures::LabelsOf(const Place& place, const Xact& xact) {
  return {{"phase", place.phase}, {"part", PartName(place.warm_up)}, {"transaction", xact.name}};
}

void RunFigures::AddExecutions(std::vector<MetricFamily>& families) const {
  MetricFamily executions{
      "lkbench_executions_total", "Executions, failures included.", MetricType::Counter, {}};
  MetricFamily failures{
      "lkbench_failures_total", "Executions that failed, by class.", MetricType::Counter, {}};
  MetricFamily rows{"lkbench_rows_total", "Rows inserted, updated or deleted.", MetricType::Counter, {}};
  MetricFamily response{
      "lkbench_response_seconds", "Response times of executions that succeeded.", MetricType::Histogram, {}};
  for (const auto& [place, xacts] : m_xacts) {
    for (const Xact& xact : xacts) {
      const Labels labels = LabelsOf(place, xact);
      executions.metric.push_back(Counted(labels, xact.tally.executions));
      rows.metric.push_back(Counted(labels, xact.tally.rows));
      for (std::size_t number = 0; number < kErrorClasses; ++number) {
        if (xact.tally.errors[number] == 0) continue;
        failures.metric.push_back(Counted(labels, xact.tally.errors[number]));
        failures.metric.back().label.push_back({"class", NameOf(static_cast<ErrorClass>(number))});
      }
      ClientMetric& times = response.metric.emplace_back();
      times.label = labels;
      times.histogram = {xact.count, Seconds(xact.sum), {}};
      for (std::size_t i = 0; i < kResponseBounds.size(); ++i)
        times.histogram.bucket.push_back({xact.at_most[i], kResponseBounds[i]});
    }
  }
  for (MetricFamily* family : {&executions, &failures, &rows, &response})
    families.push_back(std::move(*family));
}

void RunFigures::AddState(std::vector<MetricFamily>& families) const {
  families.push_back(Gauge("lkbench_run_info", "The run.", 1, m_run));
  families.push_back(Gauge("lkbench_users", "Users at work.", m_users));
  families.push_back(Gauge("lkbench_backlog", "Executions that are due and have not begun.",
                           static_cast<double>(m_backlog)));
  families.push_back(
      Gauge("lkbench_load_rows", "Rows that the load has loaded.", static_cast<double>(m_load.rows)));
  families.push_back(Gauge("lkbench_load_rows_expected", "Rows that the load will have loaded.",
                           static_cast<double>(m_load.of)));
  if (!m_is_at_work) return;
  families.push_back(Gauge("lkbench_phase_info", "The phase that is running.", 1,
                           {{"phase", m_current.phase}, {"part", PartName(m_current.warm_up)}}));
}

std::vector<MetricFamily> RunFigures::Collect() const {
  const std::lock_guard lock(m_mutex);
  std::vector<MetricFamily> families;
  AddState(families);
  AddExecutions(families);
  return families;
}

}  // namespace lkbench

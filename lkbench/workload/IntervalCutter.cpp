// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/IntervalCutter.h"

namespace lkbench {
namespace {

// What `now` has more than `before`, which may be empty.
XactTotals Growth(const XactTotals& now, const XactTotals* before) {
  XactTotals growth = now;
  if (before == nullptr) return growth;
  growth.Subtract(*before);
  growth.response.Subtract(before->response);
  growth.service.Subtract(before->service);
  return growth;
}

XactInterval IntervalOf(const XactTotals& growth) {
  XactInterval interval;
  static_cast<Tally&>(interval) = static_cast<const Tally&>(growth);
  interval.response = DigestOf(growth.response);
  interval.service = DigestOf(growth.service);
  return interval;
}

bool HasGrown(const Part& now, const Part& before) {
  return now.total.executions != before.total.executions || now.total.undone != before.total.undone;
}

}  // namespace

void IntervalCutter::BeginPhase() {
  m_warm_up = {};
  m_measured = {};
}

std::vector<Interval> IntervalCutter::Cut(const PhaseStats& stats, const Interval& like, bool in_warm_up) {
  std::vector<Interval> intervals;
  Interval each = like;
  each.warm_up = true;
  CutPart(stats.WarmUp(), m_warm_up, each, in_warm_up, intervals);
  each.warm_up = false;
  CutPart(stats.Measured(), m_measured, each, !in_warm_up, intervals);
  return intervals;
}

void IntervalCutter::CutPart(Part now, Part& before, const Interval& like, bool always,
                             std::vector<Interval>& intervals) {
  if (!always && !HasGrown(now, before)) return;
  Interval interval = like;
  XactTotals total;
  for (size_t i = 0; i < now.xacts.size(); ++i) {
    const XactTotals growth = Growth(now.xacts[i], before.xacts.empty() ? nullptr : &before.xacts[i]);
    interval.xacts.push_back(IntervalOf(growth));
    total.Add(growth);
  }
  interval.total = IntervalOf(total);
  intervals.push_back(std::move(interval));
  now.elapsed = before.elapsed + (always ? like.end - like.begin : 0);
  before = std::move(now);
}

}  // namespace lkbench

// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/RecordJson.h"

namespace lkbench {
namespace {

Json BucketsJson(const HistogramData& times) {
  Json buckets = Json::array();
  for (std::size_t bucket = 0; bucket < histogram::kBuckets; ++bucket)
    if (times.CountOf(bucket) > 0) buckets.push_back(Json::array({bucket, times.CountOf(bucket)}));
  return buckets;
}

Json DigestJson(const TimesDigest& times) {
  return {{"count", times.count}, {"mean", times.mean}, {"p50", times.p50}, {"p95", times.p95},
          {"p99", times.p99},     {"p999", times.p999}, {"max", times.max}};
}

Json TallyJson(const Tally& tally) {
  Json errors = Json::object();
  for (std::size_t number = 0; number < kErrorClasses; ++number)
    if (tally.errors[number] > 0) errors[NameOf(static_cast<ErrorClass>(number))] = tally.errors[number];
  return {{"executions", tally.executions},
          {"failures", tally.failures},
          {"rows", tally.rows},
          {"undone", tally.undone},
          {"errors", errors}};
}

Json FiguresJson(const XactTotals& totals) {
  Json json = TallyJson(totals);
  json["response_ns"] = TimesJson(totals.response);
  json["service_ns"] = TimesJson(totals.service);
  json["database_ns"] = TimesJson(totals.database);
  return json;
}

Json XactJson(const XactTotals& totals) {
  Json json = {{"name", totals.name}, {"class", totals.class_name}, {"id", totals.id}};
  json.update(FiguresJson(totals));
  return json;
}

Json TableJson(const TableTotals& totals) {
  Json json = {{"number", totals.number}, {"name", totals.name}, {"columns", totals.columns}};
  json.update(TallyJson(totals));
  json["response_ns"] = TimesJson(totals.response);
  return json;
}

template <class List, class Function>
Json ListJson(const List& list, Function each) {
  Json json = Json::array();
  for (const auto& item : list) json.push_back(each(item));
  return json;
}

Json PartJson(const Part& part) {
  return {{"elapsed_ns", part.elapsed},
          {"processor_ns", part.processor},
          {"rate_per_s", PerSecond(part.total.executions - part.total.failures, part.elapsed)},
          {"total", FiguresJson(part.total)},
          {"transactions", ListJson(part.xacts, XactJson)},
          {"tables", ListJson(part.tables, TableJson)},
          {"column_counts", ListJson(ByColumnCount(part.tables), TableJson)}};
}

Json SettingsJson(const Phase& phase) {
  Json mix;
  for (const MixPart& part : kMixParts) mix[part.name] = phase.mix.*part.weight;
  return {{"users", phase.users},
          {"duration_ns", phase.duration.count()},
          {"count", phase.count},
          {"warm_up_ns", phase.warm_up.count()},
          {"ramp_ns", phase.ramp.count()},
          {"mix", mix},
          {"think_min_ns", phase.think_min.count()},
          {"think_max_ns", phase.think_max.count()},
          {"rate_per_s", phase.rate},
          {"arrival", phase.arrival == Arrival::kPoisson ? "poisson" : "fixed"},
          {"commit_every", phase.commit_every}};
}

Json XactIntervalJson(const XactInterval& interval) {
  Json json = TallyJson(interval);
  json["response_ns"] = DigestJson(interval.response);
  json["service_ns"] = DigestJson(interval.service);
  return json;
}

}  // namespace

Json PhaseJson(const PhaseRecord& phase) {
  const bool warmed = phase.warm_up_end > phase.begin;
  return {{"name", phase.settings.name},
          {"settings", SettingsJson(phase.settings)},
          {"begin_ns", phase.begin},
          {"warm_up_end_ns", phase.warm_up_end},
          {"end_ns", phase.end},
          {"warm_up", warmed ? PartJson(phase.warm_up) : Json()},
          {"measured", PartJson(phase.measured)},
          {"user_executions", phase.user_executions},
          {"most_backlog", phase.most_backlog},
          {"forgotten", phase.forgotten}};
}

Json IntervalJson(const Interval& interval) {
  return {{"begin_ns", interval.begin},
          {"end_ns", interval.end},
          {"phase", interval.phase},
          {"warm_up", interval.warm_up},
          {"users", interval.users},
          {"backlog", interval.backlog},
          {"total", XactIntervalJson(interval.total)},
          {"transactions", ListJson(interval.xacts, XactIntervalJson)}};
}

Json ErrorJson(const ErrorRecord& error) {
  return {{"class", NameOf(error.error_class)},
          {"code", error.code},
          {"count", error.count},
          {"first_ns", error.first},
          {"last_ns", error.last},
          {"text", error.text}};
}

Json EventJson(const Event& event) {
  return {{"kind", NameOf(event.kind)},
          {"begin_ns", event.begin},
          {"length_ns", event.length},
          {"user", event.user},
          {"text", event.text}};
}

double PerSecond(std::uint64_t count, std::uint64_t nanoseconds) {
  return nanoseconds == 0 ? 0 : static_cast<double>(count) * 1e9 / static_cast<double>(nanoseconds);
}

Json TimesJson(const HistogramData& times) {
  return {{"count", times.Count()},      {"sum", times.Sum()},
          {"mean", times.Mean()},        {"p50", times.Percentile(50)},
          {"p90", times.Percentile(90)}, {"p95", times.Percentile(95)},
          {"p99", times.Percentile(99)}, {"p999", times.Percentile(99.9)},
          {"max", times.Max()},          {"buckets", BucketsJson(times)}};
}

Json HistogramRuleJson() {
  return {{"rule", "log-linear"},
          {"unit", "ns"},
          {"sub_bits", histogram::kSubBits},
          {"most_bits", histogram::kMostBits}};
}

Json WorkloadJson(const RunRecord& record) {
  return {{"elapsed_ns", record.elapsed},
          {"users", record.users},
          {"lost_users", record.lost_users},
          {"given_up_users", record.given_up_users},
          {"phases", ListJson(record.phases, PhaseJson)},
          {"measured", PartJson(record.measured)},
          {"intervals", ListJson(record.intervals, IntervalJson)},
          {"errors", ListJson(record.errors, ErrorJson)},
          {"events", ListJson(record.events, EventJson)},
          {"more_events", record.more_events}};
}

}  // namespace lkbench

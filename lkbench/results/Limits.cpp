// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Limits.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/workload/Mix.h"

namespace lkbench {
namespace {

const std::vector<std::string> kMeasures = {"p50", "p90",  "p95",        "p99",   "p99.9",
                                            "max", "mean", "throughput", "errors"};

[[noreturn]] void Refuse(const std::string& place, const std::string& text) {
  throw UsageError((place.empty() ? "" : place + ": ") + text);
}

std::vector<std::string> Subjects() {
  std::vector<std::string> subjects = MixNames();
  subjects.insert(subjects.begin(), "total");
  return subjects;
}

bool IsKnown(const std::vector<std::string>& names, const std::string& name) {
  return std::ranges::find(names, name) != names.end();
}

// "insert.p99.9" -> insert and p99.9; "errors" -> total and errors
void SplitName(Limit& limit, const std::string& place) {
  const size_t point = limit.name.find('.');
  const bool has_subject = point != std::string::npos && !IsKnown(kMeasures, limit.name);
  limit.of = has_subject ? limit.name.substr(0, point) : "total";
  limit.what = has_subject ? limit.name.substr(point + 1) : limit.name;
  if (!IsKnown(Subjects(), limit.of))
    Refuse(place, "limit \"" + Excerpt(limit.name) + "\": it is for one of " + Join(Subjects(), ", ") +
                      DidYouMean(limit.of, Subjects()));
  if (!IsKnown(kMeasures, limit.what))
    Refuse(place, "limit \"" + Excerpt(limit.name) + "\": what is limited is one of " +
                      Join(kMeasures, ", ") + DidYouMean(limit.what, kMeasures));
}

void ReadTime(Limit& limit, const std::string& text, const std::string& place) {
  std::chrono::nanoseconds time{};
  if (!ParseDuration(text, time) || text.find_first_not_of("0123456789.") == std::string::npos)
    Refuse(place, "limit " + limit.name + " cannot be \"" + Excerpt(limit.asked) +
                      "\": a time with its unit is needed, as <20ms");
  limit.unit = LimitUnit::kNanoseconds;
  limit.bound = static_cast<double>(time.count());
}

void ReadNumber(Limit& limit, std::string text, const std::string& place) {
  const bool is_share = text.ends_with('%');
  if (is_share) text.pop_back();
  const bool takes_share = limit.what == "errors";
  if (!ParseReal(text, limit.bound) || limit.bound < 0 || (is_share && !takes_share))
    Refuse(place, "limit " + limit.name + " cannot be \"" + Excerpt(limit.asked) + "\": " +
                      (takes_share ? "a share or a number is needed, as <0.1% or <1"
                                   : "a number per second is needed, as >500"));
  limit.unit = is_share ? LimitUnit::kRatio : takes_share ? LimitUnit::kCount : LimitUnit::kPerSecond;
  if (is_share) limit.bound /= 100;
}

// A bound that nothing measured can keep.
void RequireReach(const Limit& limit, const std::string& place) {
  if (limit.below && !limit.or_equal && limit.bound == 0)
    Refuse(place, "limit " + limit.name + " cannot be \"" + Excerpt(limit.asked) + "\": nothing is below 0");
}

}  // namespace

const char* NameOf(LimitUnit unit) {
  static constexpr std::array kNames = {"ns", "ratio", "per_s", "count"};
  return kNames.at(static_cast<size_t>(unit));
}

Limit ParseLimit(const std::string& name, const std::string& asked, const std::string& place) {
  Limit limit;
  limit.name = name;
  limit.asked = asked;
  SplitName(limit, place);
  std::string text = asked;
  std::erase(text, ' ');
  if (!text.starts_with('<') && !text.starts_with('>'))
    Refuse(place, "limit " + name + " cannot be \"" + Excerpt(asked) + "\": it begins with <, <=, > or >=");
  limit.below = text.front() == '<';
  limit.or_equal = text.size() > 1 && text[1] == '=';
  text.erase(0, limit.or_equal ? 2 : 1);
  if (limit.what == "throughput" || limit.what == "errors")
    ReadNumber(limit, text, place);
  else
    ReadTime(limit, text, place);
  RequireReach(limit, place);
  return limit;
}

}  // namespace lkbench

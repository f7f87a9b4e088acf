// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/IntervalLine.h"

#include <limits>

#include "lkbench/Text.h"
#include "lkbench/display/ProgressText.h"

namespace lkbench {
namespace {

std::string Padded(const std::string& text, size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

Tone ToneOf(std::uint64_t failures) { return failures == 0 ? Tone::kPlain : Tone::kBad; }

std::vector<Piece> IntervalPieces(const Progress& progress) {
  const Interval& interval = progress.interval;
  const TimesDigest& times = interval.total.response;
  std::vector<Piece> pieces = {
      {Padded(Fixed(static_cast<double>(interval.end) / 1e9, 0), 4) + " s"},
      {Padded(
           PerSecondText(interval.total.executions - interval.total.failures, interval.end - interval.begin),
           8) +
       " tx/s"},
      {"failures " + Grouped(interval.total.failures), 0, ToneOf(interval.total.failures)},
      {"p50 " + Milliseconds(times.p50), 5},
      {"p95 " + Milliseconds(times.p95), 4},
      {"p99 " + Milliseconds(times.p99) + " ms", 2}};
  if (progress.phase.settings.rate > 0) pieces.push_back({"backlog " + Grouped(interval.backlog), 3});
  if (progress.phases > 1) pieces.push_back({progress.phase.settings.name, 6});
  if (interval.warm_up) pieces.push_back({"warm-up, not counted", 1});
  return pieces;
}

// How far the phase is: "0:12  0:48 left", or executions of a count.
void AddRemaining(const Progress& progress, std::vector<Piece>& pieces) {
  const std::uint64_t now = progress.interval.end;
  pieces.push_back({ClockText(now - progress.phase.begin), 3});
  if (progress.ends > 0)
    pieces.push_back({ClockText(progress.ends - std::min(now, progress.ends)) + " left"});
  else if (!progress.interval.warm_up)
    pieces.push_back(
        {Grouped(progress.part.total.executions) + " of " + Grouped(progress.phase.settings.count)});
}

std::vector<Piece> StatusPieces(const Progress& progress) {
  const XactTotals& total = progress.part.total;
  const std::string& name = progress.phase.settings.name;
  const std::string place =
      " " + std::to_string(progress.interval.phase + 1) + "/" + std::to_string(progress.phases);
  std::vector<Piece> pieces = {{progress.phases > 1 ? name + place : name}};
  if (progress.interval.warm_up) pieces.push_back({"warm-up"});
  AddRemaining(progress, pieces);
  pieces.push_back({Plural(static_cast<std::uint64_t>(progress.interval.users), "user"), 2});
  pieces.push_back({PerSecondText(total.executions - total.failures, progress.part.elapsed) + " tx/s"});
  pieces.push_back({"p99 " + Milliseconds(total.response.Percentile(99)) + " ms", 1});
  pieces.push_back({"failures " + Grouped(total.failures), 0, ToneOf(total.failures)});
  return pieces;
}

}  // namespace

std::string IntervalLine(const Progress& progress) {
  return TextOf(IntervalLine(progress, std::numeric_limits<std::size_t>::max()));
}

Spans IntervalLine(const Progress& progress, std::size_t columns) {
  return Fitted(IntervalPieces(progress), columns);
}

FittedLine WorkloadStatus(const Progress& progress) {
  return [pieces = StatusPieces(progress)](std::size_t columns) { return Fitted(pieces, columns); };
}

}  // namespace lkbench

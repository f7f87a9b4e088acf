// SPDX-License-Identifier: Apache-2.0
// What happened over time: throughput, response percentiles, events.

// Round marks on the time axis, about eight of them; the axis ends where the run did.
function timeSteps(seconds) {
  const size = 10 ** Math.floor(Math.log10(seconds / 8));
  const units = seconds < 480 ? [1, 2, 5, 10].map((lead) => lead * size)
    : [60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 28800, 86400];
  const step = Math.max(seconds < 8 ? 0.1 : 1, units.find((unit) => seconds / unit <= 8) || units[units.length - 1]);
  const steps = [];
  for (let number = 0; number * step <= seconds * 1.0001; ++number) steps.push(Number((number * step).toFixed(3)));
  return steps;
}

// Minutes where the run is that long: 90 -> "1:30".
function timeMark(seconds, whole) {
  if (whole < 480) return String(seconds);
  return Math.floor(seconds / 60) + ":" + String(seconds % 60).padStart(2, "0");
}

function timeAxis(work) {
  const whole = Math.max(1, work.elapsed_ns / 1e9);
  return axis(whole < 480 ? "seconds from the start" : "minutes from the start", { type: "linear", min: 0, max: whole,
    afterBuildTicks: (scale) => { scale.ticks = timeSteps(whole).map((value) => ({ value })); },
    ticks: { padding: 6, maxRotation: 0, autoSkip: true, autoSkipPadding: 12,
      callback: (value) => timeMark(value, whole) } });
}

const kTimeTooltip = {
  title: (items) => (items.length ? `at ${significant(items[0].parsed.x)} s` : ""),
  label: (item) => `${item.dataset.label}: ${significant(item.parsed.y)}`,
};

function marksOf(work) {
  const list = work.phases.filter((phase) => phase.warm_up_end_ns > phase.begin_ns).map((phase) =>
    ({ kind: "warm-up", begin: phase.begin_ns / 1e9, end: phase.warm_up_end_ns / 1e9 }));
  work.events.forEach((event, index) => list.push({ kind: event.kind, label: String(index + 1),
    begin: event.begin_ns / 1e9, end: (event.begin_ns + event.length_ns) / 1e9 }));
  return list;
}

function intervalRate(interval) {
  const length = interval.end_ns - interval.begin_ns;
  return length ? ((interval.total.executions - interval.total.failures) * 1e9) / length : 0;
}

// A second in which a warm-up ends has two intervals over the same time: for the curves they are one.
function curveIntervals(work) {
  const merged = [];
  for (const each of work.intervals) {
    const last = merged[merged.length - 1];
    if (last && last.begin_ns === each.begin_ns && last.end_ns === each.end_ns) last.all.push(each);
    else merged.push({ begin_ns: each.begin_ns, end_ns: each.end_ns, all: [each] });
  }
  return merged.filter((each) => each.end_ns > each.begin_ns);
}

function throughputChart(work) {
  const seconds = curveIntervals(work);
  const points = (count) => seconds.map((each) => ({ x: each.end_ns / 1e9,
    y: (each.all.reduce((sum, one) => sum + count(one.total), 0) * 1e9) / (each.end_ns - each.begin_ns) }));
  const series = [{ label: "succeeded per second", points: points((of) => of.executions - of.failures), fill: true }];
  if (work.measured.total.failures)
    series.push({ label: "failed per second", points: points((of) => of.failures), look: 2 });
  if (work.intervals.some((each) => each.backlog))
    series.push({ label: "backlog", look: 1, points: seconds.map((each) =>
      ({ x: each.end_ns / 1e9, y: Math.max(...each.all.map((one) => one.backlog)) })) });
  const rates = work.intervals.filter((each) => !each.warm_up && each.end_ns - each.begin_ns > 5e8).map(intervalRate);
  const says = rates.length === 0 ? "Throughput by second."
    : `Between ${perSecond(Math.min(...rates))} and ${perSecond(Math.max(...rates))} transactions per second, ` +
      `${perSecond(work.measured.rate_per_s)} over the whole.`;
  return chart("throughput", "Throughput over time", says,
    { config: lineConfig(series, { x: timeAxis(work), y: axis("per second", { beginAtZero: true }) }, kTimeTooltip,
      marksOf(work)) },
    { heads: ["until (s)", "phase", "users", "executions", "failures", "per s"], rows: () => work.intervals.map((each) =>
      [fixed(each.end_ns / 1e9, 1), work.phases[each.phase].name + (each.warm_up ? " (warm-up)" : ""), whole(each.users),
        whole(each.total.executions), whole(each.total.failures), perSecond(intervalRate(each))]) });
}

function responseChart(work) {
  const timed = work.intervals.filter((each) => each.total.response_ns.count);
  const series = ["p50", "p95", "p99"].map((key) => ({ label: key, points: timed.map((each) =>
    ({ x: each.end_ns / 1e9, y: each.total.response_ns[key] / 1e6 })) }));
  const worst = timed.reduce((most, each) => Math.max(most, each.total.response_ns.p99), 0);
  return chart("response", "Response times over time",
    `Percentiles of each second, on a logarithmic scale. The highest p99 of a second is ${time(worst)}.`,
    { config: lineConfig(series, { x: timeAxis(work), y: millisecondAxis(series) }, kTimeTooltip, marksOf(work)) },
    { heads: ["until (s)", "p50 (ms)", "p95 (ms)", "p99 (ms)", "max (ms)"], rows: () => timed.map((each) =>
      [fixed(each.end_ns / 1e9, 1), ...["p50", "p95", "p99", "max"].map((key) =>
        milliseconds(each.total.response_ns[key], 3))]) });
}

// A logarithmic axis in ms that holds all points, with marks at 1, 2 and 5 of every power of ten.
function millisecondAxis(series) {
  const values = series.flatMap((each) => each.points.map((point) => point.y)).filter((y) => y > 0);
  const low = values.length ? Math.min(...values) : 1;
  const high = values.length ? Math.max(...values) : 10;
  const steps = [];
  for (let power = Math.floor(Math.log10(low)); power <= Math.ceil(Math.log10(high)); ++power)
    for (const lead of [1, 2, 5]) steps.push(Number((lead * 10 ** power).toPrecision(1)));
  const min = steps.filter((step) => step <= low).pop();
  const max = steps.find((step) => step >= high);
  let shown = steps.filter((step) => step >= min && step <= max);
  if (shown.length > 10) shown = shown.filter((step) => /^0*\.?0*1/.test(String(step)));
  return axis("ms", { type: "logarithmic", min, max,
    afterBuildTicks: (scale) => { scale.ticks = shown.map((value) => ({ value, major: true })); },
    ticks: { padding: 6, maxRotation: 0, autoSkip: false, callback: (value) => String(value) } });
}

function eventTable(work) {
  if (work.events.length === 0) return null;
  const more = work.more_events ? `${whole(work.more_events)} more events were not kept` : null;
  return table(more, [{ text: "event", class: "text" }, "at (s)", "for", { text: "what", class: "text" }],
    work.events.map((event, index) => [`${index + 1} ${event.kind}`, fixed(event.begin_ns / 1e9, 1),
      event.length_ns ? time(event.length_ns) : "", { text: event.text, class: "text wrap" }]), { id: "events", label: "Events" });
}

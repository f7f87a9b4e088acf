// SPDX-License-Identifier: Apache-2.0
// The page of one run: its parts in the order in which people ask.

function spectrumChart(run, work) {
  const rule = run.histogram;
  const several = work.phases.length > 1;
  const series = work.phases.map((phase) => ({ label: several ? phase.name : "response",
    points: spectrum(rule, phase.measured.total.response_ns) }));
  if (!several) {
    const total = work.measured.total;
    if (!sameTimes(total.response_ns, total.service_ns))
      series.push({ label: "service", points: spectrum(rule, total.service_ns) });
    series.push({ label: "database", points: spectrum(rule, total.database_ns), look: 3 });
  }
  const drawn = series.filter((each) => each.points.length);
  const most = Math.max(10, ...drawn.flatMap((each) => each.points.map((point) => point.x)));
  const ticks = [1, 2, 10, 100, 1000, 1e4, 1e5, 1e6, 1e7, 1e8].filter((x) => x <= most);
  const x = axis("share of executions", { type: "logarithmic", min: 1, max: most,
    afterBuildTicks: (scale) => { scale.ticks = ticks.map((value) => ({ value, major: true })); },
    ticks: { padding: 6, maxRotation: 0, autoSkip: false, callback: (value) => (value === 1 ? "" : percentileName(value)) } });
  const tooltip = { title: (items) => (items.length ? percentileName(items[0].parsed.x) + " took no longer than" : ""),
    label: (item) => `${item.dataset.label}: ${significant(item.parsed.y)} ms` };
  const times = work.measured.total.response_ns;
  return chart("spectrum", "Percentile spectrum",
    `The share of executions on the x axis took no longer than the time on the y axis: half ${time(times.p50)}, ` +
      `99 % ${time(times.p99)}, all ${time(times.max)}.`,
    { config: lineConfig(drawn, { x, y: millisecondAxis(drawn) }, tooltip) },
    { heads: [{ text: several ? "phase" : "time", class: "text" }, ...kTimeHeads.map((head) => head + " (ms)")],
      rows: () => work.phases.map((phase) => [phase.name, ...timeCells(phase.measured.total.response_ns, 3)]) });
}

function fairnessPart(phase, index) {
  const counts = phase.user_executions;
  if (counts.length < 2) return null;
  const says = `Jain's index ${fixed(fairness(counts), 3)} (1 when all users did the same). ` +
    `Between ${whole(Math.min(...counts))} and ${whole(Math.max(...counts))} executions a user.`;
  return [el("h3", null, "Fairness among users"), chart("fairness-" + index, "Executions by user", says,
    { low: true, config: barConfig(counts.map((_, user) => String(user + 1)), counts, "executions",
      { x: axis("user", { grid: { display: false } }), y: axis("executions", { beginAtZero: true }) }) },
    { heads: ["user", "executions"], rows: () => counts.map((count, user) => [String(user + 1), whole(count)]) })];
}

function paceText(settings) {
  const words = [plural(settings.users, "user"),
    Object.entries(settings.mix).map(([name, weight]) => `${name} ${weight}`).join(" : ")];
  words.push(settings.rate_per_s ? `${significant(settings.rate_per_s)} executions per second, ${settings.arrival} arrivals`
    : "as fast as it goes");
  if (settings.think_max_ns) words.push(`think time ${time(settings.think_min_ns)} to ${time(settings.think_max_ns)}`);
  if (settings.commit_every > 1) words.push(`commit every ${settings.commit_every}`);
  if (settings.ramp_ns) words.push(`ramp ${duration(settings.ramp_ns)}`);
  if (settings.warm_up_ns) words.push(`warm-up ${duration(settings.warm_up_ns)}, not counted`);
  return words.join(" · ");
}

function phasePart(phase, index, several) {
  const part = phase.measured;
  const id = "phase-" + index;
  const late = phase.most_backlog ? el("p", null, `Behind schedule: up to ${plural(phase.most_backlog, "execution")} ` +
    "were due and had not begun" + (phase.forgotten ? `; ${whole(phase.forgotten)} more were dropped when the warm-up ended.`
    : ".")) : null;
  const warm = phase.warm_up && phase.warm_up.total.executions ? el("p", { class: "soft" },
    `Warm-up, not counted: ${plural(phase.warm_up.total.executions, "execution")} in ${duration(phase.warm_up.elapsed_ns)}, ` +
    `${whole(phase.warm_up.total.failures)} failed.`) : null;
  return el("section", { class: "phase", "aria-labelledby": id }, el("h2", { id },
    several ? "Phase " + phase.name : "What was done"), el("p", { class: "soft" }, paceText(phase.settings) + " · " +
    duration(part.elapsed_ns) + " measured"), several ? headline(part) : null, late, warm,
    el("h3", null, "By transaction"), transactionTable(part, "transactions-" + index),
    part.tables.length ? [el("h3", null, "By table"), tableTable(part, "tables-" + index)] : null,
    part.column_counts.length > 1 ? [el("h3", null, "By number of columns"), columnTable(part, "columns-" + index)] : null,
    part.total.failures ? [el("h3", null, "Failures"), classTable(part, "classes-" + index)] : null,
    fairnessPart(phase, index));
}

function errorPart(run) {
  const errors = run.workload ? run.workload.errors : [];
  const said = new Set(errors.map((each) => each.text));
  const problems = run.problems.filter((each) => !said.has(each.text));
  if (errors.length + problems.length === 0) return null;
  return section("Errors and warnings",
    errors.length ? table("Failures of the workload by error number, warm-up included", [{ text: "class", class: "text" },
      "number", "count", "first (s)", "last (s)", { text: "text of the first", class: "text" }],
      errors.map((each) => [each.class, each.code || "–", { text: whole(each.count), value: each.count },
        fixed(each.first_ns / 1e9, 1), fixed(each.last_ns / 1e9, 1), { text: each.text, class: "text wrap" }]),
      { id: "errors" }) : null,
    problems.length ? table("Reported", [{ text: "level", class: "text" }, "count", { text: "text", class: "text" }],
      problems.map((each) => [each.level, whole(each.count), { text: each.text, class: "text wrap" }]), { id: "problems" })
      : null);
}

function loadPart(run) {
  if (!run.load || run.load.rows === 0) return null;
  const { rows, elapsed_ns: elapsed } = run.load;
  return section("Load", tiles([["Rows loaded", whole(rows), "", rows], ["Time", ...timeParts(elapsed), elapsed],
    ["Speed", whole(elapsed ? (rows * 1e9) / elapsed : 0), "rows/s"]]));
}

function settingsPart(run) {
  const { host, plugin, oci, server } = run.environment;
  const library = (of) => [of.file, of.version].filter(Boolean).join(", ");
  return section("Environment and settings", el("div", { class: "columns" },
    el("div", null, el("h3", null, "Load machine and libraries"), pairs([["lkbench", run.lkbench.version +
      (run.lkbench.optimised ? "" : ", built without optimisation")], ["System", host.system], ["Processors", host.cpus],
      ["Memory", host.memory_bytes ? bytes(host.memory_bytes) : ""], ["Plug-in", library(plugin)], ["OCI library", library(oci)],
      ["Schema seed", run.seeds.schema], ["Run seed", run.seeds.run]]),
    el("h3", null, "Server"), pairs([["Version", server.version || "not known"],
      ...Object.entries(server.settings)])),
    el("div", null, el("h3", null, "Job"), pairs(Object.entries(run.job)))));
}

function repeatPart(run) {
  return section("Do it again", el("p", { class: "soft" }, "This command does the same once more:"),
    el("pre", { class: "once", tabindex: "0", id: "repeat" }, shell(run.repeat)),
    el("p", { class: "soft" }, "It was started as:"), el("pre", { tabindex: "0" }, shell(run.command)));
}

function overTime(run) {
  const work = run.workload;
  if (!work || work.intervals.length === 0) return null;
  return [section("Throughput over time", throughputChart(work), eventTable(work)),
    section("Response times over time", responseChart(work)),
    work.measured.total.response_ns.count ? section("Percentile spectrum", spectrumChart(run, work)) : null];
}

function reportPage(run) {
  const work = run.workload;
  document.title = `lkbench ${run.verb}, ${run.target.text}, ${moment(run.started)}`;
  document.getElementById("page").append(...[heading(run), verdict(run), work ? headline(work.measured) : null, notes(run),
    limits(run), overTime(run),
    work ? work.phases.map((phase, index) => phasePart(phase, index, work.phases.length > 1)) : null, errorPart(run),
    loadPart(run), settingsPart(run), repeatPart(run), el("footer", null,
      "Times are of executions that succeeded, commit included. docs/explanation/numbers.md explains every number. " +
      "The data of this page is run.json beside it.")].flat(Infinity).filter(Boolean));
  for (const figure of document.querySelectorAll("figure")) figure.draw();
  watchColours();
}


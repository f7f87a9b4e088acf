// SPDX-License-Identifier: Apache-2.0
// The head of the page: verdict, limits and headline numbers.

const kVerdicts = { done: "good", failures: "warn", limit: "bad", error: "bad", interrupted: "warn" };
const kVerdictWords = { done: "Passed", failures: "Ran with failures", limit: "A limit failed", error: "Failed",
  interrupted: "Interrupted" };

function heading(run) {
  const facts = [moment(run.started), duration(run.elapsed_ns) + " in all", "lkbench " + run.lkbench.version,
    run.environment.server.version && "server " + run.environment.server.version,
    run.workload && plural(run.workload.users, "user"), "seeds: schema " + run.seeds.schema + ", run " + run.seeds.run];
  return el("header", null, el("p", { class: "kicker" }, "lkbench " + run.verb), el("h1", null, run.target.text),
    el("ul", { class: "facts" }, facts.filter(Boolean).map((fact) => el("li", null, fact))));
}

function verdict(run) {
  const { result, text } = run.verdict;
  return el("div", { class: "verdict " + kVerdicts[result], id: "verdict", role: "status" },
    el("p", null, kVerdictWords[result]),
    el("p", null, text + (run.exit_code ? ` (exit code ${run.exit_code})` : "")));
}

function limitValue(limit) {
  if (limit.value === null) return "nothing measured";
  if (limit.unit === "ns") return time(limit.value);
  if (limit.unit === "ratio") return percent(limit.value);
  if (limit.unit === "per_s") return perSecond(limit.value) + "\u202f/s";
  return whole(limit.value);
}

function limits(run) {
  if (run.limits.length === 0) return null;
  return section("Limits", table(null, [{ text: "limit", class: "text" }, "asked for", "measured", "result"],
    run.limits.map((each) => [each.name, each.limit, { text: limitValue(each), value: each.value },
      { text: each.passed ? "✓ passed" : "✗ failed", class: each.passed ? "good-text" : "bad-text" }]),
    { id: "limits", label: "Limits" }));
}

function headline(part) {
  const total = part.total;
  const times = total.response_ns;
  const timeTile = (label, ns) => [label, ...(times.count ? timeParts(ns) : ["–", ""]), ns];
  return tiles([["Throughput", perSecond(part.rate_per_s), "tx/s", part.rate_per_s], timeTile("Median response", times.p50),
    timeTile("95 % within", times.p95), timeTile("99 % within", times.p99), timeTile("Slowest", times.max),
    ["Executions", whole(total.executions), "", total.executions],
    ["Failures", whole(total.failures), total.executions ? percent(total.failures / total.executions) : "", total.failures]]);
}

function notes(run) {
  return run.notes.length === 0 ? null
    : el("div", null, run.notes.map((note) => el("p", { class: "soft" }, "Note: " + note)));
}

// SPDX-License-Identifier: Apache-2.0
// The tables of a part: per transaction, per table, by number of columns, failures by class.

const kTimeHeads = ["mean", "p50", "p90", "p95", "p99", "p99.9", "max"];
const kTimeKeys = ["mean", "p50", "p90", "p95", "p99", "p999", "max"];

function timeCells(times, decimals) {
  return kTimeKeys.map((key) => ({ text: times.count ? milliseconds(times[key], decimals) : "–", value: times[key] }));
}

function countCells(of, part) {
  const rate = part.elapsed_ns ? ((of.executions - of.failures) * 1e9) / part.elapsed_ns : 0;
  return [{ text: whole(of.executions), value: of.executions }, { text: whole(of.failures), value: of.failures,
    class: of.failures ? "bad-text" : null }, { text: whole(of.rows), value: of.rows }, perSecond(rate)];
}

const kCountHeads = ["executions", "failures", "rows", "per s"];

function sameTimes(one, other) {
  return one.sum === other.sum && one.max === other.max;
}

function transactionTable(part, id) {
  const all = [...part.transactions, { ...part.total, name: "Total" }];
  const decimals = decimalsFor(all.map((each) => each.database_ns.p50));
  const rows = [];
  for (const each of all) {
    rows.push({ class: each.class === undefined ? "sum" : null,
      cells: [each.name, ...countCells(each, part), ...timeCells(each.response_ns, decimals)] });
    if (!sameTimes(each.response_ns, each.service_ns))
      rows.push({ class: "part", cells: ["service", "", "", "", "", ...timeCells(each.service_ns, decimals)] });
    if (each.database_ns.count)
      rows.push({ class: "part", cells: ["database", "", "", "", "", ...timeCells(each.database_ns, decimals)] });
  }
  return table("Response times in ms", [{ text: "transaction", class: "text" }, ...kCountHeads, ...kTimeHeads], rows, { id });
}

function tableTable(part, id) {
  const decimals = decimalsFor(part.tables.map((each) => each.response_ns.p50));
  const row = (each) => [each.name, each.columns ? whole(each.columns) : "–", ...countCells(each, part),
    ...timeCells(each.response_ns, decimals)];
  return table("Response times in ms; columns are those beside ID",
    [{ text: "table", class: "text" }, "columns", ...kCountHeads, ...kTimeHeads], part.tables.map(row), { id });
}

function columnTable(part, id) {
  const decimals = decimalsFor(part.column_counts.map((each) => each.response_ns.p50));
  return table("Response times in ms", [{ text: "tables with", class: "text" }, ...kCountHeads, ...kTimeHeads],
    part.column_counts.map((each) => [each.name, ...countCells(each, part), ...timeCells(each.response_ns, decimals)]),
    { id });
}

function classTable(part, id) {
  const rows = Object.entries(part.total.errors).sort((a, b) => b[1] - a[1]).map(([name, count]) =>
    [name, { text: whole(count), value: count }, percent(count / part.total.executions)]);
  return table("Failed executions by class", [{ text: "class", class: "text" }, "failures", "of executions"], rows, { id });
}

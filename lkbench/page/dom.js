// SPDX-License-Identifier: Apache-2.0
// Elements of the page. All text goes in as text, never as markup: the data may hold anything.

function el(tag, attributes, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes || {}))
    if (value !== null && value !== undefined) node.setAttribute(name, value);
  for (const child of children.flat(Infinity))
    if (child !== null && child !== undefined) node.append(child);
  return node;
}

function section(title, ...children) {
  const id = "s-" + title.toLowerCase().replace(/[^a-z0-9]+/g, "-");
  return el("section", { "aria-labelledby": id }, el("h2", { id }, title), children);
}

// rows: arrays of cells; a cell is a text or {text, ns?, class?}. The first cell of a row is its heading.
function table(caption, heads, rows, options = {}) {
  const cell = (tag, value, attributes) => {
    const of = typeof value === "object" && value !== null ? value : { text: value };
    return el(tag, { ...attributes, class: of.class, "data-value": of.value }, of.text);
  };
  const head = el("tr", null, heads.map((each) => cell("th", each, { scope: "col" })));
  const body = rows.map((row) => {
    const [first, ...rest] = row.cells || row;
    const heading = typeof first === "object" ? first : { text: first };
    return el("tr", { class: row.class },
      cell("th", { ...heading, class: "text " + (heading.class || "") }, { scope: "row" }),
      rest.map((each) => cell("td", each)));
  });
  const whole = el("table", { id: options.id }, caption ? el("caption", null, caption) : null, el("thead", null, head),
    el("tbody", null, body));
  return el("div", { class: "scroll" + (rows.length > 20 ? "" : " tall"), tabindex: "0", role: "region",
    "aria-label": caption || options.label }, whole);
}

// A setting as one line: { insert: 40, update: 40 } -> "insert 40, update 40".
function settingText(value) {
  if (Array.isArray(value)) return value.map(settingText).join("; ");
  if (typeof value !== "object" || value === null) return String(value);
  return Object.entries(value).map(([name, each]) => name + " " + settingText(each)).join(", ");
}

function pairs(entries) {
  return el("dl", { class: "pairs" }, entries.filter(([, value]) => value !== "" && value !== null && value !== undefined)
    .map(([name, value]) => [el("dt", null, name), el("dd", null, settingText(value))]));
}

// tiles: [label, figure, unit, value]
function tiles(entries) {
  return el("dl", { class: "tiles" }, entries.map(([label, figure, unit, value]) =>
    el("div", null, el("dt", null, label),
      el("dd", { "data-value": value }, figure, unit ? el("small", null, " " + unit) : null))));
}

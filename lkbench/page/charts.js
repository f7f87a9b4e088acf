// SPDX-License-Identifier: Apache-2.0
// Charts by Chart.js, in the page's colours. Each stands in a figure with a sentence that says what it shows and
// with its numbers as a table. On paper all charts are in the light colours.

const charts = [];

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue("--" + name).trim();
}

// The series of a chart by position: a colour and, for those who do not see it, a dash.
const kSeries = [["accent", []], ["second", [6, 3]], ["third", [2, 2]], ["fourth", [8, 3, 2, 3]]];

function paint(chart) {
  chart.data.datasets.forEach((set, index) => {
    const [name, dash] = kSeries[(set.look ?? index) % kSeries.length];
    set.borderColor = colour(name);
    set.borderDash = dash;
    set.backgroundColor = set.bars ? colour(name) : colour("fill");
    set.pointBackgroundColor = colour(name);
  });
  for (const scale of Object.values(chart.options.scales)) {
    scale.grid.color = colour("line");
    scale.ticks.color = colour("soft");
    scale.title.color = colour("soft");
  }
  chart.options.plugins.legend.labels.color = colour("ink");
}

function repaint() {
  for (const chart of charts) {
    paint(chart);
    chart.update("none");
  }
}

function axis(title, more = {}) {
  return { grid: { drawTicks: false, drawBorder: false }, ticks: { padding: 6, maxRotation: 0 },
    title: { display: true, text: title }, ...more };
}

// Marks on the time axis: a band for what lasts, a line for a moment, with the number it has in the list of events.
const marks = {
  id: "marks",
  beforeDatasetsDraw(chart) {
    const { ctx, chartArea: area, scales } = chart;
    ctx.save();
    for (const mark of chart.options.plugins.marks.list || []) {
      const left = scales.x.getPixelForValue(mark.begin);
      const right = scales.x.getPixelForValue(mark.end);
      if (left < area.left - 1 || left > area.right + 1) continue;
      ctx.fillStyle = ctx.strokeStyle = colour(mark.kind === "warm-up" ? "soft" : "warn");
      ctx.globalAlpha = 0.14;
      if (right > left) ctx.fillRect(left, area.top, Math.min(right, area.right) - left, area.bottom - area.top);
      ctx.globalAlpha = 1;
      if (!mark.label) continue;
      ctx.setLineDash([3, 3]);
      ctx.beginPath();
      ctx.moveTo(left, area.top);
      ctx.lineTo(left, area.bottom);
      ctx.stroke();
      ctx.font = "600 11px system-ui, sans-serif";
      ctx.fillText(mark.label, left + 3, area.top + 10);
    }
    ctx.restore();
  },
};

// series: [{label, points: [{x, y}], look?, fill?}]; labels: {x, y}; lines: the rows of the table that tells the same.
function chart(id, title, says, make, lines) {
  const canvas = el("canvas", { id, role: "img", "aria-label": title + ". " + says });
  const held = el("div", { class: "canvas" + (make.low ? " low" : "") }, canvas);
  const more = el("details", null, el("summary", null, "Numbers of this chart"));
  more.addEventListener("toggle", () => {
    if (more.open && more.childElementCount === 1) more.append(table(title, lines.heads, lines.rows()));
  });
  const figure = el("figure", null, held, el("figcaption", null, says), more);
  figure.draw = () => {
    const made = new Chart(canvas, make.config);
    charts.push(made);
    paint(made);
    made.update("none");
  };
  return figure;
}

// The legend draws a line as the chart does, dashes included.
function legendItems(chart) {
  return Chart.defaults.plugins.legend.labels.generateLabels(chart).map((item) =>
    ({ ...item, lineDash: chart.data.datasets[item.datasetIndex].borderDash, lineWidth: 1.75 }));
}

function lineConfig(series, scales, tooltip, marked = []) {
  return {
    type: "line",
    data: { datasets: series.map((each) => ({ label: each.label, data: each.points, look: each.look, borderWidth: 1.75,
      fill: each.fill ? "origin" : false, pointRadius: each.points.length < 2 ? 3 : 0, pointHitRadius: 8,
      pointStyle: "line", tension: 0 })) },
    options: { animation: false, responsive: true, maintainAspectRatio: false, parsing: false, normalized: true, scales,
      interaction: { mode: "index", intersect: false, axis: "x" },
      plugins: { marks: { list: marked }, tooltip: { callbacks: tooltip },
        decimation: { enabled: true, algorithm: "min-max" },
        legend: { display: series.length > 1, position: "top", align: "start",
          labels: { usePointStyle: true, pointStyleWidth: 28, generateLabels: legendItems } } } },
    plugins: [marks],
  };
}

function barConfig(labels, values, label, scales) {
  return {
    type: "bar",
    data: { labels, datasets: [{ label, data: values, bars: true, maxBarThickness: 36 }] },
    options: { animation: false, responsive: true, maintainAspectRatio: false, scales,
      plugins: { marks: {}, legend: { display: false, labels: {} } } },
  };
}

function watchColours() {
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", repaint);
  const paper = () => {
    repaint();
    for (const each of charts) each.resize();
  };
  matchMedia("print").addEventListener("change", paper);
}

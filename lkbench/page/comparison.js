// SPDX-License-Identifier: Apache-2.0
// The page of a comparison: for each pair of runs the figures, and the settings that differ.

const kJudgements = { higher: "higher", lower: "lower", noise: "within noise", "too-short": "too short to tell" };

function figureValue(figure, value) {
  return figure.unit === "ns" ? time(value) : perSecond(value) + "\u202f/s";
}

function signedPercent(share) {
  return (share < 0 ? "−" : "+") + fixed(Math.abs(share) * 100, 1) + "\u202f%";
}

function judgementCell(figure) {
  const words = kJudgements[figure.judgement];
  if (figure.better === null) return { text: words, class: "soft" };
  return { text: words + (figure.better ? " ✓ better" : " ✗ worse"), class: figure.better ? "good-text" : "bad-text" };
}

function chance(figure) {
  if (figure.judgement === "too-short") return "–";
  return figure.p_value < 0.001 ? "< 0.001" : fixed(figure.p_value, 3);
}

function figureTable(phase, id) {
  const rows = phase.figures.map((figure) => [figure.name, { text: figureValue(figure, figure.first), value: figure.first },
    { text: figureValue(figure, figure.second), value: figure.second },
    { text: figure.first === 0 ? "–" : signedPercent(figure.change), value: figure.change },
    figure.noise === null ? "–" : "± " + fixed(figure.noise * 100, 1) + "\u202f%", chance(figure), judgementCell(figure)]);
  return table(`${plural(phase.first_intervals, "interval")} of A, ${phase.second_intervals} of B`,
    [{ text: "figure", class: "text" }, "A", "B", "change", "noise", "p", "verdict"], rows, { id });
}

function changeChart(phase, id) {
  const shown = phase.figures.filter((figure) => figure.first !== 0);
  const says = "Change from A to B in per cent. " + shown.map((figure) =>
    `${figure.name} ${signedPercent(figure.change)}, ${kJudgements[figure.judgement]}`).join("; ") + ".";
  return chart(id, "Changes", says, { low: true, config: barConfig(shown.map((figure) => figure.name),
    shown.map((figure) => figure.change * 100), "change (%)", { x: axis("", { grid: { display: false } }), y: axis("%") }) },
    { heads: [{ text: "figure", class: "text" }, "change"], rows: () => shown.map((figure) =>
      [figure.name, signedPercent(figure.change)]) });
}

function verdictOf(pair) {
  const figures = pair.phases.flatMap((phase) => phase.figures);
  const worse = figures.filter((figure) => figure.better === false).length;
  const better = figures.filter((figure) => figure.better === true).length;
  const judged = figures.filter((figure) => figure.judgement !== "too-short").length;
  if (judged === 0) return ["warn", "Too short to tell", "Neither run has enough seconds to know its own noise."];
  const counts = `Of ${plural(judged, "figure")}, ${better} better, ${worse} worse, the rest within noise.`;
  if (worse && better) return ["warn", "Better and worse", counts];
  if (worse) return ["bad", "Worse", counts];
  return better ? ["good", "Better", counts] : ["good", "No difference", counts];
}

function pairPart(pair, index, several) {
  const [look, words, counts] = verdictOf(pair);
  const settings = pair.settings.length
    ? table(null, [{ text: "setting", class: "text" }, { text: "A", class: "text" }, { text: "B", class: "text" }],
      pair.settings.map((each) => [{ text: each.name, class: "wrap" }, { text: each.first || "–", class: "text wrap" },
        { text: each.second || "–", class: "text wrap" }]), { id: "settings-" + index, label: "Settings that differ" })
    : el("p", { class: "soft" }, "The settings do not differ.");
  return el("section", { class: several ? "phase" : null }, several ? el("h2", null, "B: " + pair.second) : null,
    el("div", { class: "verdict " + look, id: "verdict-" + index }, el("p", null, words), el("p", null, counts)),
    pair.notes.map((note) => el("p", { class: "soft" }, "Note: " + note)),
    pair.phases.map((phase, number) => [el("h3", null, "Phase " + phase.name),
      figureTable(phase, `figures-${index}-${number}`), changeChart(phase, `changes-${index}-${number}`)]),
    el("h3", null, "Settings that differ"), settings);
}

function comparisonPage(comparison) {
  const { pairs } = comparison;
  document.title = "lkbench compare " + pairs[0].first;
  document.getElementById("page").append(el("header", null, el("p", { class: "kicker" }, "lkbench compare"),
    el("h1", null, "A: " + pairs[0].first), pairs.length === 1 ? el("h1", null, "B: " + pairs[0].second) : ""),
  ...pairs.map((pair, index) => pairPart(pair, index, pairs.length > 1)),
  el("footer", null, `Test: ${comparison.test}, at a level of ${comparison.level * 100} %. Noise is half the width of the ` +
    "95 % interval of the change. It is the noise within the runs: what differs from run to run is not in it, so repeat " +
    "runs before you trust a small difference. docs/explanation/numbers.md says more."));
  for (const figure of document.querySelectorAll("figure")) figure.draw();
  watchColours();
}


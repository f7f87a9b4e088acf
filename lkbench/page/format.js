// SPDX-License-Identifier: Apache-2.0
// Numbers as people read them. Times are nanoseconds throughout.

const kPlain = new Intl.NumberFormat("en-US", { maximumFractionDigits: 0 });

function whole(value) {
  return kPlain.format(value);
}

function fixed(value, decimals) {
  return value.toLocaleString("en-US", { minimumFractionDigits: decimals, maximumFractionDigits: decimals });
}

// Three significant digits, more before the point.
function significant(value) {
  const size = Math.abs(value);
  return fixed(value, size === 0 || size >= 100 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3);
}

function perSecond(value) {
  return fixed(value, Math.abs(value) < 1000 ? 1 : 0);
}

// [figure, unit] with the unit that suits one time.
function timeParts(ns) {
  if (ns < 1e3) return [whole(ns), "ns"];
  if (ns < 1e6) return [significant(ns / 1e3), "µs"];
  if (ns < 1e9) return [significant(ns / 1e6), "ms"];
  return [significant(ns / 1e9), "s"];
}

function time(ns) {
  return timeParts(ns).join("\u202f");
}

function duration(ns) {
  const seconds = ns / 1e9;
  if (seconds < 120) return significant(seconds) + "\u202fs";
  const minutes = Math.floor(seconds / 60);
  const rest = Math.round(seconds - minutes * 60);
  return minutes < 120 ? `${minutes}\u202fmin ${rest}\u202fs` : `${Math.floor(minutes / 60)}\u202fh ${minutes % 60}\u202fmin`;
}

// Decimals that show the smallest of some times in ms with two significant digits or more.
function decimalsFor(times) {
  const smallest = Math.min(...times.filter((ns) => ns > 0));
  return smallest < 1e6 ? 3 : smallest < 1e7 ? 2 : 1;
}

function milliseconds(ns, decimals) {
  return fixed(ns / 1e6, decimals);
}

function percent(share) {
  if (share === 0) return "0\u202f%";
  return (share < 0.0001 ? "< 0.01" : significant(share * 100)) + "\u202f%";
}

function bytes(count) {
  return significant(count / 2 ** 30) + "\u202fGiB";
}

function plural(count, noun) {
  return whole(count) + " " + noun + (count === 1 ? "" : "s");
}

// A command line that a shell reads back as the same words.
function shell(words) {
  return words.map((word) => (/^[\w@%+=:,./-]+$/.test(word) ? word : "'" + word.replaceAll("'", "'\\''") + "'")).join(" ");
}

// "2026-01-02T03:04:05Z" -> "2026-01-02 03:04:05 UTC"
function moment(text) {
  return text.replace("T", " ").replace("Z", " UTC");
}

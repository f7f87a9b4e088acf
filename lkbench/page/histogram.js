// SPDX-License-Identifier: Apache-2.0
// The buckets of run.json, by the rule that it carries.

function middleOf(rule, bucket) {
  const size = 2 ** rule.sub_bits;
  if (bucket < size) return bucket;
  const width = 2 ** (Math.floor(bucket / size) - 1);
  return (size + (bucket % size)) * width + Math.floor(width / 2);
}

// Points of the percentile spectrum, as {x: 1 / (1 - share), y: ms}: one per bucket, the last at the maximum.
function spectrum(rule, times) {
  const points = [];
  let seen = 0;
  for (const [bucket, count] of times.buckets) {
    const x = times.count / (times.count - seen);
    points.push({ x, y: Math.min(middleOf(rule, bucket), times.max) / 1e6 });
    seen += count;
  }
  if (times.count > 1) points.push({ x: times.count, y: times.max / 1e6 });
  return points;
}

// 1 - share as people write the percentile: 10 -> "90 %", 1000 -> "99.9 %".
function percentileName(x) {
  return Number((100 - 100 / x).toFixed(Math.max(0, Math.ceil(Math.log10(x)) - 2))) + "\u202f%";
}

// How evenly the users got on: Jain's index, 1 when all did the same, 1/n when one did everything.
function fairness(counts) {
  const sum = counts.reduce((a, b) => a + b, 0);
  const squares = counts.reduce((a, b) => a + b * b, 0);
  return squares === 0 ? 1 : (sum * sum) / (counts.length * squares);
}

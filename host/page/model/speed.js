// SPDX-License-Identifier: MIT
// Speeds along a track.

const kHalfWindow = 15; // seconds

// Returns metres per second for each point, averaged over about 30 seconds: from one fix to the
// next, a receiver's positions scatter too much. NaN at points without a time, and at points whose
// time is not later than that of the timed points before them.
export function speedsOf({ count, time, distance }) {
  const speeds = new Float64Array(count).fill(NaN);
  const timed = indicesInTimeOrder(time, count);
  let from = 0, to = 0;
  for (let at = 0; at < timed.length; ++at) {
    const now = time[timed[at]];
    while (from + 1 < at && time[timed[from + 1]] <= now - kHalfWindow)
      ++from;
    while (to < timed.length - 1 && (to <= at || time[timed[to]] < now + kHalfWindow))
      ++to;
    const first = timed[Math.min(from, at)], last = timed[to];
    if (last !== first)
      speeds[timed[at]] = (distance[last] - distance[first]) / (time[last] - time[first]);
  }
  return speeds;
}

function indicesInTimeOrder(time, count) {
  const indices = [];
  let latest = -Infinity;
  for (let i = 0; i < count; ++i) {
    if (time[i] > latest) { // false for NaN
      latest = time[i];
      indices.push(i);
    }
  }
  return indices;
}

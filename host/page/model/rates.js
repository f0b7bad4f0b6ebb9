// SPDX-License-Identifier: MIT
// Speeds and slopes along a track: how fast one of its values changes with another.

const kHalfSpeedWindow = 15;  // seconds
const kHalfTopWindow = 5;     // seconds
const kHalfSlopeWindow = 50;  // metres
const kTopShare = 0.99;

// Returns metres per second for each point, averaged over about 30 seconds: from one fix to the
// next, a receiver's positions scatter too much. NaN at points without a time, and at points whose
// time is not later than that of the timed points before them.
export function speedsOf({ count, time, distance }, halfWindow = kHalfSpeedWindow) {
  return ratesOf(time, distance, count, halfWindow);
}

// The speed that 99 % of the points do not exceed, averaged over about 10 seconds: a single bad fix
// is not the top. NaN if no speed is known.
export function topSpeedOf(track) {
  const speeds = speedsOf(track, kHalfTopWindow).filter((speed) => !Number.isNaN(speed)).sort();
  return speeds.length > 0 ? speeds[Math.ceil(kTopShare * speeds.length) - 1] : NaN;
}

// Returns metres of elevation per metre of distance for each point, averaged over about 100 metres.
// NaN at points without an elevation, and where the track stands still.
export function slopesOf({ count, distance, elevation }) {
  const along = distance.map((metres, i) => Number.isNaN(elevation[i]) ? NaN : metres);
  return ratesOf(along, elevation, count, kHalfSlopeWindow);
}

// For each point, how much `y` changes per unit of `x` within `halfWindow` to either side, or up to
// the neighbours if those are farther away. Uses the points whose `x` is larger than all before.
function ratesOf(x, y, count, halfWindow) {
  const rates = new Float64Array(count).fill(NaN);
  const rising = risingIndices(x, count);
  let from = 0, to = 0;
  for (let at = 0; at < rising.length; ++at) {
    const now = x[rising[at]];
    while (from + 1 < at && x[rising[from + 1]] <= now - halfWindow)
      ++from;
    while (to < rising.length - 1 && (to <= at || x[rising[to]] < now + halfWindow))
      ++to;
    const first = rising[Math.min(from, at)], last = rising[to];
    if (last !== first)
      rates[rising[at]] = (y[last] - y[first]) / (x[last] - x[first]);
  }
  return rates;
}

function risingIndices(values, count) {
  const indices = [];
  let highest = -Infinity;
  for (let i = 0; i < count; ++i) {
    if (values[i] > highest) { // false for NaN
      highest = values[i];
      indices.push(i);
    }
  }
  return indices;
}

// SPDX-License-Identifier: MIT
// Elevation and speed along a track, as paths and ticks for a drawing of kPlotWidth units.

import { formatNumber } from "./format.js";
import { roundStep } from "./roundStep.js";
import { simplify } from "./simplify.js";

export const kPlotWidth = 720; // no card is wider in pixels, so half a unit is at most half a pixel

const kTolerance = 0.5; // units
const kHeadroom = 1.22; // the plot's height, relative to the range of its values

// `key`: the track's array of values. `factor`: from the track's unit to the one shown. `minRange`:
// a walk on level ground should look level; it also keeps ticks without decimals. `hasGaps`: the
// line is interrupted where values are missing; a speed is known at timed points only, and the line
// connects those.
export const kPlotKinds = [
  { key: "elevation", unit: "m", factor: 1, height: 110, minRange: 20, tickCount: 4,
    hasGaps: true, range: elevationRange },
  { key: "speed", unit: "km/h", factor: 3.6, height: 70, minRange: 1, tickCount: 3,
    hasGaps: false, range: speedRange },
];

export function trackLength(track) {
  return track.count > 0 ? track.distance[track.count - 1] : 0;
}

// Returns the plot of one kind: the range of values `low` to `high`, the SVG paths `stroke` and
// `fill`, and the `ticks` as `{ y, text }`. Null if fewer than two points have a value or the track
// has no length.
export function plotOf(track, kind) {
  const line = lineOf(track, track[kind.key], kind.hasGaps);
  const length = trackLength(track);
  if (line.count < 2 || !(length > 0))
    return null;
  const { low, high } = kind.range(line.lowest, line.highest, kind.minRange);
  const frame = { low, high, height: kind.height, xScale: kPlotWidth / length };
  return { low, high, ...pathsOf(line, frame), ticks: ticksOf(frame, kind) };
}

function elevationRange(lowest, highest, minRange) {
  const range = Math.max(highest - lowest, minRange);
  const low = (lowest + highest - range) / 2 - range * 0.08;
  return { low, high: low + range * kHeadroom };
}

function speedRange(lowest, highest, minRange) {
  return { low: 0, high: Math.max(highest, minRange) * kHeadroom };
}

// The points that have a value, by distance.
function lineOf(track, values, hasGaps) {
  const line = { x: [], y: [], count: 0, breaks: new Set(), lowest: Infinity, highest: -Infinity };
  for (let i = 0; i < track.count; ++i) {
    if (Number.isNaN(values[i]))
      continue;
    if (hasGaps && i > 0 && Number.isNaN(values[i - 1]))
      line.breaks.add(line.count);
    line.x.push(track.distance[i]);
    line.y.push(values[i]);
    ++line.count;
    line.lowest = Math.min(line.lowest, values[i]);
    line.highest = Math.max(line.highest, values[i]);
  }
  return line;
}

function pathsOf(line, { low, high, height, xScale }) {
  const yScale = height / (high - low);
  let stroke = "", fill = "", startX = "", x = "";
  const closeFill = () => { fill += `L${x},${height}L${startX},${height}Z`; };
  for (const i of simplify(line, { xScale, yScale, tolerance: kTolerance })) {
    const isStart = i === 0 || line.breaks.has(i);
    if (isStart && i > 0)
      closeFill();
    x = (line.x[i] * xScale).toFixed(1);
    if (isStart)
      startX = x;
    const step = `${isStart ? "M" : "L"}${x},${(height - (line.y[i] - low) * yScale).toFixed(1)}`;
    stroke += step;
    fill += step;
  }
  closeFill();
  return { stroke, fill };
}

function ticksOf({ low, high, height }, { factor, tickCount }) {
  const ticks = [];
  const step = roundStep((high - low) * factor / tickCount);
  for (let i = Math.ceil(low * factor / step); i * step < high * factor * 0.97; ++i) {
    const y = height - (i * step / factor - low) * height / (high - low);
    ticks.push({ y, text: formatNumber(i * step) });
  }
  return ticks;
}

// The ticks of the axis below the plots: `{ fraction, text }`, in kilometres. Leaves out what would
// reach over the end.
export function distanceTicks(length) {
  const step = roundStep(length / 5);
  const digits = step >= 100 ? 1 : 2;
  const ticks = [];
  for (let i = 0; i * step <= length * 0.94; ++i) {
    const kilometres = i * step / 1000;
    const text = step >= 1000 ? `${kilometres}` : formatNumber(kilometres, digits);
    ticks.push({ fraction: i * step / length, text: i === 0 ? "0 km" : text });
  }
  return ticks;
}

// The index of the point nearest to a distance along the track, which must have points.
export function indexAtDistance({ count, distance }, metres) {
  let low = 0, high = count - 1;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (distance[middle] < metres)
      low = middle + 1;
    else
      high = middle;
  }
  return low > 0 && metres - distance[low - 1] < distance[low] - metres ? low - 1 : low;
}

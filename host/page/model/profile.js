// SPDX-License-Identifier: MIT
// Elevation and speed along a track's axis, as paths and ticks for a drawing of kPlotWidth units.

import { axisOf } from "./axis.js";
import { formatNumber } from "./format.js";
import { roundStep } from "./roundStep.js";
import { simplify } from "./simplify.js";
import { units } from "./units.js";

export const kPlotWidth = 720; // no card is wider in pixels, so half a unit is at most half a pixel

const kTolerance = 0.5; // units
const kHeadroom = 1.22; // the plot's height, relative to the range of its values

// `key`: the track's array of values. `unit()` and `factor()`: the unit shown, and the factor to it
// from metres, or metres per second. `minRange`: a walk on level ground should look level; it also
// keeps ticks without decimals. `hasGaps`: the line is interrupted where values are missing, and
// not only between segments; a speed is known at timed points only, and the line connects those.
export const kPlotKinds = [
  { key: "elevation", unit: () => units.height.name, factor: () => 1 / units.height.metres,
    height: 110, minRange: 20, tickCount: 4, hasGaps: true, range: elevationRange },
  { key: "speed", unit: () => units.length.speed, factor: () => 3600 / units.length.metres,
    height: 70, minRange: 1, tickCount: 3, hasGaps: false, range: speedRange },
];

export function trackLength(track) {
  return track.count > 0 ? track.distance[track.count - 1] : 0;
}

// Returns the plot of one kind along an axis: the range of values `low` to `high`, the SVG paths
// `stroke` and `fill`, and the `ticks` as `{ y, text }`. Null if fewer than two points have a value
// or the axis has no length.
export function plotOf(track, kind, axis = axisOf(track)) {
  const line = lineOf(track, axis.values, track[kind.key], kind.hasGaps);
  if (line.count < 2 || !(axis.length > 0))
    return null;
  const { low, high } = kind.range(line.lowest, line.highest, kind.minRange);
  const frame = { low, high, height: kind.height, xScale: kPlotWidth / axis.length };
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

// The points that have a value, by their positions on the axis.
function lineOf({ count, breaks }, positions, values, hasGaps) {
  const line = { x: [], y: [], count: 0, breaks: new Set(), lowest: Infinity, highest: -Infinity };
  for (let i = 0; i < count; ++i) {
    if (Number.isNaN(values[i]))
      continue;
    if (i > 0 && (breaks.has(i) || (hasGaps && Number.isNaN(values[i - 1]))))
      line.breaks.add(line.count);
    line.x.push(positions[i]);
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

function ticksOf({ low, high, height }, { factor: factorOf, tickCount }) {
  const ticks = [], factor = factorOf();
  const step = roundStep((high - low) * factor / tickCount);
  for (let i = Math.ceil(low * factor / step); i * step < high * factor * 0.97; ++i) {
    const y = height - (i * step / factor - low) * height / (high - low);
    ticks.push({ y, text: formatNumber(i * step) });
  }
  return ticks;
}

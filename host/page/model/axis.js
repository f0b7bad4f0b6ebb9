// SPDX-License-Identifier: MIT
// What a profile is drawn along: the distance from the start, or the time since the start.

import { isKnown, scaleText } from "./format.js";
import { roundStep } from "./roundStep.js";
import { units } from "./units.js";

const kLastTick = 0.94; // of the axis: later ticks' texts would reach over its end
const kMinute = 60, kHour = 3600, kDay = 86400;
const kTimeSteps = [1, 2, 5, 10, 15, 30].map((step) => step * kMinute)
  .concat([1, 2, 3, 6, 12].map((step) => step * kHour));

// Returns `{ name, values, length }`: the position of each point, never falling, and that of the
// last. A track without times has distances only.
export function axisOf(track, name) {
  const isTime = name === "time" && isKnown(track.first) && track.last > track.first;
  const values = isTime ? elapsedOf(track) : track.distance;
  return {
    name: isTime ? "time" : "distance", values,
    length: track.count > 0 ? values[track.count - 1] : 0,
  };
}

// Seconds since the first timed point. Times can be missing or run backward: such points are where
// the points before them are.
function elapsedOf({ count, time }) {
  const elapsed = new Float64Array(count);
  let start = NaN, latest = 0;
  for (let i = 0; i < count; ++i) {
    if (Number.isNaN(start))
      start = time[i];
    latest = Math.max(latest, time[i] - start || 0);
    elapsed[i] = latest;
  }
  return elapsed;
}

// The ticks below the plots: `{ fraction, text }`, the unit at the first.
export function axisTicks({ name, length }) {
  return name === "time" ? timeTicks(length) : distanceTicks(length);
}

function distanceTicks(length) {
  const { metres, name } = length < units.length.metres ? units.length.small : units.length;
  const step = roundStep(length / metres / 5);
  return ticks(length, step * metres, (i) => i === 0 ? `0 ${name}` : scaleText(i * step));
}

function timeTicks(length) {
  const least = length / 5;
  const step = kTimeSteps.find((seconds) => seconds >= least) ?? kDay * roundStep(least / kDay);
  return ticks(length, step, (i) => {
    const seconds = i * step, minutes = String(Math.round(seconds % kHour / kMinute));
    if (step >= kDay)
      return i === 0 ? "0 days" : scaleText(seconds / kDay);
    return i === 0 ? "0:00 h" : `${Math.floor(seconds / kHour)}:${minutes.padStart(2, "0")}`;
  });
}

function ticks(length, step, textOf) {
  const list = [];
  for (let i = 0; i * step <= length * kLastTick; ++i)
    list.push({ fraction: i * step / length, text: textOf(i) });
  return list;
}

// The index of the point nearest to a position on the axis, which must have points. Of several at
// one position, the first.
export function indexAt({ values }, position) {
  const at = indexAtLeast(values, position);
  return at > 0 && position - values[at - 1] < values[at] - position ? at - 1 : at;
}

// The index of the first value that is at least `position`, or else the last index.
export function indexAtLeast(values, position) {
  let low = 0, high = values.length - 1;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (values[middle] < position)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

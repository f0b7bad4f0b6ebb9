// SPDX-License-Identifier: MIT
// Marks along a track on the map: distances from the start, and arrows for its direction.

import { indexAtLeast } from "./axis.js";
import { scaleText } from "./format.js";
import { kEarthRadius, radians } from "./geodesy.js";
import { roundStep } from "./roundStep.js";
import { units } from "./units.js";

const kGap = 110;        // pixels along the line between two distances, at least
const kArrowReach = 7;   // pixels over which an arrow's direction is taken
const kMaxMarks = 10000; // of which few are in the view
const kMaxInView = 50;

// Returns those in the view: `distances`, as `{ x, latitude, name }`, and `arrows`, as
// `{ px, py, angle }`.
export function lineMarks(track, view) {
  const length = track.count > 0 ? track.distance[track.count - 1] : 0;
  const metresPerPixel = kEarthRadius * radians(1) / view.scale;
  const { metres: unit, name } = units.length;
  const step = roundStep(metresPerPixel * kGap / unit) * unit;
  const marks = { distances: [], arrows: [] };
  if (!(length > step / 2) || length / step > kMaxMarks)
    return marks;
  for (let i = 1; i * step < length; ++i) {
    const distance = positionAt(track, i * step);
    if (isInView(distance, view))
      marks.distances.push({ ...distance, i, name: `${scaleText(i * step / unit)} ${name}` });
  }
  marks.distances = thinOut(marks.distances);
  for (let metres = step / 2; metres < length; metres += step) {
    if (isInView(positionAt(track, metres), view))
      marks.arrows.push(arrowAt(track, metres, kArrowReach * metresPerPixel, view));
  }
  const gap = Math.ceil(marks.arrows.length / kMaxInView);
  marks.arrows = marks.arrows.filter((arrow, i) => i % gap === 0);
  return marks;
}

// Where a track fills the map, round multiples are enough.
function thinOut(distances) {
  const factor = distances.length > kMaxInView ? roundStep(distances.length / kMaxInView) : 1;
  return distances.filter(({ i }) => i % factor === 0)
    .map(({ x, latitude, name }) => ({ x, latitude, name }));
}

function isInView({ x, latitude }, view) {
  return view.contains(view.toPixelX(x), view.toPixelY(latitude));
}

// Between the two points around a distance; at a break in the line, the later one.
function positionAt({ x, latitude, distance, breaks }, metres) {
  const to = indexAtLeast(distance, metres), from = Math.max(to - 1, 0);
  const length = distance[to] - distance[from];
  const share = length > 0 && !breaks.has(to) ? (metres - distance[from]) / length : 1;
  return {
    x: x[from] + (x[to] - x[from]) * share,
    latitude: latitude[from] + (latitude[to] - latitude[from]) * share,
  };
}

function arrowAt(track, metres, reach, view) {
  const before = positionAt(track, Math.max(metres - reach, 0));
  const after = positionAt(track, metres + reach);
  const { x, latitude } = positionAt(track, metres);
  const dx = view.toPixelX(after.x) - view.toPixelX(before.x);
  const dy = view.toPixelY(after.latitude) - view.toPixelY(before.latitude);
  return { px: view.toPixelX(x), py: view.toPixelY(latitude), angle: Math.atan2(dy, dx) };
}

// SPDX-License-Identifier: MIT
// The part of a line that has to be drawn: what the scale can show, within the map's edges.

import { radians } from "./geodesy.js";
import { simplify } from "./simplify.js";

const kTolerance = 0.5; // pixels
const kBandDegrees = 10;
const kEdge = 20; // pixels beyond the map in which a line's width can still be seen

// Remembers each line's visible points until the scale or the latitude changes noticeably.
export class VisiblePoints {
  constructor() {
    this.remembered_ = new WeakMap();
  }

  // Returns the indices of the points that are visible at the view's scale. Computed for the next
  // larger power of two of the scale and for the edge of a band of latitudes where the map is
  // widest, so that the result holds for all views of the same level and band.
  of(line, view) {
    const level = Math.ceil(Math.log2(view.scale));
    const band = Math.floor(Math.abs(view.latitude) / kBandDegrees);
    const known = this.remembered_.get(line);
    if (known && known.level === level && known.band === band)
      return known.indices;

    const yScale = 2 ** level;
    const xScale = yScale * Math.cos(radians(band * kBandDegrees));
    const { x, latitude, count, breaks } = line;
    const indices = simplify({ x, y: latitude, count, breaks },
      { xScale, yScale, tolerance: kTolerance });
    this.remembered_.set(line, { level, band, indices });
    return indices;
  }
}

// Those of `indices` between two points, and these points.
export function indicesBetween(indices, from, to) {
  return [from, ...indices.filter((i) => i > from && i < to), to];
}

// Traces the line through the points in `indices` with a pen that has `moveTo` and `lineTo`, for
// example a canvas context. Omits segments that are entirely on one side of the map.
export function traceLine(line, indices, view, pen) {
  let previousX = NaN, previousY = NaN, isPenDown = false; // NaN: the first point ends no segment
  for (const i of indices) {
    const px = view.toPixelX(line.x[i]), py = view.toPixelY(line.latitude[i]);
    const isVisible = !Number.isNaN(previousX) && !line.breaks.has(i) &&
      !areBeyondEdge(previousX, px, view.width) && !areBeyondEdge(previousY, py, view.height);
    if (isVisible && !isPenDown)
      pen.moveTo(previousX, previousY);
    if (isVisible)
      pen.lineTo(px, py);
    isPenDown = isVisible;
    previousX = px;
    previousY = py;
  }
}

function areBeyondEdge(a, b, size) {
  return (a < -kEdge && b < -kEdge) || (a > size + kEdge && b > size + kEdge);
}

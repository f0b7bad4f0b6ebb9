// SPDX-License-Identifier: MIT
// Lines coloured by a value: each point belongs to one of seven classes, --class-0 to --class-6 in
// page.css.

import { metresText, slopeText, speedText } from "./format.js";
import { slopesOf } from "./rates.js";

export const kClassCount = 7;

const kUnknown = 255;
const kMinPiece = 3;      // pixels
const kMaxSample = 20000; // points that a range of values is taken from
const kTopShare = 0.98;
const kSlopeLimits = [-0.2, -0.1, -0.03, 0.03, 0.1, 0.2];

const kKinds = {
  speed: { valuesOf: (track) => track.speed, text: speedText, isFromZero: true },
  height: { valuesOf: (track) => track.elevation, text: metresText },
  slope: { valuesOf: slopesOf, text: slopeText, limits: kSlopeLimits },
};

export class Colouring {
  // `kind`: "speed", "height" or "slope". The classes cover the values of all `tracks`.
  constructor(kind, tracks) {
    this.kind_ = kKinds[kind];
    this.limits_ = this.kind_.limits ?? limitsOf(tracks.map(this.kind_.valuesOf), this.kind_);
    this.known_ = new WeakMap();
  }

  // The class of each point; not below kClassCount if its value is not known.
  classesOf(track) {
    let classes = this.known_.get(track);
    if (!classes) {
      const values = this.kind_.valuesOf(track);
      classes = Uint8Array.from({ length: track.count }, (_, i) => this.classOf_(values[i]));
      this.known_.set(track, classes);
    }
    return classes;
  }

  // Whether the value is not known anywhere along `tracks`.
  hasGaps(tracks) {
    return tracks.some((track) => this.classesOf(track).includes(kUnknown));
  }

  // The texts at both ends of a legend: below which limit the first class is, and above which one
  // the last.
  legendTexts() {
    const { text } = this.kind_;
    return [`< ${text(this.limits_[0])}`, `> ${text(this.limits_[kClassCount - 2])}`];
  }

  classOf_(value) {
    if (Number.isNaN(value))
      return kUnknown;
    let index = 0;
    while (index < kClassCount - 1 && value >= this.limits_[index])
      ++index;
    return index;
  }
}

// Limits at equal distances, up to a value that few exceed.
function limitsOf(lists, { isFromZero }) {
  const count = lists.reduce((sum, values) => sum + values.length, 0);
  const stride = Math.max(1, Math.ceil(count / kMaxSample));
  const sample = lists.flatMap((values) =>
    Array.from(values.filter((value, i) => i % stride === 0 && !Number.isNaN(value))));
  const sorted = Float64Array.from(sample).sort();
  const lowest = isFromZero || sorted.length === 0 ? 0 : sorted[0];
  const highest = sorted[Math.ceil(kTopShare * sorted.length) - 1] ?? 0;
  return Array.from({ length: kClassCount - 1 }, (_, i) =>
    lowest + (highest - lowest) * (i + 1) / kClassCount);
}

// Traces the line through the points in `indices`, each piece with the pen of its class from
// `penOf(class)`. Shorter pieces than kMinPiece are joined. The points between two indices are
// close to a straight line.
export function traceClasses({ x, latitude, breaks }, { indices, classes, view, penOf }) {
  let lastPen = null; // the one that is at the end of the last piece
  for (let k = 1; k < indices.length; ++k) {
    const last = indices[k];
    if (breaks.has(last) || !mayBeSeen(x, latitude, indices[k - 1], last, view)) {
      lastPen = null;
      continue;
    }
    let from = indices[k - 1], fromX = view.toPixelX(x[from]);
    let fromY = view.toPixelY(latitude[from]);
    for (let i = from + 1; i <= last; ++i) {
      if (i < last && classes[i] === classes[from])
        continue;
      const px = view.toPixelX(x[i]), py = view.toPixelY(latitude[i]);
      if (i < last && Math.abs(px - fromX) + Math.abs(py - fromY) < kMinPiece)
        continue;
      const pen = penOf(classes[from]);
      if (pen !== lastPen)
        pen.moveTo(fromX, fromY);
      pen.lineTo(px, py);
      lastPen = pen;
      from = i;
      fromX = px;
      fromY = py;
    }
  }
}

function mayBeSeen(x, latitude, a, b, view) {
  const ax = view.toPixelX(x[a]), bx = view.toPixelX(x[b]);
  const ay = view.toPixelY(latitude[a]), by = view.toPixelY(latitude[b]);
  return Math.max(ax, bx) > -9 && Math.min(ax, bx) < view.width + 9 &&
    Math.max(ay, by) > -9 && Math.min(ay, by) < view.height + 9;
}

// SPDX-License-Identifier: MIT
// The map's grid of meridians and parallels, and its scale bar.

import { formatNumber, latitudeText, longitudeText } from "./format.js";
import { kEarthRadius, radians } from "./geodesy.js";
import { roundStep } from "./roundStep.js";
import { units } from "./units.js";

const kMinSpacing = 110; // pixels between meridians
const kMinLabelSpacing = 60; // pixels, for "120° W" and a gap
const kMaxStep = 30;     // degrees
const kMinBar = 60;      // pixels

// Returns the pixel columns of the meridians, the pixel rows of the parallels, and their labels
// `{ text, px, py }`. Lines are at half pixels, where they are sharp.
export function graticule(view) {
  const step = Math.min(roundStep(kMinSpacing / (view.scale * view.parallelScale)), kMaxStep);
  const digits = Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
  const meridians = [], parallels = [], labels = [];
  const west = view.fromPixelX(0), east = view.fromPixelX(view.width);
  let lastLabel = -Infinity;
  for (let i = Math.ceil(west / step); i * step <= east; ++i) {
    const px = Math.round(view.toPixelX(i * step)) + 0.5;
    meridians.push(px);
    if (px - lastLabel < kMinLabelSpacing)
      continue;
    lastLabel = px;
    labels.push({ text: longitudeText(i * step, digits), px: px + 4, py: view.height - 6 });
  }
  const south = Math.max(view.fromPixelY(view.height), -90);
  const north = Math.min(view.fromPixelY(0), 90);
  for (let i = Math.ceil(south / step); i * step <= north; ++i) {
    const py = Math.round(view.toPixelY(i * step)) + 0.5;
    parallels.push(py);
    labels.push({ text: latitudeText(i * step, digits), px: 6, py: py - 4 });
  }
  return { meridians, parallels, labels: labels.filter((label) => hasRoom(label, view)) };
}

// The labels of meridians are in the bottom row, which they share with the scale bar on the right;
// those of parallels are in the left column, above it.
function hasRoom({ px, py }, view) {
  const isInBottomRow = py > view.height - 20;
  return px < view.width - (isInBottomRow ? 210 : 0) &&
    (py < view.height - 20 || px > 60) && py > 12;
}

// A round length and its pixels, of at least 60.
export function scaleBar(view) {
  const metresPerPixel = kEarthRadius * radians(1) / view.scale;
  const least = metresPerPixel * kMinBar, { small } = units.length;
  const unit = roundStep(least / small.metres) * small.metres < units.length.metres ?
    small : units.length;
  const count = roundStep(least / unit.metres);
  return {
    pixels: count * unit.metres / metresPerPixel,
    text: `${formatNumber(count, count < 1 ? 1 : 0)} ${unit.name}`,
  };
}

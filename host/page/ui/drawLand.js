// SPDX-License-Identifier: MIT
// The sea and the land below everything else on the map.

import { landFor } from "../model/land.js";
import { themeColour } from "./dom.js";

// Draws nothing if the coast cannot be told at the view's scale. `levels` are those of the
// collection, `paper` is the colour of the land.
export function drawLand(context, view, levels, paper) {
  const found = landFor(levels, view);
  if (!found)
    return;
  const north = view.toPixelY(90), south = view.toPixelY(-90);
  context.fillStyle = themeColour("--sea");
  context.fillRect(0, north, view.width, south - north);
  context.beginPath();
  for (const shift of found.shifts)
    for (const outline of found.level.outlines)
      traceOutline(context, view, outline, shift);
  context.fillStyle = paper;
  context.fill("evenodd");
}

// Filling closes an outline; closePath() takes the time of the whole path in Chromium.
function traceOutline(context, view, outline, shift) {
  for (let i = 0; i < outline.length; i += 2) {
    const px = view.toPixelX(outline[i] + shift), py = view.toPixelY(outline[i + 1]);
    if (i === 0)
      context.moveTo(px, py);
    else
      context.lineTo(px, py);
  }
}

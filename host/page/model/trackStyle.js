// SPDX-License-Identifier: MIT
// How tracks are told apart: eight colours, then the same colours dashed.

const kColourCount = 8; // --track-0 to --track-7 in page.css
const kDashes = [[], [9, 5], [2, 5], [12, 4, 2, 4]];

// The name of a custom property in the style sheet.
export function trackColour(track) {
  return `--track-${track.index % kColourCount}`;
}

// A dash pattern in pixels, as a canvas and SVG want it. Empty for a solid line.
export function trackDash(track) {
  return kDashes[Math.floor(track.index / kColourCount) % kDashes.length];
}

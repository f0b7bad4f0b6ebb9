// SPDX-License-Identifier: MIT
// Which outlines of the land a map shows.

const kLeastWidth = 0.25; // degrees of latitude: coasts are known to about a kilometre only

// Chooses the most detailed of the `levels`, which come with the coarsest first, that covers the
// view. Returns `{ level, shifts }`: the level is to be drawn once for each of the shifts, which
// are added to its longitudes. Null if the view is too small for the coasts' precision.
export function landFor(levels, view) {
  const { x, width, height, scale, parallelScale } = view;
  if (width / scale < kLeastWidth)
    return null;
  const halfWidth = width / scale / parallelScale / 2;
  const south = Math.max(view.fromPixelY(height), -90), north = Math.min(view.fromPixelY(0), 90);
  for (const level of [...levels].reverse()) {
    const { bounds } = level;
    const isWorld = bounds.east - bounds.west >= 360;
    const shift = 360 * Math.round((x - (bounds.west + bounds.east) / 2) / 360);
    const isWideEnough = isWorld || (x - halfWidth >= bounds.west + shift &&
      x + halfWidth <= bounds.east + shift);
    if (isWideEnough && south >= bounds.south && north <= bounds.north)
      return { level, shifts: isWorld ? [shift - 360, shift, shift + 360] : [shift] };
  }
  return null;
}

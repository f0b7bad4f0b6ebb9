// SPDX-License-Identifier: MIT
// Rectangles of the map, in degrees.

import { isLine } from "./items.js";

export const kWorld = { west: -180, east: 180, south: -90, north: 90 };

export function emptyBounds() {
  return { west: Infinity, east: -Infinity, south: Infinity, north: -Infinity };
}

export function isEmpty(bounds) {
  return bounds.west > bounds.east;
}

// Widens `bounds` to include a point.
export function extendBounds(bounds, x, latitude) {
  bounds.west = Math.min(bounds.west, x);
  bounds.east = Math.max(bounds.east, x);
  bounds.south = Math.min(bounds.south, latitude);
  bounds.north = Math.max(bounds.north, latitude);
}

export function contains(bounds, x, latitude) {
  return x >= bounds.west && x <= bounds.east &&
    latitude >= bounds.south && latitude <= bounds.north;
}

// Whether all of `bounds` is in a view, and large enough to be made out: a quarter of it each way
// would do, if the bounds were not a line or a point.
export function isShownWell(bounds, view) {
  const west = view.toPixelX(bounds.west), east = view.toPixelX(bounds.east);
  const north = view.toPixelY(bounds.north), south = view.toPixelY(bounds.south);
  return view.contains(west, north) && view.contains(east, south) &&
    (east - west > view.width / 4 || south - north > view.height / 4);
}

// The bounds of all points of the items.
export function boundsOf(items) {
  const bounds = emptyBounds();
  for (const item of items) {
    if (!isLine(item)) {
      extendBounds(bounds, item.x, item.latitude);
      continue;
    }
    for (let i = 0; i < item.count; ++i)
      extendBounds(bounds, item.x[i], item.latitude[i]);
  }
  return bounds;
}

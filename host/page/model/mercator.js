// SPDX-License-Identifier: MIT
// The Mercator projection of a sphere, which map tiles have: its `north` grows with the latitude so
// that a circle stays a circle everywhere. In degrees, as a longitude.
// Source: J. P. Snyder, "Map Projections - A Working Manual", 1987, chapter 7.

import { radians } from "./geodesy.js";

export const kTileEdge = 85.0511287798; // degrees of latitude: there the world's map is a square

const kNearPole = 89.9; // degrees; at the poles `north` is infinite

function degrees(angle) {
  return angle * 180 / Math.PI;
}

export function northOf(latitude) {
  const inner = Math.min(Math.max(latitude, -kNearPole), kNearPole);
  return degrees(Math.asinh(Math.tan(radians(inner))));
}

export function latitudeOf(north) {
  return degrees(Math.atan(Math.sinh(radians(north))));
}

// SPDX-License-Identifier: MIT
// The same view in a map of the whole world, for readers who want roads and paths.

import { normalLongitude } from "./geodesy.js";

const kTilePixels = 256;
const kMaxZoom = 19;

// The address of a view on OpenStreetMap. Its zoom levels double the scale of level 0, where a tile
// is as wide as the world.
export function mapLink({ x, latitude, scale, parallelScale }) {
  const zoom = Math.round(Math.log2(scale * parallelScale * 360 / kTilePixels));
  const level = Math.min(Math.max(zoom, 0), kMaxZoom);
  const place = [latitude, normalLongitude(x)].map((degrees) => degrees.toFixed(5));
  return `https://www.openstreetmap.org/#map=${level}/${place.join("/")}`;
}

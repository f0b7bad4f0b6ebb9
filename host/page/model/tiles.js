// SPDX-License-Identifier: MIT
// Which tiles cover the map. At zoom 0 one tile shows the world, and each further zoom has four
// tiles in the place of one.

import { kTileEdge } from "./mercator.js";

export const kTilePixels = 256;

const kMaxZoom = 19;
const kServers = "abc";

// The tiles that the view shows: `{ zoom, column, row, left, top, size }`, the latter in pixels.
// Precondition: the view's projection is that of tiles.
export function tilesFor(view) {
  const world = 360 * view.scale * view.parallelScale; // pixels
  const zoom = Math.min(Math.max(Math.round(Math.log2(world / kTilePixels)), 0), kMaxZoom);
  const count = 2 ** zoom, size = world / count;
  const west = view.toPixelX(-180), north = view.toPixelY(kTileEdge);
  const tiles = [];
  const firstRow = Math.max(Math.floor(-north / size), 0);
  const endRow = Math.min(Math.ceil((view.height - north) / size), count);
  for (let row = firstRow; row < endRow; ++row) {
    for (let i = Math.floor(-west / size); west + i * size < view.width; ++i) {
      const column = ((i % count) + count) % count; // around the world
      tiles.push({ zoom, column, row, left: west + i * size, top: north + row * size, size });
    }
  }
  return tiles;
}

// The tile that shows a larger part of the world, and where in it `tile` is: `x` and `y` of its
// corner and `size`, in pixels of the larger one.
export function parentOf({ zoom, column, row }, levels) {
  const parts = 2 ** levels, size = kTilePixels / parts;
  return {
    zoom: zoom - levels, column: Math.floor(column / parts), row: Math.floor(row / parts),
    x: column % parts * size, y: row % parts * size, size,
  };
}

export function keyOf({ zoom, column, row }) {
  return `${zoom}/${column}/${row}`;
}

// The URL of a tile, by the template in the page's data.
export function urlOf(template, { zoom, column, row }) {
  const values = {
    "{z}": zoom, "{x}": column, "{y}": row, "{s}": kServers[(column + row) % kServers.length],
  };
  return template.replace(/\{[zxys]\}/g, (name) => values[name]);
}

// The name of the server that tiles come from, for the reader.
export function serverOf(template) {
  return urlOf(template, { zoom: 0, column: 0, row: 0 }).match(/^https?:\/\/([^/]+)/)?.[1] ??
    "this computer";
}

// What is to be said about the tiles on the map; empty if all are there.
export function tilesText({ loading, failed, total }, server) {
  if (loading > 0)
    return "The map is being loaded …";
  if (failed === 0)
    return "";
  return failed === total ? `The map cannot be loaded from ${server}.` :
    `${failed} of ${total} parts of the map cannot be loaded from ${server}.`;
}

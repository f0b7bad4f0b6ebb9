// SPDX-License-Identifier: MIT
// Parts of the world that the map can go to. People travel, and on a map of the whole world a hike
// is invisible.

import { emptyBounds, extendBounds } from "./bounds.js";
import { isLine } from "./collection.js";

const kTrackPointWeight = 10; // a track shows where somebody was; a waypoint may be far from there

// Groups points that are within about a degree of each other. Returns `{ bounds, weight }` for each
// group, the heaviest first.
export function findAreas(items) {
  const cells = cellsOf(items);
  const areas = [];
  for (const cell of cells.values())
    if (!cell.isVisited)
      areas.push(areaAround(cell, cells));
  return areas.sort((a, b) => b.weight - a.weight);
}

const keyOf = (x, latitude) => `${x},${latitude}`;

// Sorts the points into cells of one by one degree.
function cellsOf(items) {
  const cells = new Map();
  const add = (pointX, pointLatitude, weight) => {
    const x = Math.floor(pointX), latitude = Math.floor(pointLatitude), key = keyOf(x, latitude);
    let cell = cells.get(key);
    if (!cell) {
      cell = { x, latitude, bounds: emptyBounds(), weight: 0, isVisited: false };
      cells.set(key, cell);
    }
    extendBounds(cell.bounds, pointX, pointLatitude);
    cell.weight += weight;
  };
  for (const item of items) {
    if (!isLine(item)) {
      add(item.x, item.latitude, 1);
      continue;
    }
    for (let i = 0; i < item.count; ++i)
      add(item.x[i], item.latitude[i], item.kind === "track" ? kTrackPointWeight : 1);
  }
  return cells;
}

// Collects the cells that are connected with `start` through neighbours, diagonal ones included.
function areaAround(start, cells) {
  const area = { bounds: emptyBounds(), weight: 0 };
  const open = [start];
  start.isVisited = true;
  while (open.length > 0) {
    const cell = open.pop();
    extendBounds(area.bounds, cell.bounds.west, cell.bounds.south);
    extendBounds(area.bounds, cell.bounds.east, cell.bounds.north);
    area.weight += cell.weight;
    for (let i = 0; i < 9; ++i) {
      const next = cells.get(keyOf(cell.x + i % 3 - 1, cell.latitude + Math.floor(i / 3) - 1));
      if (next && !next.isVisited) {
        next.isVisited = true;
        open.push(next);
      }
    }
  }
  return area;
}

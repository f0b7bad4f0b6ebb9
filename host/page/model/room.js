// SPDX-License-Identifier: MIT
// Which points of the map have room for a picture.

// Returns the set of those that are on the map, or at its edge, and at least `distance` pixels away
// from all points before them.
export function pointsWithRoom(points, view, distance) {
  const cells = new Map(); // the pixels of the points in each square of that size
  const roomy = new Set();
  for (const point of points) {
    const px = view.toPixelX(point.x), py = view.toPixelY(point.latitude);
    if (px < -distance || px > view.width + distance || py < -distance ||
        py > view.height + distance)
      continue;
    const column = Math.floor(px / distance), row = Math.floor(py / distance);
    if (!isNear(cells, column, row, ([x, y]) => Math.hypot(x - px, y - py) < distance))
      roomy.add(point);
    const key = keyOf(column, row);
    cells.set(key, [...(cells.get(key) ?? []).slice(0, kMaxInCell - 1), [px, py]]);
  }
  return roomy;
}

const kMaxInCell = 8; // more points in one square are not looked at
const kRows = 1 << 16;

function keyOf(column, row) {
  return column * kRows + row;
}

function isNear(cells, column, row, test) {
  for (let dx = -1; dx <= 1; ++dx)
    for (let dy = -1; dy <= 1; ++dy)
      if (cells.get(keyOf(column + dx, row + dy))?.some(test))
        return true;
  return false;
}

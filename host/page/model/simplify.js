// SPDX-License-Identifier: MIT
// Lines reduced to the points that make a visible difference.

const kPiece = 1024; // points; limits the time spent on a line that no straight line approximates

// Omits the points that are within `tolerance` of the line without them, and returns the indices of
// the others. `x` and `y` hold the coordinates and are scaled by `xScale` and `yScale`; the line
// starts anew at each index in `breaks`.
// Source: D. Douglas, T. Peucker, "Algorithms for the reduction of the number of points required to
// represent a digitized line or its caricature", Cartographica 10, 1973.
export function simplify({ x, y, count, breaks }, { xScale, yScale, tolerance }) {
  const keeps = new Uint8Array(count);
  const stack = firstSegments(count, breaks, keeps);
  while (stack.length > 0) {
    const last = stack.pop(), first = stack.pop();
    const dx = (x[last] - x[first]) * xScale, dy = (y[last] - y[first]) * yScale;
    const lengthSquared = dx * dx + dy * dy;
    let farthest = -1, worst = tolerance * tolerance;
    for (let i = first + 1; i < last; ++i) {
      const px = (x[i] - x[first]) * xScale, py = (y[i] - y[first]) * yScale;
      const along = lengthSquared > 0 ?
        Math.min(Math.max((px * dx + py * dy) / lengthSquared, 0), 1) : 0;
      const offset = (px - along * dx) ** 2 + (py - along * dy) ** 2;
      if (offset > worst) {
        worst = offset;
        farthest = i;
      }
    }
    if (farthest >= 0) {
      keeps[farthest] = 1;
      stack.push(first, farthest, farthest, last);
    }
  }
  return keptIndices(keeps);
}

// Cuts the line at its breaks and into pieces of limited length, whose ends are kept. Returns the
// first and last index of each piece in turn.
function firstSegments(count, breaks, keeps) {
  const segments = [];
  let start = 0;
  for (let i = 1; i <= count; ++i) {
    const isEnd = i === count || breaks.has(i);
    if (!isEnd && i - start < kPiece)
      continue;
    const last = isEnd ? i - 1 : i;
    keeps[start] = keeps[last] = 1;
    segments.push(start, last);
    start = isEnd ? i : last;
  }
  return segments;
}

function keptIndices(keeps) {
  const indices = [];
  for (let i = 0; i < keeps.length; ++i)
    if (keeps[i])
      indices.push(i);
  return indices;
}

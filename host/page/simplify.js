// SPDX-License-Identifier: MIT
// Lines with no more points than can be seen.

const kPiece = 1024; // points: bounds the time that a line takes which no straight line comes near to

// Douglas and Peucker: leaves out what lies within `tolerance` of the line without it. A line is given by its coordinates in
// two arrays, scaled by `xScale` and `yScale`; at each index in `breaks` it begins anew. Returns the indices that stay.
// Source: D. Douglas, T. Peucker, "Algorithms for the reduction of the number of points...", Cartographica 10, 1973.
function simplify(x, y, count, breaks, xScale, yScale, tolerance) {
  const keeps = new Uint8Array(count);
  const stack = [];
  let start = 0;
  for (let i = 1; i <= count; ++i) {
    const isEnd = i === count || breaks.has(i);
    if (!isEnd && i - start < kPiece)
      continue;
    const last = isEnd ? i - 1 : i;
    keeps[start] = keeps[last] = 1;
    stack.push(start, last);
    start = isEnd ? i : last;
  }
  while (stack.length > 0) {
    const last = stack.pop(), first = stack.pop();
    const dx = (x[last] - x[first]) * xScale, dy = (y[last] - y[first]) * yScale;
    const square = dx * dx + dy * dy;
    let farthest = -1, worst = tolerance * tolerance;
    for (let i = first + 1; i < last; ++i) {
      const px = (x[i] - x[first]) * xScale, py = (y[i] - y[first]) * yScale;
      const along = square > 0 ? Math.min(Math.max((px * dx + py * dy) / square, 0), 1) : 0;
      const off = (px - along * dx) ** 2 + (py - along * dy) ** 2;
      if (off > worst) {
        worst = off;
        farthest = i;
      }
    }
    if (farthest >= 0) {
      keeps[farthest] = 1;
      stack.push(first, farthest, farthest, last);
    }
  }
  const kept = [];
  for (let i = 0; i < count; ++i)
    if (keeps[i])
      kept.push(i);
  return kept;
}

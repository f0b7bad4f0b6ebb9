// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { simplify } from "../../host/page/model/simplify.js";

// The indices kept of points given as [x, y].
function kept(points, { breaks = [], xScale = 1, yScale = 1, tolerance = 0.5 } = {}) {
  return simplify({
    x: points.map(([x]) => x), y: points.map(([, y]) => y), count: points.length,
    breaks: new Set(breaks),
  }, { xScale, yScale, tolerance });
}

test("a straight line keeps its ends", () => {
  assert.deepEqual(kept([[0, 0], [1, 0], [2, 0], [5, 0]]), [0, 3]);
});

test("a point is kept if it is off by more than the tolerance", () => {
  assert.deepEqual(kept([[0, 0], [5, 0.5], [10, 0]]), [0, 2]);
  assert.deepEqual(kept([[0, 0], [5, 0.51], [10, 0]]), [0, 1, 2]);
});

test("the scales decide what is off", () => {
  const points = [[0, 0], [5, 0.3], [10, 0]];
  assert.deepEqual(kept(points), [0, 2]);
  assert.deepEqual(kept(points, { yScale: 2 }), [0, 1, 2]);
  const upright = points.map(([x, y]) => [y, x]);
  assert.deepEqual(kept(upright, { yScale: 2 }), [0, 2]);
  assert.deepEqual(kept(upright, { xScale: 2 }), [0, 1, 2]);
});

test("a straight line stays straight at any scales", () => {
  const points = [[0, 0], [5, 5], [10, 10]];
  assert.deepEqual(kept(points, { xScale: 100, yScale: 3 }), [0, 2]);
  assert.deepEqual(kept(points, { xScale: 0.1, yScale: 30 }), [0, 2]);
});

test("a way back along the same line is kept", () => {
  assert.deepEqual(kept([[0, 0], [10, 0], [1, 0]]), [0, 1, 2]);
  assert.deepEqual(kept([[0, 0], [11, 0], [10, 0]]), [0, 1, 2]);
  assert.deepEqual(kept([[0, 0], [-1, 0], [10, 0]]), [0, 1, 2]);
});

test("a line that ends where it begins keeps its farthest point", () => {
  assert.deepEqual(kept([[0, 0], [3, 3], [7, 7], [3, 3], [0, 0]]), [0, 2, 4]);
});

test("both sides of a break are kept", () => {
  assert.deepEqual(kept([[0, 0], [1, 0], [2, 0], [3, 0], [4, 0], [5, 0]], { breaks: [3] }),
    [0, 2, 3, 5]);
});

test("a break at the start or next to another one leaves single points", () => {
  assert.deepEqual(kept([[0, 0], [1, 0], [2, 0]], { breaks: [0, 1, 2] }), [0, 1, 2]);
});

test("no points and one point are kept", () => {
  assert.deepEqual(kept([]), []);
  assert.deepEqual(kept([[3, 3]]), [0]);
});

test("a long line is cut into pieces of 1024 points", () => {
  const points = Array.from({ length: 1025 }, (_, i) => [i, 0]);
  assert.deepEqual(kept(points), [0, 1024]);
  assert.deepEqual(kept([...points, [1025, 0]]), [0, 1024, 1025]);
});

test("no omitted point is farther from the simplified line than the tolerance", () => {
  const points = Array.from({ length: 3000 }, (_, i) => [i / 10, 20 * Math.sin(i / 50)]);
  const indices = kept(points);
  assert.ok(indices.length < 400, `${indices.length}`);
  for (let at = 1; at < indices.length; ++at) {
    const [ax, ay] = points[indices[at - 1]], [bx, by] = points[indices[at]];
    for (const [px, py] of points.slice(indices[at - 1], indices[at])) {
      const cross = (bx - ax) * (py - ay) - (by - ay) * (px - ax);
      assert.ok(Math.abs(cross) / Math.hypot(bx - ax, by - ay) <= 0.5 + 1e-9);
    }
  }
});
